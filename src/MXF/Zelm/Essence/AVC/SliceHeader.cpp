#include "MXF/Zelm/Essence/AVC/SliceHeader.h"

#include "MXF/Zelm/Essence/AVC/ExpGolomb.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <tuple>

namespace MXF::Zelm::Essence::AVC {

namespace {

/// More than the fields up to the order count have; and than those up to memory management, in all but the
/// oddest slices.
constexpr std::size_t shortHead = 64, longHead = 512;

/// Of the operations on pictures that decoders keep: how many numbers follow each, and what ends them.
constexpr unsigned operands[] = {0, 1, 1, 2, 1, 0, 1};
constexpr std::uint32_t resetOperation = 5;

constexpr std::uint32_t anyNumber = UINT32_MAX - 1;
constexpr std::uint32_t mostReferences = 32;

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

/// What comes between the order count and memory management.
class HeaderTail {
public:
    HeaderTail(DataIO::BitSliceReader& bits, SequenceParameterSet const& sequence,
               PictureParameterSet const& picture, SliceHeader const& slice)
        : bits_(bits),
          slice_(slice),
          isPredicted_(!slice.isIntra()),
          hasColour_(sequence.chromaFormat != 0 && !sequence.separateColourPlanes),
          picture_(picture),
          references_{picture.references[0], picture.references[1]} {}

    /// Whether the memory of decoders is reset.
    bool readReset() {
        if (picture_.redundantPicturesPresent)
            readUnsigned(bits_, anyNumber);
        readReferenceCounts();
        for (int list = 0; list < lists(); ++list)
            skipReordering();
        bool const isWeighted = slice_.isBidirectional() ? picture_.weightedBiprediction == 1
                                                         : isPredicted_ && picture_.weightedPrediction;
        if (isWeighted)
            skipWeights();
        return readOperations();
    }

private:
    int lists() const { return slice_.isBidirectional() ? 2 : isPredicted_ ? 1 : 0; }

    void readReferenceCounts() {
        if (slice_.isBidirectional())
            bits_.skip(1); // direct prediction
        if (lists() == 0 || !bits_.readFlag())
            return;
        for (int list = 0; list < lists(); ++list)
            references_[list] = 1 + readUnsigned(bits_, mostReferences - 1);
    }

    void skipReordering() {
        constexpr std::uint32_t end = 3;
        if (!bits_.readFlag())
            return;
        while (readUnsigned(bits_, end) != end)
            readUnsigned(bits_, anyNumber);
    }

    void skipWeights() {
        for (int component = 0; component <= int{hasColour_}; ++component)
            readUnsigned(bits_, anyNumber); // denominators
        for (int list = 0; list < lists(); ++list)
            for (std::uint32_t i = 0; i < references_[list]; ++i) {
                skipWeight(1);
                if (hasColour_)
                    skipWeight(2);
            }
    }

    void skipWeight(int components) {
        if (bits_.readFlag())
            for (int i = 0; i < 2 * components; ++i)
                readSigned(bits_);
    }

    bool readOperations() {
        bool resets = false;
        if (!bits_.readFlag())
            return false;
        while (auto const operation = readUnsigned(bits_, std::size(operands) - 1)) {
            resets = resets || operation == resetOperation;
            for (unsigned i = 0; i < operands[operation]; ++i)
                readUnsigned(bits_, anyNumber);
        }
        return resets;
    }

    DataIO::BitSliceReader& bits_;
    SliceHeader const& slice_;
    bool isPredicted_, hasColour_;
    PictureParameterSet const& picture_;
    std::uint32_t references_[2];
};

/// Where the bits end too early, or make no sense, nothing is reset.
bool readsReset(DataIO::BitSliceReader& bits, SequenceParameterSet const& sequence,
                PictureParameterSet const& picture, SliceHeader const& slice) {
    if (!slice.isReference || slice.isIDR || picture.hasSliceGroups)
        return false;
    try {
        return HeaderTail(bits, sequence, picture, slice).readReset();
    } catch (Exceptions::InvalidLength const&) {
    } catch (Exceptions::InvalidValue const&) {
    }
    return false;
}

/// Sums of what a file says, which may be anything: they wrap.
std::int64_t plus(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

} // namespace

SliceHeader SliceHeader::read(NalUnit const& unit, ParameterSets const& sets) {
    bool const managesMemory = unit.referenceIDC != 0 && unit.type != NalType::IDRSlice;
    DataIO::BitSliceReader bits(unit.bytes(managesMemory ? longHead : shortHead));
    SliceHeader slice;
    slice.isIDR = unit.type == NalType::IDRSlice;
    slice.isReference = unit.referenceIDC != 0;
    slice.firstMacroblock = readUnsigned(bits, mostMacroblocks);
    auto const type = readUnsigned(bits, 2 * sliceTypes - 1);
    slice.type = static_cast<SliceType>(type % sliceTypes);
    slice.isTypeOfPicture = type >= sliceTypes;
    slice.pictureSetID = static_cast<std::uint8_t>(readUnsigned(bits, UINT8_MAX));
    auto const* const picture = sets.picture(slice.pictureSetID).get();
    auto const* const sequence = picture != nullptr ? sets.sequence(picture->sequenceID).get() : nullptr;
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
        slice.idrPictureID = readUnsigned(bits, UINT16_MAX);
    readOrderCount(bits, *sequence, *picture, slice);
    slice.resetsMemory = readsReset(bits, *sequence, *picture, slice);
    return slice;
}

bool SliceHeader::isOfOtherPicture(SliceHeader const& next) const {
    auto const facts = [](SliceHeader const& slice) {
        return std::tuple(slice.frameNumber, slice.pictureSetID, slice.isField, slice.isBottomField,
                          slice.isReference, slice.isIDR, slice.idrPictureID, slice.orderCountLow,
                          slice.deltaBottom, slice.deltaOrder[0], slice.deltaOrder[1]);
    };
    return facts(*this) != facts(next);
}

bool SliceHeader::isFirstFieldOf(SliceHeader const& next) const {
    return isField && next.isField && isBottomField != next.isBottomField &&
           frameNumber == next.frameNumber && (isIDR || !next.isIDR);
}

std::int64_t PictureOrderCounter::next(SequenceParameterSet const& sequence,
                                       PictureParameterSet const& picture, SliceHeader const& slice) {
    if (slice.isIDR)
        reset(slice);
    std::int64_t const count =
        sequence.orderCountType == 0 ? byLowBits(sequence, picture, slice) : byOffsets(sequence, slice);
    if (!slice.resetsMemory)
        return count;
    reset(slice);
    return 0;
}

/// The picture itself then counts 0, or a frame's earlier field does.
void PictureOrderCounter::reset(SliceHeader const& slice) {
    high_ = 0;
    low_ = 0;
    frames_ = lastFrame_ = 0;
    if (slice.resetsMemory && !slice.isField && slice.deltaBottom < 0)
        low_ = static_cast<std::uint32_t>(-std::int64_t{slice.deltaBottom});
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
