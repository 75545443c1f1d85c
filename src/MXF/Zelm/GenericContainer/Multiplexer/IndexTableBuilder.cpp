#include "MXF/Zelm/GenericContainer/Multiplexer/IndexTableBuilder.h"

#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"

#include <limits>

namespace MXF::Zelm::GenericContainer::Multiplexer {

namespace {

using IndexTables::IndexEntry;

// Places of the fields of an entry.
constexpr std::size_t temporalByte = 0, keyFrameByte = 1, flagsByte = 2, offsetByte = 3;

constexpr bool fitsInt8(std::int64_t value) { return std::in_range<std::int8_t>(value); }

unsigned char byteOf(std::int64_t value) { return static_cast<unsigned char>(value); }

/// An entry array of entries that are packed already.
IndexTables::IndexEntryArray arrayOf(std::span<unsigned char const> entries, std::uint32_t entrySize,
                                     std::uint8_t sliceCount, std::uint8_t posTableCount) {
    std::vector<unsigned char> batch(8);
    ByteCoders::codeInteger(static_cast<std::uint32_t>(entries.size() / entrySize), batch.data());
    ByteCoders::codeInteger(entrySize, batch.data() + 4);
    batch.insert(batch.end(), entries.begin(), entries.end());
    DataIO::Memory::MemoryViewDataSource source(batch.data(), batch.size());
    KLV::Value value(source, batch.size());
    return IndexTables::IndexEntryArray(value, sliceCount, posTableCount);
}

} // namespace

IndexTableBuilder::IndexTableBuilder(Templates::Rational<int> const& editRate) : editRate_(editRate) {}

IndexTableBuilder::~IndexTableBuilder() = default;

void IndexTableBuilder::appendIndexEntry(std::uint64_t streamOffset, EditUnitIndex const& index,
                                         std::span<std::uint32_t const> sliceOffsets) {
    if (editUnitByteCount_ != 0)
        return;
    std::size_t const at = bytes_.size();
    bytes_.resize(at + entrySize());
    unsigned char* const entry = bytes_.data() + at;
    bool const isReached = fitsInt8(index.keyFrameOffset) && next_ + index.keyFrameOffset >= 0;
    entry[keyFrameByte] = isReached ? byteOf(index.keyFrameOffset) : 0;
    entry[flagsByte] =
        static_cast<unsigned char>(index.flags | (isReached ? 0 : IndexEntry::OffsetOutOfRange));
    ByteCoders::codeInteger(streamOffset, entry + offsetByte);
    for (std::size_t i = 0; i < sliceOffsets.size() && i < sliceCount_; ++i)
        ByteCoders::codeInteger(sliceOffsets[i], entry + IndexEntry::fixedSize + 4 * i);
    noteShown(isReordered_ ? index.temporalOffset : 0);
    ++next_;
    finalizeComing();
    finalizeFullSegments();
}

/// The picture stored last is shown `temporalOffset` edit units behind its place.
void IndexTableBuilder::noteShown(std::int32_t temporalOffset) {
    std::int64_t const shown = next_ + temporalOffset;
    std::int64_t const leadsBack = -std::int64_t{temporalOffset};
    if (shown >= final_ && fitsInt8(leadsBack) && !shownAt(shown))
        shownAt(shown) = static_cast<std::int8_t>(leadsBack);
}

/// Entry `position` gets its TemporalOffset, or the flag that says that there is none.
void IndexTableBuilder::makeFinal(std::int64_t position) {
    auto& shown = shownAt(position);
    if (shown)
        entryAt(position)[temporalByte] = byteOf(*shown);
    else
        entryAt(position)[flagsByte] |= IndexEntry::OffsetOutOfRange;
    shown.reset();
    ++final_;
}

/// Entries become final in their order. One whose picture does not come within the reach of an Int8 waits no
/// longer.
void IndexTableBuilder::finalizeComing() {
    while (final_ < next_ && (shownAt(final_) || next_ - final_ > std::numeric_limits<std::int8_t>::max()))
        makeFinal(final_);
}

bool IndexTableBuilder::isKeyFrame(std::size_t entry) const {
    unsigned char const* const bytes = bytes_.data() + entry * entrySize();
    return bytes[keyFrameByte] == 0 && (bytes[flagsByte] & IndexEntry::OffsetOutOfRange) == 0;
}

/// Entries of the next segment, when there are more than it holds: a segment begins with a key frame where
/// that does not make the one before it much shorter.
std::size_t IndexTableBuilder::splitPoint() const {
    std::size_t const most = mostEntries();
    for (std::size_t entry = most; entry > most / 2; --entry)
        if (isKeyFrame(entry))
            return entry;
    return most;
}

void IndexTableBuilder::finalizeFullSegments() {
    while (static_cast<std::uint64_t>(final_ - first_) > mostEntries())
        finalizePreviousSegment(splitPoint());
}

/// Makes a segment of the first `entries` entries.
void IndexTableBuilder::finalizePreviousSegment(std::size_t entries) {
    std::size_t const size = entries * entrySize();
    auto const count = static_cast<std::int64_t>(entries);
    auto segment = makeSegment(first_, count);
    segment->editUnitByteCount(Types::UInt32(0));
    segment->indexEntryArray(arrayOf({bytes_.data(), size}, entrySize(), sliceCount_, posTableCount()));
    ready_.push_back(std::move(segment));
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size));
    first_ += count;
}

IndexTableBuilder::SegmentPtr IndexTableBuilder::makeSegment(std::int64_t start,
                                                             std::int64_t duration) const {
    auto segment = std::make_shared<IndexTables::IndexTableSegment>(std::uint8_t{4});
    segment->instanceUID(Types::UUID::generate());
    segment->indexEditRate(Types::Rational(editRate_));
    segment->indexStartPosition(Types::Position(start));
    segment->indexDuration(Types::Length(duration));
    segment->indexSID(Types::UInt32(0));
    segment->sliceCount(Types::UInt8(sliceCount_));
    segment->posTableCount(Types::UInt8(posTableCount()));
    if (!deltas_.empty())
        segment->deltaEntryArray(deltas_);
    return segment;
}

/// The one segment of a constant rate: for all of the container as long as it grows, and again when its
/// duration is known.
void IndexTableBuilder::takeConstantSegment() {
    if (isConstantGiven_ && !duration_)
        return;
    auto segment = makeSegment(0, duration_.value_or(0));
    segment->editUnitByteCount(Types::UInt32(editUnitByteCount_));
    ready_.push_back(std::move(segment));
    isConstantGiven_ = true;
}

void IndexTableBuilder::finalize(std::int64_t duration) {
    if (duration_)
        return;
    duration_ = duration;
    while (final_ < next_)
        makeFinal(final_);
    finalizeFullSegments();
    if (editUnitByteCount_ != 0 && duration > 0)
        takeConstantSegment();
}

Templates::vector<IndexTableBuilder::SegmentPtr> IndexTableBuilder::takeSegments() {
    if (final_ > first_)
        finalizePreviousSegment(static_cast<std::size_t>(final_ - first_));
    if (editUnitByteCount_ != 0 && !duration_)
        takeConstantSegment();
    return std::exchange(ready_, {});
}

} // namespace MXF::Zelm::GenericContainer::Multiplexer
