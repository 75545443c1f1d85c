/// A reader that also finds the last partition of a file.
#pragma once

#include "MXF/Zelm/MXFIO/Reader.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT Reader2 : public Reader {
public:
    using Reader::Reader;
    ~Reader2() override;

    /// The partition whose ThisPartition is `offset`, null when there is none.
    Partition* partitionAtOffset(std::uint64_t offset);

    /// The last partition: the footer, or the last body partition of an unfinished file. Throws
    /// Exceptions::InvalidStructure with "Footer not found where indicated in primer", "Last Partition
    /// indicated by RIP is not a Footer Partition" or "No partition found".
    Partition* lastPartition();

    /// The footer partition, null when the file has none. Throws as `lastPartition` does.
    Partition* footerPartition();

    /// The partition whose header metadata is to be used, found by reading backwards: the header partition
    /// when it is closed and has metadata, else the last partition that has metadata; null when none has.
    /// Throws Exceptions::InvalidStructure with "No header partition found" and as `lastPartition` does.
    Partition* backwardFirstPartitionWithFinalMetadata();

protected:
    /// Where the header partition pack says that the footer is; null when it does not say.
    Partition* lastPartitionFromHeaderFooterOffset();

    /// Where the random index pack says that the last partition is; null without a random index pack.
    Partition* lastPartitionFromRIP();

    /// Scans the source backwards. With `footerOnly` any other last partition counts as none.
    Partition* searchLastPartition(bool footerOnly);

private:
    Partition* footer_ = nullptr;
};

} // namespace MXF::Zelm::MXFIO
