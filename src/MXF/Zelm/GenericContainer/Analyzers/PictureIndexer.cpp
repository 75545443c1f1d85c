#include "MXF/Zelm/GenericContainer/Analyzers/PictureIndexer.h"

#include "MXF/Zelm/IndexTables/IndexEntry.h"

#include <limits>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::MPEG::VideoUnit;
using IndexTables::IndexEntry;

constexpr std::uint8_t forwardPrediction = IndexEntry::ForwardPrediction;
constexpr std::uint8_t backwardPrediction = IndexEntry::BackwardPrediction;

/// The kinds of pictures, in the two lowest flags (SMPTE 381M).
constexpr std::uint8_t kindP = 0x02, kindB = 0x03;

/// Says so where an offset does not fit in an index entry.
EditUnitIndex checked(EditUnitIndex index) {
    using Limits = std::numeric_limits<std::int8_t>;
    if (index.temporalOffset > Limits::max() || index.keyFrameOffset < Limits::min())
        index.flags |= IndexEntry::OffsetOutOfRange;
    return index;
}

} // namespace

EditUnitIndex PictureIndexer::add(VideoUnit const& unit, std::size_t followingB) {
    ++stored_;
    EditUnitIndex index;
    if (isB(unit)) {
        addB(index);
        return checked(index);
    }
    index.temporalOffset = static_cast<std::int32_t>(followingB);
    if (isIntra(unit)) {
        addKey(unit, followingB, index);
    } else {
        index.flags = forwardPrediction | kindP;
        index.keyFrameOffset = static_cast<std::int32_t>(key_ - stored_);
    }
    anchor_ = stored_;
    if (unit.sequence)
        index.flags |= IndexEntry::SequenceHeader;
    return checked(index);
}

/// Decoding may begin at an I picture with a sequence header when nothing that is shown behind needs more.
void PictureIndexer::addKey(VideoUnit const& unit, std::size_t followingB, EditUnitIndex& index) {
    previousKey_ = stored_ == 0 ? 0 : key_;
    key_ = stored_;
    isClosed_ = unit.group && unit.group->closed;
    if (unit.sequence && (isClosed_ || followingB == 0))
        index.flags = IndexEntry::RandomAccess;
}

/// B pictures that are shown before the I picture need the group before; in a closed group, that picture
/// alone.
void PictureIndexer::addB(EditUnitIndex& index) const {
    bool const isLeading = anchor_ == key_;
    index.temporalOffset = -1;
    index.flags = backwardPrediction | kindB;
    if (!isLeading || !isClosed_)
        index.flags |= forwardPrediction;
    index.keyFrameOffset =
        static_cast<std::int32_t>((isLeading && !isClosed_ ? previousKey_ : key_) - stored_);
}

} // namespace MXF::Zelm::GenericContainer
