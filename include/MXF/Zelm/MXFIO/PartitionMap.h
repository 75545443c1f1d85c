/// Where the bytes of one essence container stand in the file.
///
///     stream    0 ............ 5000 ............ 9000 ...... 9700
///     file         partition 2      partition 4    partition 5
///
/// An essence container goes on from partition to partition, and a content package may begin in one and end
/// in another. SMPTE 377M's BodyOffset says where each begins in the stream; the exact end of a body is where
/// the next partition begins.
#pragma once

#include "MXF/Zelm/MXFIO/PartitionProvider.h"
#include "MXF/Zelm/MXFIO/Reader2.h"

#include <optional>

namespace MXF::Zelm::MXFIO {

/// Bytes of an essence container that stand together in the file.
struct MXFZELM_EXPORT FileExtent {
    /// The partition that holds them, owned by the reader.
    Partition* partition = nullptr;

    /// Their first byte, counted from the start of the source.
    std::uint64_t fileOffset = 0;

    /// Number of bytes.
    std::uint64_t length = 0;
};

class MXFZELM_EXPORT PartitionMap : public PartitionProvider {
public:
    /// Reads the packs of all partitions of the file, and of those with the body SID where the essence
    /// begins. `reader` is not owned and must outlive the map. A body offset that is not greater than the one
    /// before it is passed over: that body follows the one before.
    PartitionMap(Reader2& reader, std::uint32_t bodySID);
    ~PartitionMap() override;

    std::uint32_t bodySID() const { return bodySID_; }

    /// Bytes of the container, up to the end of its last partition; 0 when the file has none of it.
    std::uint64_t streamLength() const;

    Partition* partition(std::uint64_t streamOffset) override;

    /// Byte `streamOffset` of the container and what follows it in the same partition; absent where the file
    /// does not have it.
    std::optional<FileExtent> find(std::uint64_t streamOffset) const;

    /// Where byte `fileOffset` of the source stands in the container; absent when it is none of its bytes.
    std::optional<std::uint64_t> streamOffset(std::uint64_t fileOffset) const;

    /// The `length` bytes from `streamOffset` on, in order: more than one piece where they go over the end of
    /// a partition. What the file does not have is left out at the end.
    Templates::vector<FileExtent> extents(std::uint64_t streamOffset, std::uint64_t length) const;

    /// The whole container, partition by partition.
    Templates::vector<FileExtent> extents() const { return extents(0, streamLength()); }

private:
    struct Piece {
        std::uint64_t streamOffset;
        FileExtent extent;
    };
    void append(Partition& partition, std::uint64_t fileOffset, std::uint64_t end);

    std::uint32_t bodySID_;
    Templates::vector<Piece> pieces_; // in the order of the stream; they do not overlap
};

} // namespace MXF::Zelm::MXFIO
