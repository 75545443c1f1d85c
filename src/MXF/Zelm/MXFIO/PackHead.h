/// A partition pack as the bytes that stand in the file, from its key to the end of its essence containers.
/// Fields are changed where they stand, so that whatever is not changed stays as it was, also what other
/// versions put behind the batch (which is not part of this).
#pragma once

#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/MXFIO/Partition.h"

namespace MXF::Zelm::MXFIO {

class PackHead {
public:
    PackHead(DataIO::RandomAccessDataSource& source, Partition const& partition);

    void thisPartition(std::uint64_t offset) { put(8, offset); }
    void previousPartition(std::uint64_t offset) { put(16, offset); }
    void footerPartition(std::uint64_t offset) { put(24, offset); }
    void headerByteCount(std::uint64_t count) { put(32, count); }
    void operationalPattern(Types::UniversalLabel const& label);

    /// Throws Exceptions::InvalidChange when the pack outgrows its length field.
    void essenceContainers(Types::Batch const& labels);

    Bytes const& bytes() const { return bytes_; }

    /// Where the bytes stood, and how many they were.
    std::uint64_t offset() const { return offset_; }
    std::uint64_t oldSize() const { return oldSize_; }

private:
    void put(std::size_t field, std::uint64_t value);

    std::uint64_t offset_;
    std::uint64_t oldSize_;
    std::size_t berSize_;
    std::uint64_t valueLength_;
    Bytes bytes_;
};

} // namespace MXF::Zelm::MXFIO
