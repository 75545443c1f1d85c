#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/AVC/AccessUnitCutter.h"
#include "support/AVCStream.h"

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

Bytes prefixed(Bytes const& unit) { return number(static_cast<std::uint32_t>(unit.size())) + unit; }

} // namespace

TEST(AVC, ReadsParameterSets) {
    for (std::size_t const piece : {SIZE_MAX, std::size_t{1}}) {
        ParameterSets sets;
        auto const unit = AccessUnit::read(chain(avcFirstPicture(), piece), sets);
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
    for (auto const& [bytes, shown] : avcPictures()) {
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

TEST(AVC, MemoryOperation5BeginsTheCountAnew) {
    ParameterSets sets;
    takeSets(sets, sequenceStart().code(0).code(0), false);
    PictureOrderCounter counter;
    struct {
        unsigned low;
        int bottom;
        unsigned operation; // 0 for none
        std::int64_t count;
    } const rows[] = {{0, 1, 0, 0}, {6, 1, 0, 6}, {8, -3, 5, 0}, {5, 1, 0, 5}, {7, 1, 0, 7}};
    for (auto const& row : rows) {
        bool const isFirst = &row == rows;
        Bits bits = Bits().code(0).code(isFirst ? 7 : 5).code(0).put(0, 4);
        if (isFirst)
            bits.code(0);
        bits.put(row.low, 4).sign(row.bottom).put(0, 1).put(0, 1).put(row.operation != 0, 1);
        if (row.operation != 0)
            bits.code(3).code(0).code(1).code(row.operation).code(0); // behind one with two numbers
        auto const slice = SliceHeader::read(bits.unit(isFirst ? NalType::IDRSlice : NalType::Slice), sets);
        EXPECT_EQ(slice.resetsMemory, row.operation == 5) << row.low;
        EXPECT_EQ(counter.next(*sets.sequence(0), *sets.picture(0), slice), row.count) << row.low;
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

TEST(AVC, CutsFramesAndPairsOfFields) {
    auto const coded = [](unsigned char header, Bits const& bits) {
        auto const unit = bits.unit(NalType::Slice);
        Bytes bytes(static_cast<std::size_t>(unit.payload.size()));
        unit.payload.copyTo(bytes.data(), bytes.size());
        return hex("00 00 01") + Bytes{header} + bytes;
    };
    auto const field = [&](unsigned frame, unsigned bottom, unsigned macroblock = 0) {
        return coded(0x21, Bits().code(macroblock).code(7).code(0).put(frame, 4).put(1, 1).put(bottom, 1));
    };
    Bits const sequence =
        sequenceStart().code(2).code(1).put(0, 1).code(0).code(0).put(0, 2).put(1, 1).put(0, 2);
    auto const sets =
        coded(0x67, sequence) +
        coded(0x68, Bits().code(0).code(0).put(0, 2).code(0).code(0).code(0).put(0, 3).put(7, 3).put(0, 3));
    auto const delimiter = hex("00 00 00 01 09 10"), message = hex("00 00 01 06 05 01 00 80");
    std::vector<Bytes> const units = {
        hex("00") + sets + field(3, 0) + field(3, 0, 1) + message + field(3, 1) + hex("00 00"),
        delimiter + field(4, 1) + delimiter + field(4, 0), field(5, 0), // without its second field
        message + field(6, 0) + field(6, 1) + hex("00 00 01 0B")};
    Bytes stream = hex("47 47 00 00 01 41 9A");
    for (auto const& unit : units)
        stream = stream + unit;
    for (std::size_t const piece : {SIZE_MAX, std::size_t{3}}) {
        AccessUnitCutter cutter(std::make_shared<DataIO::BufferSliceSource>(chain(stream, piece)));
        AccessUnitCutter::Unit unit;
        bool isThere = cutter.findStart(100, unit);
        for (auto const& expected : units) {
            ASSERT_TRUE(isThere);
            EXPECT_TRUE(unit.data.equals(expected.data(), expected.size())) << &expected - units.data();
            EXPECT_EQ(unit.headers.secondField.has_value(), &expected != &units[2]);
            isThere = cutter.next(unit);
        }
        EXPECT_FALSE(isThere);
    }
}

TEST(AVC, PictureTimingTellsFieldsAndClock) {
    VideoUsability usability;
    usability.hasDelays = usability.tellsPictureStructure = true;
    Bits bits; // delays, bottom before top, a clock for the second field: dropping, full, 10:59:58;12
    bits.put(0, 24).put(0, 24).put(4, 4).put(0, 1).put(1, 1).put(0, 3).put(4, 5).put(1, 1).put(0, 2);
    bits.put(12, 8).put(58, 6).put(59, 6).put(10, 5);
    auto const timing = PictureTiming::read(bits.unit(NalType::SEI).payload, usability);
    ASSERT_TRUE(timing.clock && timing.clock->isFull && timing.clock->dropFrame);
    EXPECT_EQ(timing.structure, 4);
    EXPECT_EQ(timing.clock->hours * 10000 + timing.clock->minutes * 100 + timing.clock->seconds, 105958);
    EXPECT_EQ(timing.clock->frames, 12);
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
    EXPECT_THROW(NalReader(chain(avcFirstPicture()), 5), Exceptions::InvalidValue);
    survivesEveryFault(avcFirstPicture(), [](Bytes const& bytes) {
        ParameterSets some;
        AccessUnit::read(chain(bytes), some, AccessUnit::Part::Whole);
    });
}

} // namespace MXF::Zelm::Test
