/// Index table segments and their entries: bytes both ways, limits and messages.
#include "MXF/Zelm/IndexTables/IndexTableLocalTag.h"
#include "MXF/Zelm/IndexTables/IndexTableSegment.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace IndexTables;

namespace {

const KLV::Key segmentKey = IndexTableSegment::key();

/// The mandatory properties, of a constant rate of 1000 bytes, 25 Hz, edit units 3 to 12.
const Bytes head = hex(R"(
    3C 0A 00 10  00112233 44556677 8899AABB CCDDEEFF   # InstanceUID
    3F 0B 00 08  00 00 00 19  00 00 00 01              # IndexEditRate
    3F 0C 00 08  00 00 00 00 00 00 00 03               # IndexStartPosition
    3F 0D 00 08  00 00 00 00 00 00 00 0A               # IndexDuration
)");
const Bytes byteCount = hex("3F 05 00 04  00 00 03 E8");
const Bytes sids = hex("3F 06 00 04  00 00 00 02   3F 07 00 04  00 00 00 01");
const Bytes counts = hex("3F 08 00 01 02   3F 0E 00 01 01"); // NSL 2, NPE 1
const Bytes deltas = hex(R"(
    3F 09 00 14  00 00 00 02  00 00 00 06
        FF 00 00 00 00 00
        00 02 00 00 02 00
)");
const Bytes entries = hex(R"(
    3F 0A 00 3E  00 00 00 02  00 00 00 1B
        00 00 C0  00 00 00 00 00 00 00 00  00 00 02 00  00 00 10 00  00 00 00 01  00 00 00 02
        02 FE 22  00 00 00 01 00 00 20 00  00 00 02 00  00 00 10 00  FF FF FF FF  00 00 00 02
)");

IndexTableSegment const read(Bytes const& items, KLV::Key const& key = segmentKey,
                             unsigned char berLength = 4) {
    OnePacket packet(klv(key, items, berLength));
    return {*packet, nullptr};
}

std::string readFault(Bytes const& items, KLV::Key const& key = segmentKey) {
    return thrownBy([&] { read(items, key); });
}

IndexEntry entryOf(std::uint64_t offset, std::size_t slices, std::size_t posTables) {
    IndexEntry entry(offset);
    for (std::size_t i = 0; i < slices; ++i)
        entry.addSliceOffset(i, static_cast<std::uint32_t>(i));
    for (std::size_t i = 0; i < posTables; ++i)
        entry.addPosTable(i, {1, 2});
    return entry;
}

struct Told : IndexTableSegmentListener {
    void segmentChanged(IndexTableSegment const& segment) override {
        sizes.push_back(segment.serializedSize());
    }
    std::vector<std::uint64_t> sizes;
};

} // namespace

TEST(IndexTableSegment, IsWrittenAsItWasRead) {
    for (auto const& items : {head + sids, head + byteCount + sids, head + sids + counts + deltas + entries,
                              head + byteCount + sids + deltas})
        for (unsigned char const ber : hex("02 04 09")) {
            if (ber == 2 && items.size() > 255)
                continue;
            auto const segment = read(items, segmentKey, ber);
            EXPECT_EQ(segment.berLength(), ber);
            EXPECT_TRUE(sameBytes(written(segment), klv(segmentKey, items, ber)));
            EXPECT_EQ(segment.serializedSize(), 16u + ber + items.size());
            auto const copy = segment;
            EXPECT_TRUE(sameBytes(written(copy), written(segment)));
        }
}

TEST(IndexTableSegment, ServesItsProperties) {
    auto const constant = read(head + byteCount + sids);
    EXPECT_EQ(constant.instanceUID()[15], 0xFF);
    EXPECT_EQ(constant.indexEditRate(), Types::Rational(25, 1));
    EXPECT_EQ(constant.indexStartPosition().value(), 3);
    EXPECT_EQ(constant.indexDuration().value(), 10);
    EXPECT_EQ(constant.editUnitByteCount()->value(), 1000u);
    EXPECT_EQ(constant.indexSID()->value(), 2u);
    EXPECT_EQ(constant.bodySID().value(), 1u);
    EXPECT_EQ(constant.sliceCount(), nullptr);
    EXPECT_EQ(constant.posTableCount(), nullptr);
    EXPECT_EQ(constant.deltaEntryArray(), nullptr);
    EXPECT_EQ(constant.indexEntryArray(), nullptr);

    auto const variable = read(head + sids + counts + deltas + entries);
    EXPECT_EQ(variable.editUnitByteCount(), nullptr);
    EXPECT_EQ(variable.deltaEntryCount(), 2u);
    EXPECT_EQ(variable.deltaEntry(1), DeltaEntry(0, 2, 512));
    EXPECT_EQ(variable.deltaEntry(0).posTableIndex(), -1);
    ASSERT_EQ(variable.indexEntryCount(), 2u);
    auto const entry = variable.indexEntry(1);
    EXPECT_EQ(entry.temporalOffset(), 2);
    EXPECT_EQ(entry.keyFrameOffset(), -2);
    EXPECT_FALSE(entry.randomAccess() || entry.sequenceHeader() || entry.backwardPrediction());
    EXPECT_TRUE(entry.forwardPrediction());
    EXPECT_EQ(entry.streamOffset(), 0x100002000u);
    EXPECT_EQ(entry.sliceOffset(1), 0x1000u);
    EXPECT_EQ(entry.posTable(0).numerator, -1);
    EXPECT_EQ(entry.serializedSize(), 27u);
    auto const& array = *variable.indexEntryArray();
    EXPECT_EQ(array.elementSize(), 27u);
    EXPECT_EQ(array.streamOffset(1), entry.streamOffset());
    EXPECT_EQ(array.sliceOffset(1, 2), 0x1000u);
    EXPECT_EQ(IndexEntry(0, 0, true, true, false, true, 5).flags(), 0xD0);
}

TEST(IndexTableSegment, ReadsWhatFilesHave) {
    Bytes const unknown = hex("3F 11 00 01 AA   3F 11 00 00");
    auto const kept = read(head + unknown + sids);
    ASSERT_EQ(kept.unknownElements().size(), 2u);
    EXPECT_EQ(kept.unknownElements()[0].localTag().value(), 0x3F11);
    EXPECT_EQ(kept.unknownElements()[0].bytes(), hex("AA"));
    EXPECT_TRUE(sameBytes(written(kept), klv(segmentKey, head + sids)));

    // Counts behind the entries; an empty array that gives its entries no size; the other key; nothing.
    EXPECT_EQ(read(head + sids + entries + deltas + counts).indexEntry(1).sliceOffset(0), 512u);
    Bytes const empty = hex("3F 09 00 08  00 00 00 00  00 00 00 00");
    EXPECT_EQ(read(head + sids + empty).deltaEntryArray()->elementSize(), 6u);
    KLV::Key other = segmentKey;
    other[14] = 0;
    EXPECT_TRUE(IndexTableSegment::isSegmentKey(other));
    EXPECT_TRUE(sameBytes(written(read(head, other)), written(read(head))));
    EXPECT_TRUE(read({}).instanceUID().isNull());
}

TEST(IndexTableSegment, RefusesWhatIsNoSegment) {
    constexpr const char* tooShort = "Invalid data size in Value in the IndexTable Segment";
    constexpr const char* tooLong = "Invalid data size in Local Value. Value still contains data to be read.";
    constexpr const char* wrongEntry =
        "Invalid data size in Value to create an element in the Index Table collections.";
    constexpr const char* tooMany = "Number of expected values differ from the size of the local KLV value "
                                    "field. Index Table Segment";
    struct {
        Bytes items;
        const char* message;
    } const rows[] = {
        {hex("3F 05 00 03  00 00 01"), tooShort},
        {hex("3F 05 00 05  00 00 01 02 03"), tooLong},
        {hex("3F 05 00 04  00 00 01"), tooShort}, // beyond the set
        {hex("3F 11 00 04  00"), tooShort},
        {hex("3F 05 00"), tooShort},
        {hex("3F"), tooShort},
        {hex("3F 09 00 07  00 00 00 00  00 00 00"), "Invalid data size in the Index Table collection. Not "
                                                    "enough data to read element entry size"},
        {hex("3F 09 00 0D  00 00 00 01  00 00 00 06  00 00 00 00 00"), tooMany},
        {hex("3F 0A 00 08  FF FF FF FF  FF FF FF FF"), tooMany},
        {hex("3F 09 00 0F  00 00 00 01  00 00 00 06  00 00 00 00 00 00 00"), tooLong},
        {hex("3F 09 00 0F  00 00 00 01  00 00 00 07  00 00 00 00 00 00 00"), wrongEntry},
        {hex("3F 0A 00 08  FF FF FF FF  00 00 00 00"), wrongEntry},
        {entries, wrongEntry}, // no counts
        {counts + entries + hex("3F 08 00 01 FF"), wrongEntry},
    };
    for (auto const& row : rows)
        EXPECT_EQ(readFault(row.items), row.message);

    EXPECT_EQ(readFault(head, prefaceKey), "Trying to load a Index Segment with an invalid key");
    KLV::Key otherCoding = segmentKey;
    otherCoding[5] = 0x13;
    EXPECT_FALSE(IndexTableSegment::isSegmentKey(otherCoding));
    EXPECT_EQ(readFault(head, otherCoding),
              "Invalid MXF Index Segment set (local tag should be 2 bytes and length field 2 bytes.)");
    try {
        read(head + hex("3F 05 00 05  00 00 01 02 03"));
        ADD_FAILURE();
    } catch (Exceptions::InvalidLength const& failure) {
        EXPECT_EQ(failure.bytes(), hex("03"));
        EXPECT_EQ(failure.offset(), 20u + head.size());
    }
    survivesEveryFault(klv(segmentKey, head + byteCount + sids + counts + deltas + entries),
                       [](Bytes const& bytes) {
                           OnePacket packet(bytes);
                           IndexTableSegment const segment(*packet, nullptr);
                           EXPECT_EQ(written(segment).size(), segment.serializedSize());
                       });
}

TEST(IndexTableSegment, IsBuiltEntryByEntry) {
    Told told;
    IndexTableSegment segment(4);
    segment.listener(&told);
    segment.instanceUID(Types::UUID(hex("00112233445566778899AABBCCDDEEFF").data()));
    segment.indexEditRate(Types::Rational(25, 1));
    segment.indexStartPosition(Types::Position(3));
    segment.indexDuration(Types::Length(10));
    segment.indexSID(Types::UInt32(2));
    segment.bodySID(Types::UInt32(1));
    segment.sliceCount(Types::UInt8(2));
    segment.posTableCount(Types::UInt8(1));
    EXPECT_EQ(thrownBy([&] { segment.addIndexEntry(0, entryOf(0, 1, 3)); }),
              "Error: NSL in segment has value: 2 while IndexEntry has NSL: 1"
              "Error: NPE in segment has value: 1 while IndexEntry has NPE: 3");
    EXPECT_EQ(thrownBy([&] { segment.addIndexEntry(1, entryOf(0, 2, 1)); }),
              "Trying to insert an element beyond the end of the data");
    EXPECT_EQ(thrownBy([&] { segment.removeIndexEntry(0); }),
              "Trying to remove element from empty indexEntryArray.");
    EXPECT_EQ(segment.indexEntryArray(), nullptr);
    EXPECT_EQ(thrownBy([&] { segment.removeDeltaEntry(0); }),
              "Trying to remove element from empty deltaEntryArray.");
    auto const like = read(head + sids + counts + deltas + entries);
    segment.addIndexEntry(0, like.indexEntry(1));
    segment.addIndexEntry(0, like.indexEntry(0));
    segment.addIndexEntry(1, entryOf(7, 2, 1));
    segment.removeIndexEntry(1);
    segment.addDeltaEntry(0, like.deltaEntry(1));
    segment.addDeltaEntry(0, like.deltaEntry(0));
    EXPECT_TRUE(sameBytes(written(segment), written(like)));
    ASSERT_EQ(told.sizes.size(), 14u);
    EXPECT_EQ(told.sizes.back(), segment.serializedSize());

    EXPECT_EQ(thrownBy([&] { segment.sliceCount(Types::UInt8(2)); }),
              "IndexEntryArray still contains value. Please empty IndexEntryArray before setting sliceCount");
    EXPECT_EQ(
        thrownBy([&] { segment.posTableCount(Types::UInt8(2)); }),
        "IndexEntryArray still contains value. Please empty IndexEntryArray before setting posTableCount");
    EXPECT_EQ(thrownBy([&] { segment.addIndexEntry(0, IndexEntry(0)); }),
              "TRying to insert an invalid element");
    EXPECT_EQ(thrownBy([&] { segment.indexEntryArray(IndexEntryArray(2, 0)); }).substr(0, 10), "Error: NSL");
    EXPECT_EQ(thrownBy([&] { segment.indexEntry(2); }), "IndexTableSegment::indexEntry IndexOutOfBounds");
    EXPECT_EQ(thrownBy([&] { segment.deltaEntry(2); }), "IndexTableSegment::deltaEntry IndexOutOfBounds");
    segment.removeIndexEntry(1);
    segment.removeIndexEntry(0);
    segment.sliceCount(Types::UInt8(0));
    segment.posTableCount(Types::UInt8(0));
    segment.addIndexEntry(0, IndexEntry(9));
    EXPECT_EQ(segment.indexEntry(0).streamOffset(), 9u);
    segment.resetIndexEntryArray();
    segment.resetDeltaEntryArray();
    segment.resetIndexSID();
    segment.editUnitByteCount(Types::UInt32(1));
    segment.resetEditUnitByteCount();
    EXPECT_EQ(segment.indexEntryCount() + segment.deltaEntryCount(), 0u);
}

TEST(IndexTableSegment, WritesNothingThatCannotBeReadAgain) {
    IndexTableSegment segment(9);
    IndexEntryArray array(0, 0);
    for (std::uint64_t i = 0; i < 5957; ++i)
        array.append(IndexEntry(i * 1000));
    segment.indexEntryArray(array);
    OnePacket packet(written(segment));
    EXPECT_EQ(IndexTableSegment(*packet, nullptr).indexEntry(5956).streamOffset(), 5956000u);
    segment.addIndexEntry(0, IndexEntry(0));
    EXPECT_THROW(written(segment), Exceptions::InvalidElementLength);
    IndexTableSegment shortField(2);
    array.remove(0);
    shortField.indexEntryArray(array);
    EXPECT_THROW(written(shortField), Exceptions::InvalidElementLength);
}

TEST(IndexTableSegment, ReadsArraysThatAreLongerThanAnItemCanSay) {
    Bytes entryBytes;
    for (std::uint64_t i = 0; i < 6000; ++i)
        entryBytes = std::move(entryBytes) + hex("00 00 80") + number(i);
    auto const items = [&](std::uint32_t count, std::uint16_t length) {
        return head + hex("3F 0A") + number(length) + number(count) + number(std::uint32_t{11}) + entryBytes;
    };
    constexpr std::uint16_t wrapped = (8 + 6000 * 11) & 0xFFFF;
    for (auto const& rest : {Bytes(), byteCount + sids}) {
        auto const segment = read(items(6000, wrapped) + rest);
        ASSERT_EQ(segment.indexEntryCount(), 6000u);
        EXPECT_EQ(segment.indexEntry(5999).streamOffset(), 5999u);
        EXPECT_EQ(segment.editUnitByteCount() != nullptr, !rest.empty());
    }
    // What the set does not prove is as wrong as before.
    for (auto const& bytes : {items(6000, wrapped + 1), items(6001, static_cast<std::uint16_t>(wrapped + 11)),
                              items(6000, 7), items(0xFFFFFFFF, 0xFFFD)})
        EXPECT_NE(readFault(bytes), "");
}

TEST(EntryArrays, HoldTheirLimits) {
    DeltaEntryArray delta;
    delta.append(DeltaEntry(-1, 0, 5));
    delta.insertAt(0, DeltaEntry(0, 1, 6));
    delta.set(1, DeltaEntry(2, 3, 4));
    EXPECT_EQ(delta.at(1), DeltaEntry(2, 3, 4));
    EXPECT_EQ(delta.serializedSize(), 20u);
    EXPECT_EQ(thrownBy([&] { delta.at(2); }), "Trying to access a element beyond the end of data");
    EXPECT_EQ(thrownBy([&] { delta.append(DeltaEntry(-2, 0, 0)); }), "Trying to append an invalid entry.");
    EXPECT_EQ(thrownBy([&] { delta.insertAt(0, DeltaEntry(-2, 0, 0)); }),
              "TRying to insert an invalid element");
    EXPECT_EQ(thrownBy([&] { delta.insertAt(3, DeltaEntry()); }),
              "Trying to insert an element beyond the end of the data");
    EXPECT_EQ(thrownBy([&] { delta.remove(2); }), "Trying to remove an element beyond the end of the data");

    IndexEntryArray index(1, 0);
    index.append(entryOf(5, 1, 0));
    index.set(0, entryOf(6, 1, 0));
    EXPECT_EQ(index.at(0).streamOffset(), 6u);
    EXPECT_EQ(thrownBy([&] { index.at(1); }), "Trying to access an element beyond the end of the data");
    EXPECT_EQ(thrownBy([&] { std::as_const(index).at(1); }), "IndexEntryArray::at() IndexOutOfBonds");
    EXPECT_EQ(thrownBy([&] { index.streamOffset(1); }), "IndexEntryArray::at() IndexOutOfBonds");
    EXPECT_EQ(thrownBy([&] { index.sliceOffset(0, 2); }), "IndexEntryArray::at() IndexOutOfBonds");
    EXPECT_EQ(thrownBy([&] { index.append(IndexEntry(5)); }), "Trying to append an invalid element");
    EXPECT_EQ(thrownBy([&] { index.set(0, IndexEntry(5)); }), "TRying to insert an invalid element");

    IndexEntry entry = entryOf(0, 2, 1);
    entry.removeSliceOffset(0);
    EXPECT_EQ(entry.sliceOffset(0), 1u);
    for (auto const& action : std::vector<std::function<void()>>{
             [&] { entry.sliceOffset(1); }, [&] { entry.addSliceOffset(2, 0); },
             [&] { entry.removeSliceOffset(1); }, [&] { entry.posTable(1); },
             [&] { entry.removePosTable(1); }})
        EXPECT_EQ(thrownBy(action), "Trying to access a element beyond the end of data.");
}

} // namespace MXF::Zelm::Test
