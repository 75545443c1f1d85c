/// What a repaired file gets behind the bytes that are kept: a body partition for each new index table but
/// the last, the footer partition with that and the header metadata, the random index pack.
#pragma once

#include "MXF/Zelm/MXFIO/CommonPartitionWriter.h"
#include "MXF/Zelm/MXFIO/KeptPartitions.h"

namespace MXF::Zelm::MXFIO {

/// An index table that is new.
struct NewIndex {
    std::uint32_t indexSID = 0;
    Templates::vector<CommonPartitionWriter::SegmentPtr> segments = {};
};

/// A fill item of `size` bytes, none for 0.
Bytes fillOf(std::uint64_t size);

class NewPartitions {
public:
    /// The metadata and what precedes the format is not owned. `padding` stands between what is kept and the
    /// first partition.
    NewPartitions(KeptPartitions const& kept, std::vector<NewIndex> const& indices, Bytes const& padding,
                  PartitionFormat format, Packs::PartitionPack::PartitionStatus status,
                  Metadata::PartitionMetadata& metadata);

    /// The bytes, the padding included: at least `least`, with more fill behind the first pack where it takes
    /// that.
    Bytes make(std::uint64_t least);

    /// Where the footer stands, as packs have it; behind `make`.
    std::uint64_t footerOffset() const { return offsets_.back(); }

private:
    struct Made {
        Bytes bytes;
        std::uint64_t packSize = 0;
        std::uint64_t leadSize = 0; // the pack and the fill behind it
    };

    Made makeOne(std::size_t number) const;
    void makeAll();
    std::uint64_t sizeOfAll() const;
    std::uint64_t leadFor(std::uint64_t least) const;
    void place(std::uint64_t lead);

    KeptPartitions const& kept_;
    std::vector<NewIndex> const& indices_;
    Bytes const& padding_;
    PartitionFormat format_;
    Packs::PartitionPack::PartitionStatus status_;
    Metadata::PartitionMetadata& metadata_;
    std::vector<std::uint64_t> offsets_; // as packs have them; 0 before they are known
    std::vector<Made> made_;
};

} // namespace MXF::Zelm::MXFIO
