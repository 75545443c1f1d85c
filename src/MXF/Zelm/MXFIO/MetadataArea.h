/// The header metadata of one partition as bytes: read packet by packet, and made anew with as much of the
/// old bytes as possible.
///
///     content    primer pack and sets; fill between them is left out when the content is made anew
///     fill       up to the end of HeaderByteCount
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"

#include <map>
#include <optional>
#include <vector>

namespace MXF::Zelm::MXFIO {

using Bytes = std::vector<unsigned char>;

/// Reads exactly `size` bytes. Throws Exceptions::InvalidLength when the source ends before.
Bytes readBytes(DataIO::RandomAccessDataSource& source, std::uint64_t offset, std::uint64_t size);

/// The smallest fill item: a key and a length of one byte.
constexpr std::uint64_t smallestFill = 17;

/// Whether `gap` bytes can be filled.
constexpr bool canBeFilled(std::uint64_t gap) { return gap == 0 || gap >= smallestFill; }

/// Key and length field of a fill item of `gap` bytes in all (at least 17): four bytes of length where they
/// suffice and there is room for them.
Bytes fillHeader(KLV::Key const& key, std::uint64_t gap);

/// The bytes of an area that takes `content` and at least `fill` bytes behind it: congruent to `oldArea`
/// modulo `grid`, so that what follows keeps its place on the KLV alignment grid.
std::uint64_t areaSizeFor(std::uint64_t content, std::uint64_t fill, std::uint64_t oldArea,
                          std::uint64_t grid);

class MetadataArea {
public:
    /// Walks the `size` bytes at `offset`. Throws Exceptions::InvalidStructure, with its offset, for anything
    /// but a primer pack, sets and fill that end where the area does: such bytes would be lost in writing.
    MetadataArea(DataIO::RandomAccessDataSource& source, std::uint64_t offset, std::uint64_t size);

    std::uint64_t offset() const { return offset_; }
    std::uint64_t size() const { return size_; }

    /// Primer and sets, fill between them included.
    Bytes const& content() const { return content_; }

    std::uint64_t trailingFill() const { return size_ - content_.size(); }

    /// The key of the fill that the area holds, if it does.
    std::optional<KLV::Key> const& fillKey() const { return fillKey_; }

    /// The content for `edited`, which was loaded from this area as `original` was. Sets that were not
    /// changed keep their bytes; the primer keeps its entries, duplicates included, and new ones follow.
    /// Gives every label in use a local tag.
    Bytes contentFor(Metadata::PartitionMetadata& edited, Metadata::PartitionMetadata const& original) const;

    /// `content` as it is to stand here. Where it is a little too long, or would leave too few bytes for a
    /// fill item, the length fields of its last packets are made shorter or longer, so that it takes up the
    /// whole area (SMPTE 336M allows a length in more bytes than it needs, and usually there are four).
    Bytes fitted(Bytes const& content) const;

    /// What the area begins with when it holds `fitted`: that, the header of the fill behind it, and zeros up
    /// to where the last old byte of meaning stood. The rest of the area is fill already. Throws
    /// Exceptions::InvalidChange when the content does not fit.
    Bytes image(Bytes const& fitted, KLV::Key const& fillKey) const;

    /// Why `contentSize` bytes do not fit here; empty when they do.
    std::string whyNot(std::uint64_t contentSize) const;

private:
    void walk(DataIO::RandomAccessDataSource& source);
    bool isUnchanged(Bytes const& edited, std::uint64_t offset,
                     std::map<std::uint64_t, Bytes> const& originals) const;
    Bytes primerFor(Packs::PrimerPack const& edited, Packs::PrimerPack const& original) const;

    std::uint64_t offset_;
    std::uint64_t size_;
    std::uint64_t contentSize_ = 0;
    std::uint64_t meaningSize_ = 0; // content and the header of the first fill item behind it
    std::optional<KLV::Key> fillKey_;
    std::map<std::uint64_t, std::uint64_t> packets_; // length of each, by its offset in the area; no fill
    Bytes content_;
};

} // namespace MXF::Zelm::MXFIO
