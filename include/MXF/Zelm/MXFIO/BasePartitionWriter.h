/// Writing one partition of a new file: what all kinds of partitions have in common. A partition writer is
/// pulled: it hands out the bytes of its partition in order, and whoever pulls writes them where he likes.
///
///     partition pack
///     fill               so that what follows starts on the KLV alignment grid
///     areas              header metadata, index table
///     content            essence, or a generic stream
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Packs/PartitionPack.h"
#include "MXF/Zelm/Templates/Containers.h"

namespace MXF::Zelm::MXFIO {

/// What the partitions of a file have in common.
struct MXFZELM_EXPORT PartitionFormat {
    std::uint16_t majorVersion = 1;
    std::uint16_t minorVersion = 2; ///< 2 (SMPTE 377M) or 3 (SMPTE 377-1)

    /// KLV alignment grid in bytes, counted from the partition pack; 1 for no alignment.
    std::uint32_t kagSize = 1;

    unsigned char packBerLength = 4; ///< bytes of a pack's length field, 4 to 9
    unsigned char fillVersion = 2;   ///< byte 7 of the key of fill items: 2, or 1 as old writers have it

    Types::UniversalLabel operationalPattern = {};
    Templates::vector<Types::UniversalLabel> essenceContainers = {};
};

/// Not locked: one writer, one thread.
class MXFZELM_EXPORT BasePartitionWriter : public Platform::Allocated {
public:
    virtual ~BasePartitionWriter();
    BasePartitionWriter(BasePartitionWriter const&) = delete;
    BasePartitionWriter& operator=(BasePartitionWriter const&) = delete;

    /// Where the partition comes to stand, and the one before it; both count from the header partition pack.
    /// To be called before `next`.
    void place(std::uint64_t thisPartition, std::uint64_t previousPartition);

    /// The offset of the footer, where it is known already.
    void footerPartition(std::uint64_t offset);

    /// The next bytes of the partition; `out` is overwritten. False, with an empty chain, at the end. When it
    /// throws, nothing was handed out.
    bool next(DataIO::Chain& out);

    /// Complete once `next` has been called.
    Packs::PartitionPack const& partitionPack() const { return pack_; }

    /// Bytes handed out so far.
    std::uint64_t written() const { return written_; }

    /// Where the partition ends, as far as it has been handed out; counts from the header partition pack.
    std::uint64_t end() const { return pack_.thisPartition() + written_; }

    /// Bytes of the pack and the fill behind it; 0 before the first `next`.
    std::uint64_t leadLength() const { return leadLength_; }

protected:
    BasePartitionWriter(PartitionFormat const& format, KLV::Key const& packKey);

    Packs::PartitionPack& pack() { return pack_; }

    /// All between the fill behind the pack and the content; sets the byte counts of the pack.
    virtual DataIO::Chain areas();

    /// True when content is to follow.
    virtual bool hasContent();

    /// The next bytes of the content; false when there are no more.
    virtual bool nextContent(DataIO::Chain& out);

    /// Appends a fill item of `size` bytes in all: 0, or at least the smallest.
    void appendFill(DataIO::Chain& chain, std::uint64_t size) const;

    /// Appends the fill that brings the end of the chain, which begins on it, to the alignment grid.
    void align(DataIO::Chain& chain) const;

    /// Bytes of fill behind `position` that bring what follows to the grid.
    std::uint64_t alignment(std::uint64_t position) const;

private:
    DataIO::Chain head();

    Packs::PartitionPack pack_;
    unsigned char fillVersion_;
    bool hasHead_ = false; // handed out
    std::uint64_t leadLength_ = 0;
    std::uint64_t written_ = 0;
};

} // namespace MXF::Zelm::MXFIO
