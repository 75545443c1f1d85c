/// The partitions of a file that is written: what the random index pack and the last changes need of them.
#pragma once

#include "MXF/Zelm/MXFIO/BasePartitionWriter.h"
#include "MXF/Zelm/MXFIO/FutureUpdater.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

namespace MXF::Zelm::MXFIO {

/// Takes 16 bytes a partition.
class WrittenPartitions {
public:
    using Status = Packs::PartitionPack::PartitionStatus;

    /// Offsets count from the header partition pack. `isClosed` when the file is whole: not one that has no
    /// status, or header metadata that are not those of the end.
    void add(std::uint64_t offset, std::uint32_t bodySID, bool isClosed);

    /// The last one; 0 while there is none.
    std::uint64_t lastOffset() const { return places_.empty() ? 0 : places_.back().offset; }

    Packs::RandomIndexPack randomIndex() const;

    /// Closes all partitions but the first and the last: footer offset first, then status.
    void appendClosing(Templates::vector<FileUpdate>& updates, Status status, std::uint64_t runInLength,
                       unsigned char packBerLength) const;

    /// What puts the footer offset, the last partition's, into a pack; what gives it a status.
    FileUpdate footerUpdate(std::uint64_t packFileOffset, unsigned char packBerLength) const;
    static FileUpdate statusUpdate(std::uint64_t packFileOffset, Status status);

private:
    struct Place {
        std::uint64_t offset;
        std::uint32_t bodySID;
        bool isClosed;
    };

    Templates::vector<Place> places_;
};

} // namespace MXF::Zelm::MXFIO
