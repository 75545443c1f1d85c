#include "MXF/Zelm/IndexTables/EditUnitLocator.h"

#include "MXF/Zelm/IndexTables/RangeTree.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::IndexTables {

namespace {

using Offset = std::optional<std::uint64_t>;

constexpr std::int64_t lastPosition = std::numeric_limits<std::int64_t>::max();

/// The farthest that a temporal offset leads back and forth.
constexpr int farthestBack = -std::numeric_limits<std::int8_t>::min();
constexpr int farthestForth = std::numeric_limits<std::int8_t>::max();

Offset add(Offset a, Offset b) {
    if (!a || !b || *b > std::numeric_limits<std::uint64_t>::max() - *a)
        return std::nullopt;
    return *a + *b;
}

Offset multiply(std::uint64_t count, std::uint64_t size) {
    if (size != 0 && count > std::numeric_limits<std::uint64_t>::max() / size)
        return std::nullopt;
    return count * size;
}

/// Edit units from `start` to `position`, which is not before it.
std::uint64_t distance(std::int64_t start, std::int64_t position) {
    return static_cast<std::uint64_t>(position) - static_cast<std::uint64_t>(start);
}

/// One segment with what look-ups need at once.
struct Span {
    IndexTableSegment const* segment;
    IndexEntryArray const* entries; // null when there are none
    std::int64_t start;
    std::int64_t end;            // behind the last edit unit that it serves
    std::uint32_t byteCount = 0; // of each edit unit, 0 when they differ
    Offset base = std::nullopt;  // where its first edit unit begins, if the rate is constant

    explicit Span(IndexTableSegment const& from)
        : segment(&from),
          entries(from.indexEntryCount() != 0 ? from.indexEntryArray() : nullptr),
          start(from.indexStartPosition()),
          end(endOfRange(start, from.indexDuration())),
          byteCount(from.editUnitByteCount() != nullptr ? from.editUnitByteCount()->value() : 0) {
        if (end == start && entries != nullptr)
            end = endOfRange(start, static_cast<std::int64_t>(entries->size()));
        else if (end == start && byteCount != 0)
            end = lastPosition;
    }

    std::uint64_t entryCount() const { return entries != nullptr ? entries->size() : 0; }

    /// The entry for edit unit `start + relative`.
    std::optional<std::size_t> entry(std::uint64_t relative) const {
        if (relative >= entryCount())
            return std::nullopt;
        return static_cast<std::size_t>(relative);
    }

    /// Where edit unit `start + relative` begins. Behind the entries the rate may be constant.
    Offset offset(std::uint64_t relative) const {
        if (auto const index = entry(relative))
            return entries->streamOffset(*index);
        if (byteCount == 0)
            return std::nullopt;
        if (entries == nullptr)
            return add(base, multiply(relative, byteCount));
        std::size_t const last = entries->size() - 1;
        return add(entries->streamOffset(last), multiply(relative - last, byteCount));
    }

    /// The last edit unit that begins at `streamOffset` or before it, counted from the start; entries are
    /// taken to stand in the order of their offsets.
    std::optional<std::uint64_t> lastBefore(std::uint64_t streamOffset) const {
        std::uint64_t low = 0, high = distance(start, end);
        if (byteCount == 0)
            high = std::min(high, entryCount());
        while (low < high) {
            std::uint64_t const middle = low + (high - low) / 2;
            auto const begins = offset(middle);
            if (begins && *begins <= streamOffset)
                low = middle + 1;
            else
                high = middle;
        }
        return low != 0 ? std::optional(low - 1) : std::nullopt;
    }

    /// Where it ends, as far as this segment tells.
    Offset endOffset(std::uint64_t relative) const {
        if (entryCount() > 1 && relative < entryCount() - 1)
            return offset(relative + 1);
        return byteCount != 0 ? add(offset(relative), byteCount) : std::nullopt;
    }
};

} // namespace

struct EditUnitLocator::State {
    EssenceExtent extent;
    std::vector<Span> spans; // as in the table
    RangeTree declared;      // the ranges that the segments' durations give
    RangeTree served;        // those of `Span::end`
    std::int64_t end = std::numeric_limits<std::int64_t>::min();

    State(IndexTable const& table, EssenceExtent const& essence);
    void findBases();
    Offset baseOf(Span const& span, std::int64_t servedBefore) const;
    Span const* find(std::int64_t position) const;
    bool isServed(std::int64_t position) const { return find(position) != nullptr; }
    bool isBeyondEssence(std::uint64_t offset) const {
        return extent.streamLength && offset >= *extent.streamLength;
    }
    Offset lengthOf(Span const& span, std::int64_t position, std::uint64_t offset) const;
    Offset elementOffset(EditUnitLocation const& unit, std::size_t element) const;

    /// The position that `position` and an offset from a file give, when the table serves it.
    std::optional<std::int64_t> shifted(std::int64_t position, int by) const;
    std::optional<int> temporalOffset(std::int64_t displayPosition) const;
};

EditUnitLocator::State::State(IndexTable const& table, EssenceExtent const& essence) : extent(essence) {
    std::vector<RangeTree::Range> byDuration, byContent;
    for (auto const& [start, segment] : table) {
        spans.emplace_back(*segment);
        byDuration.push_back({start, endOfRange(start, segment->indexDuration())});
        byContent.push_back({start, spans.back().end});
        end = std::max(end, spans.back().end);
    }
    declared = RangeTree(byDuration);
    served = RangeTree(byContent);
    findBases();
}

Span const* EditUnitLocator::State::find(std::int64_t position) const {
    auto found = declared.find(position);
    if (!found)
        found = served.find(position);
    return found ? &spans[*found] : nullptr;
}

/// Where each segment of constant rate begins follows from what stands before it. A segment looks only at
/// segments that start earlier, whose bases are known.
void EditUnitLocator::State::findBases() {
    std::int64_t servedBefore = 0;
    for (Span& span : spans) {
        if (span.entries == nullptr && span.byteCount != 0)
            span.base = baseOf(span, std::min(servedBefore, span.start));
        servedBefore = std::max(servedBefore, span.end);
    }
}

/// Edit units that no segment serves, from `servedBefore` to the start, are taken to have the same size.
Offset EditUnitLocator::State::baseOf(Span const& span, std::int64_t servedBefore) const {
    if (span.start < 0)
        return std::nullopt;
    Offset before = extent.constantRateStart;
    if (servedBefore > 0) {
        Span const* const last = find(servedBefore - 1);
        if (last == nullptr)
            return std::nullopt;
        before = last->endOffset(distance(last->start, servedBefore - 1));
    }
    return add(before, multiply(distance(servedBefore, span.start), span.byteCount));
}

Offset EditUnitLocator::State::lengthOf(Span const& span, std::int64_t position, std::uint64_t offset) const {
    Offset unitEnd = span.endOffset(distance(span.start, position));
    if (!unitEnd && position != lastPosition) {
        if (Span const* const next = find(position + 1))
            unitEnd = next->offset(distance(next->start, position + 1));
        else if (position + 1 >= end)
            unitEnd = extent.streamLength;
    }
    if (unitEnd && extent.streamLength)
        unitEnd = std::min(*unitEnd, *extent.streamLength);
    if (!unitEnd || *unitEnd < offset)
        return std::nullopt;
    return *unitEnd - offset;
}

std::optional<std::int64_t> EditUnitLocator::State::shifted(std::int64_t position, int by) const {
    if ((by < 0 && position < std::numeric_limits<std::int64_t>::min() - by) ||
        (by > 0 && position > lastPosition - by) || !isServed(position + by))
        return std::nullopt;
    return position + by;
}

std::optional<int> EditUnitLocator::State::temporalOffset(std::int64_t displayPosition) const {
    Span const* const span = find(displayPosition);
    if (span == nullptr)
        return std::nullopt;
    auto const entry = span->entry(distance(span->start, displayPosition));
    return entry ? span->entries->temporalOffset(*entry) : 0;
}

EditUnitLocator::EditUnitLocator(IndexTable const& table, EssenceExtent const& extent)
    : state_(std::make_unique<State>(table, extent)) {}
EditUnitLocator::EditUnitLocator(EditUnitLocator&&) noexcept = default;
EditUnitLocator& EditUnitLocator::operator=(EditUnitLocator&&) noexcept = default;
EditUnitLocator::~EditUnitLocator() = default;

std::optional<EditUnitLocation> EditUnitLocator::locate(std::int64_t position) const {
    Span const* const span = state_->find(position);
    if (span == nullptr)
        return std::nullopt;
    std::uint64_t const relative = distance(span->start, position);
    auto const offset = span->offset(relative);
    if (!offset || state_->isBeyondEssence(*offset))
        return std::nullopt;
    return EditUnitLocation{position, *offset, state_->lengthOf(*span, position, *offset), span->segment,
                            span->entry(relative)};
}

std::optional<std::int64_t> EditUnitLocator::positionAt(std::uint64_t streamOffset) const {
    std::optional<EditUnitLocation> nearest;
    for (Span const& span : state_->spans) {
        auto const relative = span.lastBefore(streamOffset);
        if (!relative)
            continue;
        auto const position = static_cast<std::int64_t>(static_cast<std::uint64_t>(span.start) + *relative);
        auto const found = locate(position);
        if (found && found->segment == span.segment &&
            (!found->length || streamOffset - found->streamOffset < *found->length) &&
            (!nearest || found->streamOffset > nearest->streamOffset))
            nearest = found;
    }
    if (!nearest || state_->isBeyondEssence(streamOffset))
        return std::nullopt;
    return nearest->position;
}

/// Where an element begins by its delta entry, the slice offsets of the edit unit counted in.
Offset EditUnitLocator::State::elementOffset(EditUnitLocation const& unit, std::size_t element) const {
    auto const delta = unit.segment->deltaEntry(element);
    Offset slice = 0;
    if (delta.slice() != 0) {
        auto const* const entries = unit.segment->indexEntryArray();
        if (!unit.entry || delta.slice() > entries->sliceCount())
            return std::nullopt;
        slice = entries->sliceOffset(*unit.entry, delta.slice());
    }
    Offset const relative = add(slice, delta.elementDelta());
    if (unit.length && relative && *relative > *unit.length)
        return std::nullopt;
    return add(unit.streamOffset, relative);
}

std::optional<ElementLocation> EditUnitLocator::locateElement(std::int64_t position,
                                                              std::size_t element) const {
    auto const unit = locate(position);
    if (!unit)
        return std::nullopt;
    std::size_t const count = unit->segment->deltaEntryCount();
    if (count == 0 && element == 0)
        return ElementLocation{unit->streamOffset, unit->length, 0};
    if (element >= count)
        return std::nullopt;
    auto const begin = state_->elementOffset(*unit, element);
    if (!begin || state_->isBeyondEssence(*begin))
        return std::nullopt;
    Offset const end = element + 1 < count ? state_->elementOffset(*unit, element + 1)
                                           : add(unit->streamOffset, unit->length);
    return ElementLocation{*begin, end && *end >= *begin ? Offset(*end - *begin) : std::nullopt,
                           unit->segment->deltaEntry(element).posTableIndex()};
}

std::size_t EditUnitLocator::elementCount(std::int64_t position) const {
    Span const* const span = state_->find(position);
    return span != nullptr ? std::max<std::size_t>(span->segment->deltaEntryCount(), 1) : 0;
}

std::optional<std::uint8_t> EditUnitLocator::flags(std::int64_t position) const {
    Span const* const span = state_->find(position);
    if (span == nullptr)
        return std::nullopt;
    auto const entry = span->entry(distance(span->start, position));
    return entry ? std::optional(span->entries->flags(*entry)) : std::nullopt;
}

std::optional<std::int64_t> EditUnitLocator::storedPosition(std::int64_t displayPosition) const {
    auto const offset = state_->temporalOffset(displayPosition);
    return offset ? state_->shifted(displayPosition, *offset) : std::nullopt;
}

std::optional<std::int64_t> EditUnitLocator::displayPosition(std::int64_t position) const {
    auto const leadsHere = [&](int by) {
        auto const display = state_->shifted(position, by);
        return display && state_->temporalOffset(*display) == -by;
    };
    for (int by = 0; by <= farthestBack; ++by) { // the nearest first
        if (leadsHere(by))
            return position + by;
        if (by <= farthestForth && leadsHere(-by))
            return position - by;
    }
    return std::nullopt;
}

std::optional<std::int64_t> EditUnitLocator::keyFrame(std::int64_t position) const {
    Span const* const span = state_->find(position);
    if (span == nullptr)
        return std::nullopt;
    auto const entry = span->entry(distance(span->start, position));
    if (!entry)
        return position;
    int const offset = span->entries->keyFrameOffset(*entry);
    if (offset > 0 || (span->entries->flags(*entry) & IndexEntry::OffsetOutOfRange) != 0)
        return std::nullopt;
    return state_->shifted(position, offset);
}

std::optional<DecodingRange> EditUnitLocator::decodingRange(std::int64_t displayPosition) const {
    auto const stored = storedPosition(displayPosition);
    auto const first = stored ? keyFrame(*stored) : std::nullopt;
    return first ? std::optional(DecodingRange{*first, *stored}) : std::nullopt;
}

std::optional<std::int64_t> EditUnitLocator::end() const {
    if (state_->spans.empty())
        return std::nullopt;
    if (state_->end != lastPosition)
        return state_->end;
    Span const* const last = state_->find(lastPosition - 1);
    if (last == nullptr || !last->base || last->byteCount == 0 || !state_->extent.streamLength)
        return std::nullopt;
    std::uint64_t const length = *state_->extent.streamLength;
    std::uint64_t const left = length - std::min(length, *last->base);
    std::uint64_t const units = left / last->byteCount + (left % last->byteCount != 0 ? 1 : 0);
    return endOfRange(last->start, static_cast<std::int64_t>(std::min<std::uint64_t>(units, lastPosition)));
}

} // namespace MXF::Zelm::IndexTables
