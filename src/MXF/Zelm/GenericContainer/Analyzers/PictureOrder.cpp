#include "MXF/Zelm/GenericContainer/Analyzers/PictureOrder.h"

#include "MXF/Zelm/IndexTables/IndexEntry.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::MPEG::PictureType;
using Essence::MPEG::VideoUnit;
using IndexTables::IndexEntry;

/// Temporal references count modulo this.
constexpr std::int64_t referenceCycle = 1024;

constexpr std::uint8_t randomAccess = IndexEntry::RandomAccess;
constexpr std::uint8_t forwardPrediction = IndexEntry::ForwardPrediction;
constexpr std::uint8_t backwardPrediction = IndexEntry::BackwardPrediction;

/// The kinds of pictures, in the two lowest flags (SMPTE 381M).
constexpr std::uint8_t kindP = 0x02, kindB = 0x03;

bool isB(VideoUnit const& unit) { return unit.picture && unit.picture->type == PictureType::B; }

bool isI(VideoUnit const& unit) {
    return unit.picture && (unit.picture->type == PictureType::I || unit.picture->type == PictureType::D);
}

/// Pictures to be shown before the I picture at the start of a group that are not there.
std::int64_t missingBefore(VideoUnit const& unit, VideoUnit const* next) {
    if (!isI(unit))
        return 0;
    std::int64_t const own = unit.picture->temporalReference;
    if (next == nullptr || next->group || !isB(*next))
        return own;
    return std::min<std::int64_t>(own, next->picture->temporalReference);
}

EditUnitIndex checked(EditUnitIndex index) {
    constexpr auto least = std::numeric_limits<std::int8_t>::min(),
                   most = std::numeric_limits<std::int8_t>::max();
    if (index.temporalOffset < -most || index.temporalOffset > most || index.keyFrameOffset < least)
        index.flags |= IndexEntry::OffsetOutOfRange;
    return index;
}

} // namespace

EditUnitIndex PictureOrder::add(VideoUnit const& unit, VideoUnit const* next, Kind kind) {
    ++stored_;
    if (unit.group || stored_ == 0)
        startGroup(unit, next);
    std::int64_t const offset =
        kind.isReordered && unit.picture ? displayOffset(unit.picture->temporalReference) : 0;
    EditUnitIndex index;
    index.temporalOffset = static_cast<std::int32_t>(offset);
    if (isI(unit))
        index.flags = takeKey(offset, unit.sequence || kind.isIntraOnly);
    else if (isB(unit))
        indexB(offset, index);
    else {
        index.flags = forwardPrediction | kindP;
        index.keyFrameOffset = static_cast<std::int32_t>(key_ - stored_);
    }
    if (unit.sequence)
        index.flags |= IndexEntry::SequenceHeader;
    return checked(index);
}

/// The flags of an I picture, from which later ones are predicted. Decoding may begin there when nothing that
/// is shown behind needs more.
std::uint8_t PictureOrder::takeKey(std::int64_t offset, bool canDecode) {
    previousKey_ = stored_ == 0 ? 0 : key_;
    key_ = stored_;
    keyDisplay_ = stored_ + offset;
    return canDecode && (isClosed_ || offset == 0) ? randomAccess : std::uint8_t{0};
}

/// B pictures that are shown before the I picture need the group before; in a closed group, that picture
/// alone.
void PictureOrder::indexB(std::int64_t offset, EditUnitIndex& index) const {
    bool const isLeading = stored_ + offset < keyDisplay_;
    index.flags = backwardPrediction | kindB;
    if (!isLeading || !isClosed_)
        index.flags |= forwardPrediction;
    auto const key = isLeading && !isClosed_ ? previousKey_ : key_;
    index.keyFrameOffset = static_cast<std::int32_t>(key - stored_);
}

void PictureOrder::startGroup(VideoUnit const& unit, VideoUnit const* next) {
    isClosed_ = unit.group && unit.group->closed;
    base_ = stored_ - missingBefore(unit, next);
}

/// From where the picture is stored to where it is shown; of references that make no sense in its group, the
/// nearest place.
std::int64_t PictureOrder::displayOffset(std::uint16_t temporalReference) const {
    std::int64_t const distance = base_ + temporalReference - stored_;
    std::int64_t const half = referenceCycle / 2;
    std::int64_t const rest = ((distance + half) % referenceCycle + referenceCycle) % referenceCycle;
    return rest - half;
}

void GroupStatistics::add(VideoUnit const& unit) {
    ++pictures_;
    sequenceHeaders_ += unit.sequence ? 1 : 0;
    if (unit.sequence)
        (unit.sequence->isProgressive() ? hasProgressive_ : hasInterlaced_) = true;
    if (unit.group || isI(unit))
        endGroup();
    if (unit.group) {
        ++groups_;
        hasOpen_ = hasOpen_ || !unit.group->closed;
    }
    if (isB(unit))
        addB();
    else
        endRow();
    hasPredicted_ = hasPredicted_ || !isI(unit);
    kinds_ += isB(unit) ? 'B' : isI(unit) ? 'I' : 'P';
}

void GroupStatistics::endGroup() {
    if (kinds_.empty())
        return;
    longest_ = std::max(longest_, kinds_.size());
    kinds_.resize(std::min(kinds_.size(), longestKept));
    if (ended_++ == 0)
        first_ = kinds_;
    differ_ = differ_ || kinds_ != first_;
    kinds_.clear();
}

bool GroupStatistics::areIdentical() const {
    return !differ_ && (ended_ == 0 || first_.compare(0, kinds_.size(), kinds_) == 0);
}

void GroupStatistics::addB() {
    ++row_;
    mostB_ = std::max(mostB_, row_);
}

/// An anchor: the row before it is complete. That of the first anchor was shown before it, and is no row
/// between two.
void GroupStatistics::endRow() {
    if (++anchors_ > 2) {
        bVary_ = bVary_ || (usualRow_ && *usualRow_ != row_);
        usualRow_ = row_;
    }
    row_ = 0;
}

} // namespace MXF::Zelm::GenericContainer
