#include "MXF/Zelm/Essence/AVC/SliceHeader.h"

#include "MXF/Zelm/Essence/AVC/ExpGolomb.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>

namespace MXF::Zelm::Essence::AVC {

namespace {

/// More than the fields that are read have.
constexpr std::size_t longestHead = 64;

constexpr std::uint32_t mostMacroblocks = 2048 * 2048;
constexpr std::uint32_t sliceTypes = 5;

void readOrderCount(DataIO::BitSliceReader& bits, SequenceParameterSet const& sequence,
                    PictureParameterSet const& picture, SliceHeader& slice) {
    bool const tellsBottom = picture.bottomFieldOrderPresent && !slice.isField;
    if (sequence.orderCountType == 0) {
        slice.orderCountLow = static_cast<std::uint32_t>(bits.read(sequence.orderCountBits));
        if (tellsBottom)
            slice.deltaBottom = readSigned(bits);
    } else if (sequence.orderCountType == 1 && !sequence.deltaOrderAlwaysZero) {
        slice.deltaOrder[0] = readSigned(bits);
        if (tellsBottom)
            slice.deltaOrder[1] = readSigned(bits);
    }
}

/// Sums of what a file says, which may be anything: they wrap.
std::int64_t plus(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

} // namespace

SliceHeader SliceHeader::read(NalUnit const& unit, ParameterSets const& sets) {
    DataIO::BitSliceReader bits(unit.bytes(longestHead));
    SliceHeader slice;
    slice.isIDR = unit.type == NalType::IDRSlice;
    slice.isReference = unit.referenceIDC != 0;
    slice.firstMacroblock = readUnsigned(bits, mostMacroblocks);
    auto const type = readUnsigned(bits, 2 * sliceTypes - 1);
    slice.type = static_cast<SliceType>(type % sliceTypes);
    slice.isTypeOfPicture = type >= sliceTypes;
    slice.pictureSetID = static_cast<std::uint8_t>(readUnsigned(bits, UINT8_MAX));
    auto const* const picture = sets.picture(slice.pictureSetID);
    auto const* const sequence = picture != nullptr ? sets.sequence(picture->sequenceID) : nullptr;
    if (sequence == nullptr)
        throw Exceptions::InvalidID("A slice of AVC names parameter set " +
                                    std::to_string(slice.pictureSetID) + ", which has not come");
    if (sequence->separateColourPlanes)
        bits.skip(2);
    slice.frameNumber = static_cast<std::uint32_t>(bits.read(sequence->frameNumberBits));
    if (!sequence->frameMacroblocksOnly)
        slice.isField = bits.readFlag();
    slice.isBottomField = slice.isField && bits.readFlag();
    if (slice.isIDR)
        readUnsigned(bits, UINT16_MAX); // tells neighbouring ones apart
    readOrderCount(bits, *sequence, *picture, slice);
    return slice;
}

std::int64_t PictureOrderCounter::next(SequenceParameterSet const& sequence,
                                       PictureParameterSet const& picture, SliceHeader const& slice) {
    if (slice.isIDR) {
        high_ = 0;
        low_ = lastFrame_ = 0;
        frames_ = 0;
    }
    return sequence.orderCountType == 0 ? byLowBits(sequence, picture, slice) : byOffsets(sequence, slice);
}

/// The low bits are coded; the others follow from the last reference picture, which is not far.
std::int64_t PictureOrderCounter::byLowBits(SequenceParameterSet const& sequence,
                                            PictureParameterSet const& picture, SliceHeader const& slice) {
    std::int64_t const range = std::int64_t{1} << sequence.orderCountBits;
    std::int64_t const step = std::int64_t{slice.orderCountLow} - low_;
    std::int64_t high = high_;
    if (step <= -range / 2)
        high = plus(high, range);
    else if (step > range / 2)
        high = plus(high, -range);
    if (slice.isReference) {
        high_ = high;
        low_ = slice.orderCountLow;
    }
    std::int64_t const count = plus(high, slice.orderCountLow);
    return picture.bottomFieldOrderPresent && !slice.isField ? std::min(count, plus(count, slice.deltaBottom))
                                                             : count;
}

/// Frames since the last IDR picture, by the frame numbers.
std::uint64_t PictureOrderCounter::countFrames(SequenceParameterSet const& sequence,
                                               SliceHeader const& slice) {
    if (slice.frameNumber < lastFrame_)
        frames_ += std::uint64_t{1} << sequence.frameNumberBits;
    lastFrame_ = slice.frameNumber;
    return frames_ + slice.frameNumber;
}

/// Type 1: sums of offsets that the sequence gives. Type 2: in stored order.
std::int64_t PictureOrderCounter::byOffsets(SequenceParameterSet const& sequence, SliceHeader const& slice) {
    std::uint64_t frames = countFrames(sequence, slice);
    if (sequence.orderCountType == 2)
        return static_cast<std::int64_t>(2 * frames) - (slice.isReference || slice.isIDR ? 0 : 1);
    auto const& offsets = sequence.offsetsForReferences;
    std::uint64_t expected = 0;
    if (offsets.empty())
        frames = 0;
    else if (!slice.isReference && frames > 0)
        --frames;
    if (frames > 0) {
        std::uint64_t cycle = 0;
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            cycle += static_cast<std::uint64_t>(std::int64_t{offsets[i]});
            expected +=
                i <= (frames - 1) % offsets.size() ? static_cast<std::uint64_t>(std::int64_t{offsets[i]}) : 0;
        }
        expected += (frames - 1) / offsets.size() * cycle;
    }
    std::int64_t count = plus(static_cast<std::int64_t>(expected), slice.deltaOrder[0]);
    if (!slice.isReference)
        count = plus(count, sequence.offsetForNonReference);
    std::int64_t const bottom = plus(count, std::int64_t{sequence.offsetForTopToBottom});
    if (slice.isField)
        return slice.isBottomField ? bottom : count;
    return std::min(count, plus(bottom, slice.deltaOrder[1]));
}

} // namespace MXF::Zelm::Essence::AVC
