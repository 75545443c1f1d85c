#include "MXF/Zelm/Essence/AVC/AccessUnit.h"
#include "support/Bytes.h"

#include <algorithm>

namespace MXF::Zelm::Test {

using namespace Essence::AVC;

namespace {

DataIO::Chain chain(Bytes const& bytes, std::size_t piece = SIZE_MAX) {
    DataIO::Chain chain;
    for (std::size_t at = 0; at < bytes.size(); at += std::min(piece, bytes.size() - at))
        chain.append(DataIO::Slice::copyOf(bytes.data() + at, std::min(piece, bytes.size() - at)));
    return chain;
}

/// The bits of a unit's payload, written as numbers and codes.
class Bits {
public:
    Bits& put(std::uint32_t value, int count) {
        for (int i = count - 1; i >= 0; --i)
            bits_.push_back((value >> i & 1) != 0);
        return *this;
    }
    Bits& code(std::uint32_t value) {
        int bits = 0;
        while ((value + 1) >> (bits + 1) != 0)
            ++bits;
        return put(0, bits).put(value + 1, bits + 1);
    }
    Bits& sign(int value) { return code(static_cast<std::uint32_t>(value > 0 ? 2 * value - 1 : -2 * value)); }

    NalUnit unit(NalType type, bool isReference = true) const {
        Bytes bytes((bits_.size() + 8) / 8);
        for (std::size_t i = 0; i < bits_.size(); ++i)
            bytes[i / 8] = static_cast<unsigned char>(bytes[i / 8] | (bits_[i] ? 0x80 >> i % 8 : 0));
        bytes[bits_.size() / 8] =
            static_cast<unsigned char>(bytes[bits_.size() / 8] | 0x80 >> bits_.size() % 8);
        return {type, std::uint8_t{isReference}, 0, chain(bytes)};
    }

private:
    std::vector<bool> bits_;
};

// From an encoder: 640 x 360, high profile, 25 frames a second, then the heads of I, P and B pictures.
Bytes const parameters = hex(R"(
    00 00 00 01  67 64 00 1E AC D9 40 A0 2F F9 70 11 00 00 03 00 01 00 00 03 00 32 0F 16 2D 96
    00 00 00 01  68 EA E3 CB 22 C0
)");
Bytes const firstPicture = parameters + hex(R"(
    00 00 01  06 06 01 C4 80                 # recovery point, 0 frames, exact
    00 00 01  65 88 84 01 7F D4 57 6D 7D DA 78 15
)");
std::pair<Bytes, std::int64_t> const pictures[] = {
    // and where it is shown
    {firstPicture, 0},
    {hex("00 00 00 01 41 9A 22 6C 49 FF BA F6 B3 5A 01 9F"), 4},
    {hex("00 00 00 01 01 9E 41 79 0B 7F F1 10 5A 8F 37 E7"), 2},
    {hex("00 00 00 01 41 9A 44 18 24 FF EB 85 96 25 D1 C0"), 8},
    {hex("00 00 00 01 01 9E 63 44 2D FF B6 B5 3E 96 4A 63"), 6},
};

Bytes prefixed(Bytes const& unit) { return number(static_cast<std::uint32_t>(unit.size())) + unit; }

} // namespace

TEST(AVC, ReadsParameterSets) {
    for (std::size_t const piece : {SIZE_MAX, std::size_t{1}}) {
        ParameterSets sets;
        auto const unit = AccessUnit::read(chain(firstPicture, piece), sets);
        EXPECT_TRUE(unit.hasSequenceParameters && unit.hasPictureParameters && unit.reachesSlices);
        auto const sequence = sets.sequence(0);
        ASSERT_TRUE(sequence != nullptr && sets.picture(0) != nullptr && sequence->usability);
        EXPECT_EQ(sequence->profile, 100);
        EXPECT_EQ(sequence->level, 30);
        EXPECT_EQ(sequence->width(), 640u);
        EXPECT_EQ(sequence->codedHeight, 368u);
        EXPECT_EQ(sequence->height(), 360u);
        EXPECT_EQ(sequence->chromaFormat, 1);
        EXPECT_EQ(sequence->frameRate(), (Templates::Rational<std::int64_t>{25, 1}));
        EXPECT_EQ(sequence->usability->reorderedFrames, 2);
        EXPECT_TRUE(sequence->frameMacroblocksOnly && sets.picture(0)->arithmeticCoding);
        EXPECT_EQ(unit.recoveryFrames, 0u);
        ASSERT_TRUE(unit.slice);
        EXPECT_TRUE(unit.slice->isIDR && unit.slice->isIntra() && unit.knowsAllSlices);
    }
}

TEST(AVC, OrderCountsOfLowBits) {
    ParameterSets sets;
    PictureOrderCounter counter;
    for (auto const& [bytes, shown] : pictures) {
        auto const unit = AccessUnit::read(chain(bytes), sets);
        ASSERT_TRUE(unit.slice);
        EXPECT_EQ(counter.next(*sets.sequence(0), *sets.picture(0), *unit.slice), shown);
    }
}

// Baseline sets with a size of one macroblock, as fields if `isFields`.
void takeSets(ParameterSets& sets, Bits const& order, bool isFields) {
    Bits bits = order;
    bits.code(1).put(0, 1).code(0).code(0).put(isFields ? 0 : 1, 1);
    if (isFields)
        bits.put(0, 1);
    bits.put(1, 1).put(0, 1).put(0, 1); // no crop, no usability
    sets.take(SequenceParameterSet::read(bits.unit(NalType::SequenceParameters)));
    sets.take(PictureParameterSet::read(
        Bits().code(0).code(0).put(0, 1).put(1, 1).code(0).code(0).code(0).put(0, 3).put(7, 3).put(0, 3).unit(
            NalType::PictureParameters)));
}

Bits sequenceStart() {
    return Bits().put(66, 8).put(0, 8).put(30, 8).code(0).code(0);
} // 4 bits of frame number

TEST(AVC, OrderCountsOfLowBitsGoOnWhenTheyWrap) {
    ParameterSets sets;
    takeSets(sets, sequenceStart().code(0).code(0), false); // type 0, 4 bits
    PictureOrderCounter counter;
    struct {
        unsigned low;
        int bottom;
        bool isReference;
        std::int64_t count;
    } const rows[] = {{0, 1, true, 0},   {8, 1, true, 8},  {4, -1, false, 3},
                      {14, 1, true, 14}, {2, 1, true, 18}, {15, 1, false, 15}};
    bool isFirst = true;
    for (auto const& row : rows) {
        auto const type = isFirst ? NalType::IDRSlice : NalType::Slice;
        Bits bits = Bits().code(0).code(5).code(0).put(0, 4);
        if (isFirst)
            bits.code(0);
        auto const unit = bits.put(row.low, 4).sign(row.bottom).unit(type, row.isReference);
        EXPECT_EQ(counter.next(*sets.sequence(0), *sets.picture(0), SliceHeader::read(unit, sets)),
                  row.count);
        isFirst = false;
    }
}

TEST(AVC, OrderCountsOfFrameNumbers) {
    ParameterSets byOffsets, byFrames;
    // Type 1: non-reference -2, bottom +1, a cycle of 4 and 6.
    takeSets(byOffsets, sequenceStart().code(1).put(1, 1).sign(-2).sign(1).code(2).sign(4).sign(6), false);
    takeSets(byFrames, sequenceStart().code(2), false);
    PictureOrderCounter first, second;
    struct {
        unsigned frame;
        bool isReference;
        std::int64_t byOffsets, byFrames;
    } const rows[] = {{0, true, 0, 0},    {1, true, 4, 2},   {2, false, 2, 3},  {2, true, 10, 4},
                      {15, true, 74, 30}, {0, true, 80, 32}, {1, false, 78, 33}};
    bool isFirst = true;
    for (auto const& row : rows) {
        auto const type = isFirst ? NalType::IDRSlice : NalType::Slice;
        Bits bits = Bits().code(0).code(row.isReference ? 0 : 1).code(0).put(row.frame, 4);
        if (isFirst)
            bits.code(0);
        auto const unit = bits.unit(type, row.isReference);
        EXPECT_EQ(
            first.next(*byOffsets.sequence(0), *byOffsets.picture(0), SliceHeader::read(unit, byOffsets)),
            row.byOffsets);
        EXPECT_EQ(second.next(*byFrames.sequence(0), *byFrames.picture(0), SliceHeader::read(unit, byFrames)),
                  row.byFrames);
        isFirst = false;
    }
}

TEST(AVC, TwoFieldsAndSeveralSlices) {
    ParameterSets sets;
    takeSets(sets, sequenceStart().code(2), true);
    auto const slice = [](unsigned type, unsigned bottom, bool isReference) {
        auto const unit = Bits().code(0).code(type).code(0).put(3, 4).put(1, 1).put(bottom, 1).unit(
            NalType::Slice, isReference);
        Bytes bytes(static_cast<std::size_t>(unit.payload.size()));
        unit.payload.copyTo(bytes.data(), bytes.size());
        return prefixed(hex(isReference ? "21" : "01") + bytes);
    };
    auto const bytes = slice(2, 0, true) + slice(0, 0, true) + slice(5, 1, true);
    auto const head = AccessUnit::read(chain(bytes), sets);
    EXPECT_TRUE(head.slice && !head.knowsAllSlices && !head.hasPredicted);
    auto const whole = AccessUnit::read(chain(bytes, 5), sets, AccessUnit::Part::Whole);
    ASSERT_TRUE(whole.slice && whole.secondField);
    EXPECT_TRUE(whole.slice->isIntra() && whole.hasPredicted && !whole.hasBidirectional);
    EXPECT_TRUE(whole.secondField->isBottomField && whole.secondField->type == SliceType::P);
}

TEST(AVC, RefusesWhatTheStandardDoesNotAllow) {
    auto const set = NalType::SequenceParameters;
    for (auto const& unit :
         {Bits().put(66, 8).put(0, 16).code(32).unit(set),                       // ID
          Bits().put(100, 8).put(0, 16).code(0).code(4).unit(set),               // chroma format
          sequenceStart().code(3).unit(set),                                     // order count type
          sequenceStart().code(1).put(0, 1).sign(0).sign(0).code(256).unit(set), // offsets
          sequenceStart().code(2).code(1).put(0, 1).code(4000).unit(set),        // width
          sequenceStart().code(2).code(1).put(0, 1).code(0).code(0).put(7, 3).code(8).unit(set)}) // crop
        EXPECT_THROW(SequenceParameterSet::read(unit), Exceptions::InvalidValue);
    ParameterSets sets;
    EXPECT_THROW(SliceHeader::read(Bits().code(0).code(7).code(0).unit(NalType::Slice), sets),
                 Exceptions::InvalidID);
    EXPECT_THROW(NalReader(chain(firstPicture), 5), Exceptions::InvalidValue);
    survivesEveryFault(firstPicture, [](Bytes const& bytes) {
        ParameterSets some;
        AccessUnit::read(chain(bytes), some, AccessUnit::Part::Whole);
    });
}

} // namespace MXF::Zelm::Test
