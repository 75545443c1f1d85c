#include "MXF/Zelm/IndexTables/IndexTableSegmentWithGOPInfo.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace MXF::Zelm::IndexTables {

namespace {

/// The most edit units that a temporal offset leads forwards or backwards.
constexpr std::size_t temporalReach = 128;

bool beginsGroup(IndexEntryArray const& entries, std::size_t index) {
    return entries.keyFrameOffset(index) == 0 &&
           (entries.flags(index) & (IndexEntry::ForwardPrediction | IndexEntry::BackwardPrediction)) == 0;
}

/// True when `before` ends where `after` begins.
bool areConsecutive(IndexTableSegment const& before, IndexTableSegment const& after) {
    auto const start = static_cast<std::uint64_t>(before.indexStartPosition().value());
    auto const duration = static_cast<std::uint64_t>(before.indexDuration().value());
    return before.indexDuration().value() >= 0 &&
           after.indexStartPosition().value() >= before.indexStartPosition().value() &&
           static_cast<std::uint64_t>(after.indexStartPosition().value()) - start == duration;
}

void requireConsecutive(bool holds, const char* condition) {
    if (!holds)
        throw Exceptions::InvalidStructure(
            Exceptions::Condition{condition},
            "Trying to update non-consecutive IndexTableSegmentWithGOPInfo's.");
}

} // namespace

IndexTableSegmentWithGOPInfo::IndexTableSegmentWithGOPInfo(KLV::Packet& packet,
                                                           IndexTableSegmentListener* listener)
    : IndexTableSegment(packet, listener), gopInfoVector_(indexEntryCount()) {
    findGroups();
    if (indexEntryArray() != nullptr)
        findDisplayPositions(*this, 0);
}

IndexTableSegmentWithGOPInfo::~IndexTableSegmentWithGOPInfo() = default;

GOPInfo const& IndexTableSegmentWithGOPInfo::gopInfo(std::size_t index) const {
    if (index >= gopInfoVector_.size())
        throw Exceptions::InvalidPosition(Exceptions::Condition{"index < gopInfoVector_.size ()"},
                                          "The IndexTableSegment is smaller than the given index.");
    return gopInfoVector_[index];
}

/// Positions within the groups that begin here, and the lengths of those that also end here.
void IndexTableSegmentWithGOPInfo::findGroups() {
    std::int64_t position = -1;
    std::size_t first = 0;
    for (std::size_t i = 0; i < gopInfoVector_.size(); ++i) {
        if (beginsGroup(*indexEntryArray(), i)) {
            for (std::size_t k = first; position >= 0 && k < i; ++k)
                gopInfoVector_[k].gopLength = static_cast<std::int64_t>(i - first);
            first = i;
            position = 0;
        }
        gopInfoVector_[i].gopPosition = position;
        if (position >= 0)
            ++position;
    }
}

/// Follows the temporal offsets of `segment`, whose entry 0 has the number `distance` here, to the entries
/// here that they lead to. An entry may lead beyond its segment by `temporalReach`.
void IndexTableSegmentWithGOPInfo::findDisplayPositions(IndexTableSegment const& segment,
                                                        std::int64_t distance) {
    IndexEntryArray const& entries = *segment.indexEntryArray();
    auto const count = static_cast<std::int64_t>(entries.size());
    auto const reach = static_cast<std::int64_t>(temporalReach);
    auto const size = static_cast<std::int64_t>(gopInfoVector_.size());
    std::int64_t const end = std::min(count, size + reach - distance);
    std::int64_t const begin = distance < -reach ? -reach - distance : 0;
    for (std::int64_t i = begin; i < end; ++i) {
        std::int64_t const display = distance + i;
        std::int64_t const stored = display + entries.temporalOffset(static_cast<std::size_t>(i));
        if (stored < 0 || stored >= size)
            continue;
        GOPInfo& info = gopInfoVector_[static_cast<std::size_t>(stored)];
        if (info.gopPosition >= 0)
            info.displayPosition = std::max<std::int64_t>(-1, display - (stored - info.gopPosition));
    }
}

/// True when there is an entry for each edit unit, and something known of each.
bool IndexTableSegmentWithGOPInfo::isComplete() const {
    return indexEntryCount() != 0 && gopInfoVector_.size() == indexEntryCount() &&
           std::cmp_equal(indexEntryCount(), indexDuration().value());
}

/// Number of entries before the first group that begins here.
std::size_t IndexTableSegmentWithGOPInfo::leadingEntries() const {
    std::size_t count = 0;
    while (count < gopInfoVector_.size() && !beginsGroup(*indexEntryArray(), count))
        ++count;
    return count;
}

/// The group of the last entry before this segment goes on here.
void IndexTableSegmentWithGOPInfo::continueGroup(GOPInfo const& lastInfoFromPrevious) {
    std::size_t const count = leadingEntries();
    if (count == 0)
        return;
    if (lastInfoFromPrevious.gopPosition < 0)
        throw Exceptions::InvalidStructure(
            Exceptions::Condition{"lastInfoFromPrevious.gopPosition >= 0"},
            "Not supported: IndexTableSegment duration is smaller than GOP length.");
    std::int64_t position = lastInfoFromPrevious.gopPosition;
    for (std::size_t i = 0; i < count; ++i)
        gopInfoVector_[i].gopPosition = ++position;
    for (std::size_t i = 0; count < gopInfoVector_.size() && i < count; ++i)
        gopInfoVector_[i].gopLength = position + 1;
}

/// The last group goes on for `more` entries of the next segment.
void IndexTableSegmentWithGOPInfo::endLastGroup(std::size_t more) {
    if (gopInfoVector_.empty() || gopInfoVector_.back().gopPosition < 0)
        return;
    std::int64_t const inGroup = gopInfoVector_.back().gopPosition + 1;
    std::int64_t const inSegment = std::min<std::int64_t>(inGroup, std::ssize(gopInfoVector_));
    std::for_each(gopInfoVector_.end() - static_cast<std::ptrdiff_t>(inSegment), gopInfoVector_.end(),
                  [&](GOPInfo& info) { info.gopLength = inGroup + static_cast<std::int64_t>(more); });
}

void IndexTableSegmentWithGOPInfo::updateMissingInfo(IndexTableSegmentWithGOPInfo const* previous,
                                                     IndexTableSegmentWithGOPInfo const* next) {
    bool const usePrevious = previous != nullptr && previous->isComplete();
    bool const useNext = next != nullptr && next->isComplete();
    requireConsecutive(!usePrevious || areConsecutive(*previous, *this),
                       "previous -> indexStartPosition ().value () + previous -> indexDuration ().value () "
                       "== this -> indexStartPosition ().value ()");
    requireConsecutive(!useNext || areConsecutive(*this, *next),
                       "this -> indexStartPosition ().value () + this -> indexDuration ().value () == next "
                       "-> indexStartPosition ().value ()");
    if (indexEntryCount() != gopInfoVector_.size() || indexEntryCount() == 0)
        return;
    if (usePrevious)
        continueGroup(previous->gopInfoVector_.back());
    if (useNext && next->leadingEntries() < next->indexEntryCount())
        endLastGroup(next->leadingEntries());
    findDisplayPositions(*this, 0);
    if (usePrevious)
        findDisplayPositions(*previous, -static_cast<std::int64_t>(previous->indexEntryCount()));
    if (useNext)
        findDisplayPositions(*next, indexDuration().value());
}

} // namespace MXF::Zelm::IndexTables
