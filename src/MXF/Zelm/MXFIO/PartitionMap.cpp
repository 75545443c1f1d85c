#include "MXF/Zelm/MXFIO/PartitionMap.h"

#include "MXF/Zelm/MXFIO/IndexAreaWalk.h"
#include "MXF/Zelm/MXFIO/Offsets.h"
#include "MXF/Zelm/MXFIO/PartitionList.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

std::uint64_t essenceOffset(Reader& reader, PartitionSpan const& span) {
    IndexAreaWalk walk(reader, *span.partition, span.end, false);
    while (walk.next())
        continue;
    return walk.essenceOffset();
}

} // namespace

PartitionMap::PartitionMap(Reader2& reader, std::uint32_t bodySID) : bodySID_(bodySID) {
    for (auto const& span : partitionsOf(reader))
        if (span.partition->partitionPack().bodySID() == bodySID)
            append(*span.partition, essenceOffset(reader, span), span.end);
}

PartitionMap::~PartitionMap() = default;

/// Adds the body that stands in the file from `fileOffset` to before `end`.
void PartitionMap::append(Partition& partition, std::uint64_t fileOffset, std::uint64_t end) {
    if (fileOffset >= end)
        return;
    std::uint64_t streamOffset = partition.partitionPack().bodyOffset();
    if (!pieces_.empty()) {
        Piece& last = pieces_.back();
        if (streamOffset <= last.streamOffset)
            streamOffset = addOffsets(last.streamOffset, last.extent.length);
        else
            last.extent.length = std::min(last.extent.length, streamOffset - last.streamOffset);
    }
    std::uint64_t const possible = addOffsets(streamOffset, end - fileOffset) - streamOffset;
    if (possible != 0)
        pieces_.push_back({streamOffset, {&partition, fileOffset, possible}});
}

std::uint64_t PartitionMap::streamLength() const {
    return pieces_.empty() ? 0 : pieces_.back().streamOffset + pieces_.back().extent.length;
}

Partition* PartitionMap::partition(std::uint64_t streamOffset) {
    auto const found = find(streamOffset);
    return found ? found->partition : nullptr;
}

std::optional<FileExtent> PartitionMap::find(std::uint64_t streamOffset) const {
    auto const after = std::upper_bound(
        pieces_.begin(), pieces_.end(), streamOffset,
        [](std::uint64_t offset, Piece const& piece) { return offset < piece.streamOffset; });
    if (after == pieces_.begin())
        return std::nullopt;
    Piece const& piece = *std::prev(after);
    std::uint64_t const passed = streamOffset - piece.streamOffset;
    if (passed >= piece.extent.length)
        return std::nullopt;
    return FileExtent{piece.extent.partition, piece.extent.fileOffset + passed, piece.extent.length - passed};
}

/// Pieces stand in the file in the order of the stream, as partitions do.
std::optional<std::uint64_t> PartitionMap::streamOffset(std::uint64_t fileOffset) const {
    auto const after = std::upper_bound(
        pieces_.begin(), pieces_.end(), fileOffset,
        [](std::uint64_t offset, Piece const& piece) { return offset < piece.extent.fileOffset; });
    if (after == pieces_.begin())
        return std::nullopt;
    Piece const& piece = *std::prev(after);
    std::uint64_t const passed = fileOffset - piece.extent.fileOffset;
    return passed < piece.extent.length ? std::optional(piece.streamOffset + passed) : std::nullopt;
}

Templates::vector<FileExtent> PartitionMap::extents(std::uint64_t streamOffset, std::uint64_t length) const {
    Templates::vector<FileExtent> found;
    while (length != 0) {
        auto extent = find(streamOffset);
        if (!extent)
            break;
        extent->length = std::min(extent->length, length);
        streamOffset += extent->length;
        length -= extent->length;
        found.push_back(*extent);
    }
    return found;
}

} // namespace MXF::Zelm::MXFIO
