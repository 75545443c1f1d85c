/// Index tables made while essence is wrapped.
#include "MXF/Zelm/GenericContainer/Multiplexer/FrameIndexTableBuilder.h"
#include "support/TestMux.h"

namespace MXF::Zelm::Test {

using namespace GenericContainer;
using GenericContainer::Multiplexer::IndexTableBuilder;

namespace {

using Segments = Templates::vector<Source::SegmentPtr>;

/// "temporal offset/key frame offset/flags" of each entry.
std::string rowsOf(Segments const& segments) {
    std::string text;
    for (auto const& segment : segments)
        for (std::size_t i = 0; i < segment->indexEntryCount(); ++i) {
            auto const entry = segment->indexEntry(i);
            text += (text.empty() ? "" : " ") + std::to_string(entry.temporalOffset()) + "/" +
                    std::to_string(entry.keyFrameOffset()) + "/" + ByteCoders::toHexadecimal(entry.flags());
        }
    return text;
}

/// I0 P3 B1 B2 P6 B4 B5 I9 B7 B8 P12 B10 B11, as an analyzer tells of it: the second group is open.
std::vector<EditUnitIndex> const openGroups = {{0, 0, 0xC0},   {2, -1, 0x22},  {-1, -2, 0x33}, {-1, -3, 0x33},
                                               {2, -4, 0x22},  {-1, -5, 0x33}, {-1, -6, 0x33}, {2, 0, 0x40},
                                               {-1, -8, 0x33}, {-1, -9, 0x33}, {2, -3, 0x22},  {-1, -4, 0x33},
                                               {-1, -5, 0x33}};

} // namespace

TEST(IndexTableBuilder, TurnsStorageIntoDisplayOrder) {
    IndexTableBuilder builder({25, 1});
    builder.reordered(true);
    std::string rows;
    std::uint64_t offset = 0;
    for (auto const& index : openGroups) {
        builder.appendIndexEntry(offset += 100, index);
        rows += "|" + rowsOf(builder.takeSegments());
    }
    builder.finalize(std::ssize(openGroups));
    EXPECT_EQ(rows, "|0/0/C0||1/-1/22|1/-2/33 -2/-3/33||1/-4/22|1/-5/33 -2/-6/33||1/0/40|1/-8/33 -2/-9/33"
                    "||1/-3/22|1/-4/33 -2/-5/33");
    EXPECT_TRUE(builder.takeSegments().empty());
}

TEST(IndexTableBuilder, FlagsOffsetsThatDoNotFit) {
    IndexTableBuilder builder({25, 1});
    builder.reordered(true);
    builder.appendIndexEntry(0, {1, -1, 0}); // leads out of the table; the place 0 is shown 200 later
    for (int i = 1; i < 128; ++i)
        builder.appendIndexEntry(0, {i == 1 ? -1 : 200, -129, 0});
    EXPECT_EQ(rowsOf(builder.takeSegments()), "1/0/8 -1/0/8") << "an Int8 still reaches entry 2";
    builder.appendIndexEntry(0, {-126, -128, 0});
    EXPECT_EQ(rowsOf(builder.takeSegments()), "126/0/8");
    builder.appendIndexEntry(0, {2, 0, 0});
    builder.appendIndexEntry(0, {2, 0, 0});
    EXPECT_EQ(rowsOf(builder.takeSegments()), "0/0/8") << "nothing reaches entry 3 any more";
    builder.finalize(131);
    auto const segments = builder.takeSegments();
    EXPECT_EQ(segments.at(0)->indexEntryCount(), 127u);
    EXPECT_EQ(segments.at(0)->indexEntry(124).flags(), 0x08) << "what came never";
    EXPECT_EQ(segments.at(0)->indexEntry(126).flags(), 0x08);
}

TEST(IndexTableBuilder, SplitsSegmentsAtKeyFrames) {
    IndexTableBuilder builder({25, 1});
    for (int i = 0; i < 20'000; ++i)
        builder.appendIndexEntry(static_cast<std::uint64_t>(i) * 50, {0, -(i % 12), 0});
    builder.finalize(20'000);
    std::int64_t start = 0;
    for (auto const& segment : builder.takeSegments()) {
        EXPECT_EQ(segment->indexStartPosition().value(), start);
        EXPECT_EQ(start % 12, 0);
        EXPECT_EQ(segment->indexEntry(0).streamOffset(), static_cast<std::uint64_t>(start) * 50);
        EXPECT_EQ(segment->indexDuration().value(), static_cast<std::int64_t>(segment->indexEntryCount()));
        EXPECT_LE(segment->indexEntryArray()->serializedSize(), 0xFFFFu);
        start += segment->indexDuration().value();
    }
    EXPECT_EQ(start, 20'000);
}

TEST(FrameIndexTableBuilder, FindsEveryElement) {
    for (bool const withFill : {false, true}) {
        TestMux test;
        test.mux.kagSize(64);
        test.mux.indexFillPackets(withFill);
        test.system()
            .add<FakePicture>(
                {.sizes = {500, 44, 3000}, .isReordered = true, .index = {{1, 0, 0}, {-1, -1, 0}}})
            .add<FakeSound>(sound({80}, 80))
            .add<FakeSound>(sound({7, 9, 300}))
            .add<FakeData>({.sizes = {30}, .boundedSize = 30, .itemType = 0x17, .elementType = 2});
        auto const source = test.mux.commit();
        Bytes body;
        for (auto const& package : packagesOf(*source))
            body = body + package;
        source->finalize();
        auto const segments = source->takeIndexSegments();
        ASSERT_EQ(segments.size(), 1u);
        auto const& segment = *segments[0];
        ASSERT_EQ(segment.indexEntryCount(), 3u);
        EXPECT_EQ(segment.sliceCount()->value(), withFill ? 9 : 2);
        ASSERT_EQ(segment.deltaEntryCount(), withFill ? 10u : 5u);
        std::vector<std::uint32_t> found;
        for (std::size_t unit = 0; unit < 3; ++unit)
            for (std::size_t i = 0; i < segment.deltaEntryCount(); i += withFill ? 2 : 1) {
                auto const entry = segment.indexEntry(unit);
                auto const delta = segment.deltaEntry(i);
                auto const at = entry.streamOffset() + delta.elementDelta() +
                                (delta.slice() == 0 ? 0 : entry.sliceOffset(delta.slice() - 1u));
                KLV::Key const key(body.data() + at);
                found.push_back(ElementKey(key).trackNumber());
                EXPECT_EQ(delta.posTableIndex(), key[12] == 0x15 ? -1 : 0);
                if (!withFill || i + 1 == segment.deltaEntryCount())
                    continue;
                auto const behind = segment.deltaEntry(i + 1);
                auto const fillAt = entry.streamOffset() + entry.sliceOffset(behind.slice() - 1u);
                bool const isFilled =
                    (found.back() != 0x15010500 || unit != 1) && // 20 + 44
                    (found.back() != 0x16020301 || unit != 2);   // and 20 + 300 are on the grid
                ASSERT_LT(fillAt, body.size());
                EXPECT_EQ(KLV::isFillItem(KLV::Key(body.data() + fillAt)), isFilled) << unit << " " << i;
            }
        std::vector<std::uint32_t> expected;
        for (int unit = 0; unit < 3; ++unit)
            for (std::uint32_t const number :
                 {0x04010100u, 0x15010500u, 0x16020300u, 0x16020301u, 0x17010200u})
                expected.push_back(number);
        EXPECT_EQ(found, expected);
    }
}

TEST(FrameIndexTableBuilder, GivesOneSegmentForPackagesOfOneSize) {
    TestMux test;
    test.mux.kagSize(512);
    test.system().add<FakePicture>({.sizes = {600}, .boundedSize = 600}).add<FakeSound>(sound({9}, 9));
    auto const source = test.mux.commit();
    auto const facts = [](Segments const& segments) {
        std::string text;
        for (auto const& segment : segments) {
            text += std::to_string(segment->editUnitByteCount()->value()) + "x" +
                    std::to_string(segment->indexDuration().value()) + ":";
            for (std::size_t i = 0; i < segment->deltaEntryCount(); ++i)
                text += " " + std::to_string(segment->deltaEntry(i).elementDelta());
        }
        return text;
    };
    EXPECT_EQ(facts(source->takeIndexSegments()), "2048x0: 0 512 1536");
    for (auto const& package : packagesOf(*source))
        EXPECT_EQ(package.size(), 2048u);
    EXPECT_EQ(facts(source->takeIndexSegments()), "");
    source->finalize();
    EXPECT_EQ(facts(source->takeIndexSegments()), "2048x3: 0 512 1536");
    EXPECT_EQ(facts(source->takeIndexSegments()), "");
}

} // namespace MXF::Zelm::Test
