/// Segments that know the groups of pictures of their edit units.
#include "MXF/Zelm/IndexTables/IndexTableSegmentWithGOPInfo.h"
#include "support/IndexSegments.h"

#include <limits>

namespace MXF::Zelm::Test {

using namespace IndexTables;

namespace {

constexpr auto I = std::uint8_t{0x40}, P = std::uint8_t{0x22}, B = std::uint8_t{0x33};

/// Stored I0 P3 B1 B2 P6 B4 B5 | I9 B7 B8 P12 B10 B11.
const struct {
    int temporal, key;
    std::uint8_t flags;
} pictures[] = {{0, 0, I}, {1, -1, P}, {1, -2, B},  {-2, -3, B}, {1, -4, P}, {1, -5, B}, {-2, -6, B},
                {1, 0, I}, {1, -8, B}, {-2, -9, B}, {1, -3, P},  {1, -4, B}, {-2, -5, B}};

/// A segment of the pictures from `begin` to before `end`, which says that it starts at `start`.
std::unique_ptr<IndexTableSegmentWithGOPInfo> segment(std::size_t begin, std::size_t end,
                                                      std::int64_t start) {
    Rows rows{.start = start, .duration = static_cast<std::int64_t>(end - begin)};
    for (std::size_t i = begin; i < end; ++i) {
        IndexEntry entry(i);
        entry.temporalOffset(static_cast<std::int8_t>(pictures[i].temporal));
        entry.keyFrameOffset(static_cast<std::int8_t>(pictures[i].key));
        entry.flags(pictures[i].flags);
        rows.entries.push_back(entry);
    }
    OnePacket packet(written(*makeSegment(rows)));
    return std::make_unique<IndexTableSegmentWithGOPInfo>(*packet, nullptr);
}

std::unique_ptr<IndexTableSegmentWithGOPInfo> segment(std::size_t begin, std::size_t end) {
    return segment(begin, end, static_cast<std::int64_t>(begin));
}

/// "position/length/display" of all entries.
std::string infos(IndexTableSegmentWithGOPInfo const& from) {
    std::string text;
    for (std::size_t i = 0; i < from.indexEntryCount(); ++i) {
        auto const& info = from.gopInfo(i);
        text += std::to_string(info.gopPosition) + "/" + std::to_string(info.gopLength) + "/" +
                std::to_string(info.displayPosition) + " ";
    }
    return text;
}

} // namespace

TEST(GOPInfo, IsFoundInsideASegment) {
    EXPECT_EQ(infos(*segment(0, 13)), "0/7/0 1/7/3 2/7/1 3/7/2 4/7/6 5/7/4 6/7/5 "
                                      "0/-1/2 1/-1/0 2/-1/1 3/-1/5 4/-1/3 5/-1/4 ");
    EXPECT_EQ(infos(*segment(5, 9)), "-1/-1/-1 -1/-1/-1 0/-1/-1 1/-1/0 ");
    EXPECT_EQ(thrownBy([] { segment(0, 2)->gopInfo(2); }),
              "The IndexTableSegment is smaller than the given index.");
    auto const none = makeSegment({.byteCount = 5});
    OnePacket packet(written(*none));
    EXPECT_THROW(IndexTableSegmentWithGOPInfo(*packet, nullptr).gopInfo(0), Exceptions::BaseException);
}

TEST(GOPInfo, IsCompletedByTheNeighbours) {
    auto const first = segment(0, 5), second = segment(5, 9), third = segment(9, 13);
    first->updateMissingInfo(nullptr, second.get());
    EXPECT_EQ(infos(*first), "0/7/0 1/7/3 2/7/1 3/7/2 4/7/6 ");
    second->updateMissingInfo(first.get(), third.get());
    EXPECT_EQ(infos(*second), "5/7/4 6/7/5 0/-1/2 1/-1/0 ");
    third->updateMissingInfo(second.get(), nullptr);
    EXPECT_EQ(infos(*third), "2/-1/1 3/-1/5 4/-1/3 5/-1/4 ");
}

TEST(GOPInfo, WantsNeighboursThatFollowOneAnother) {
    constexpr const char* apart = "Trying to update non-consecutive IndexTableSegmentWithGOPInfo's.";
    auto const first = segment(0, 5), second = segment(5, 9), third = segment(9, 13);
    EXPECT_EQ(thrownBy([&] { third->updateMissingInfo(first.get(), nullptr); }), apart);
    EXPECT_EQ(thrownBy([&] { first->updateMissingInfo(nullptr, third.get()); }), apart);
    auto const far = segment(0, 5, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(thrownBy([&] { first->updateMissingInfo(far.get(), far.get()); }), apart);
    EXPECT_EQ(thrownBy([&] { segment(6, 9)->updateMissingInfo(segment(3, 6).get(), nullptr); }),
              "Not supported: IndexTableSegment duration is smaller than GOP length.");
    segment(7, 9)->updateMissingInfo(segment(5, 7).get(), nullptr); // a group begins here
    auto const unfit = segment(0, 5, 5000);
    unfit->indexDuration(Types::Length(6));
    second->updateMissingInfo(unfit.get(), unfit.get()); // passed over
}

} // namespace MXF::Zelm::Test
