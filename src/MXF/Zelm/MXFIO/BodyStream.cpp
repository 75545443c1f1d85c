#include "MXF/Zelm/MXFIO/BodyStream.h"

#include "MXF/Zelm/MXFIO/PacketParser.h"
#include "MXF/Zelm/MXFIO/PartitionMap.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::MXFIO {

using ByteCoders::toHexadecimal;

namespace {

std::uint64_t sizeOf(DataIO::RandomAccessDataSource& source) {
    return source.seek(std::numeric_limits<std::uint64_t>::max());
}

/// Where the stream goes on behind a place that the file does not have: at the next partition that says so.
/// `last` is the one before, null for none, and becomes that partition.
std::optional<std::uint64_t> behindGap(Reader2& reader, std::uint32_t bodySID, Partition*& last,
                                       std::uint64_t streamOffset) {
    last = last == nullptr ? reader.headerPartition() : reader.nextPartition(last);
    for (; last != nullptr; last = reader.nextPartition(last)) {
        auto const& pack = last->partitionPack();
        if (pack.bodySID() == bodySID && pack.bodyOffset() > streamOffset)
            return pack.bodyOffset();
    }
    return std::nullopt;
}

} // namespace

BodyStream::BodyStream(Reader2& reader, std::uint32_t bodySID,
                       Templates::SharedPtr<DataIO::BlockFactory> factory)
    : reader_(reader),
      bodySID_(bodySID),
      window_(std::make_unique<BlockWindow>(reader.source(), std::move(factory))) {
    map();
}

BodyStream::~BodyStream() = default;

void BodyStream::map() {
    PartitionMap const map(reader_, bodySID_);
    pieces_.clear();
    piece_ = {0, 0, 0};
    std::uint64_t offset = 0;
    Partition* last = nullptr;
    while (offset < map.streamLength()) {
        if (auto const extent = map.find(offset)) {
            pieces_.push_back({offset, extent->fileOffset, extent->length});
            offset += extent->length;
            last = extent->partition;
        } else if (auto const next = behindGap(reader_, bodySID_, last, offset)) {
            offset = *next;
        } else {
            break;
        }
    }
    openEnded_ =
        !pieces_.empty() && pieces_.back().fileOffset + pieces_.back().length >= sizeOf(reader_.source());
}

std::uint64_t BodyStream::length() const {
    return pieces_.empty() ? 0 : pieces_.back().streamOffset + pieces_.back().length;
}

bool BodyStream::isContiguous() const {
    std::uint64_t end = 0;
    for (auto const& piece : pieces_) {
        if (piece.streamOffset != end)
            return false;
        end += piece.length;
    }
    return true;
}

bool BodyStream::refresh() {
    std::uint64_t const before = length();
    map();
    return length() > before;
}

/// The piece that holds `streamOffset`, or the next one behind it; null at the end.
BodyStream::Piece const* BodyStream::pieceAt(std::uint64_t streamOffset) const {
    auto const found = std::upper_bound(
        pieces_.begin(), pieces_.end(), streamOffset,
        [](std::uint64_t offset, Piece const& piece) { return offset < piece.streamOffset + piece.length; });
    return found != pieces_.end() ? &*found : nullptr;
}

std::optional<std::uint64_t> BodyStream::fileOffset(std::uint64_t streamOffset) const {
    Piece const* const piece = pieceAt(streamOffset);
    if (piece == nullptr || streamOffset < piece->streamOffset)
        return std::nullopt;
    return piece->fileOffset + (streamOffset - piece->streamOffset);
}

/// Makes `piece_` that of the position; passes over a gap before it. False at the end.
bool BodyStream::enterPiece() {
    if (position_ - piece_.streamOffset < piece_.length)
        return true;
    Piece const* const found = pieceAt(position_);
    if (found == nullptr)
        return false;
    piece_ = *found;
    position_ = std::max(position_, piece_.streamOffset);
    return true;
}

std::optional<PacketHead> BodyStream::peek(bool cut) {
    if (!enterPiece())
        return std::nullopt;
    std::uint64_t const passed = position_ - piece_.streamOffset;
    std::uint64_t const left = piece_.length - passed;
    PacketHead head;
    head.streamOffset = position_;
    head.fileOffset = piece_.fileOffset + passed;
    bool const hasHead = parseHead(*window_, left, head);
    if (hasHead && head.length <= left - head.headLength)
        return head;
    if (openEnded_ && piece_.streamOffset == pieces_.back().streamOffset)
        return hasHead && cut ? std::optional(head) : std::nullopt;
    throw Exceptions::at(head.fileOffset,
                         Exceptions::InvalidLength("A packet of 0x" + toHexadecimal(head.length) +
                                                   " bytes runs beyond the end of its partition, 0x" +
                                                   toHexadecimal(left) + " bytes from its key"));
}

std::optional<PacketHead> BodyStream::passed(std::optional<PacketHead> head) {
    if (head)
        skip(head->headLength + std::min(head->length, length()));
    return head;
}

std::uint64_t BodyStream::read(std::uint64_t size, DataIO::Chain& chain) {
    std::uint64_t done = 0;
    while (done < size && enterPiece()) {
        std::uint64_t const passed = position_ - piece_.streamOffset;
        std::uint64_t const wanted = std::min(size - done, piece_.length - passed);
        std::uint64_t const got = window_->append(piece_.fileOffset + passed, wanted, chain);
        position_ += got;
        done += got;
        if (got < wanted)
            break;
    }
    return done;
}

std::uint64_t BodyStream::skip(std::uint64_t size) {
    std::uint64_t const left = length() - std::min(length(), position_);
    size = std::min(size, left);
    position_ += size;
    return size;
}

std::uint64_t BodyStream::seek(std::uint64_t position) {
    position_ = std::min(position, length());
    return position_;
}

} // namespace MXF::Zelm::MXFIO
