#include "MXF/Zelm/Essence/PictureOrder.h"
#include "MXF/Zelm/Essence/AVC/CodedPictures.h"
#include "MXF/Zelm/Essence/MPEG/VideoPictures.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace MXF::Zelm::Essence {

void PrintTo(PictureEntry const& entry, std::ostream* out) {
    *out << int{entry.temporalOffset} << "/" << int{entry.keyFrameOffset} << "/" << std::hex
         << int{entry.flags};
}

} // namespace MXF::Zelm::Essence

namespace MXF::Zelm::Test {

using namespace Essence;

namespace {

/// The entries of MPEG pictures: "I2" an I picture with temporal reference 2, "(" before it an open group's
/// header, "[" a closed one's, "-" a sequence header.
std::vector<PictureEntry> entriesOf(std::string_view text,
                                    std::optional<std::size_t> mostReordered = std::nullopt) {
    MPEG::VideoPictures pictures;
    PictureOrder order;
    order.mostReordered(mostReordered);
    std::vector<PictureEntry> entries;
    MPEG::VideoUnit unit;
    auto const take = [&] {
        while (auto const entry = order.next())
            entries.push_back(*entry);
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '-')
            unit.sequence.emplace();
        else if (text[at] == '(' || text[at] == '[')
            unit.group.emplace().closed = text[at] == '[';
        if (text[at] < 'A' || text[at] > 'Z')
            continue;
        std::size_t digits = 0;
        unit.picture.emplace().type = text[at] == 'I'   ? MPEG::PictureType::I
                                      : text[at] == 'P' ? MPEG::PictureType::P
                                                        : MPEG::PictureType::B;
        unit.picture->temporalReference =
            static_cast<std::uint16_t>(std::stoi(std::string(text.substr(at + 1)), &digits));
        at += digits;
        order.add(*pictures.next(unit));
        take();
        unit = {};
    }
    order.finish();
    take();
    return entries;
}

} // namespace

TEST(PictureOrder, ClosedThenOpenGroup) {
    std::vector<PictureEntry> const expected = {
        {0, 0, 0xC0},  {1, -1, 0x22},  {1, -2, 0x33},  {-2, -3, 0x33}, {1, -4, 0x22},
        {1, -5, 0x33}, {-2, -6, 0x33}, {1, 0, 0x40},   {1, -8, 0x33},  {-2, -9, 0x33},
        {1, -3, 0x22}, {1, -4, 0x33},  {-2, -5, 0x33},
    };
    EXPECT_EQ(entriesOf("-[I0 P3 B1 B2 P6 B4 B5 -(I2 B0 B1 P5 B3 B4"), expected);
    EXPECT_EQ(entriesOf("-[I0 P3 B1 B2 P6 B4 B5 -(I2 B0 B1 P5 B3 B4", 1), expected);
    // The same without a header for the second group: the count goes on.
    EXPECT_EQ(entriesOf("-[I0 P3 B1 B2 P6 B4 B5 -I9 B7 B8 P12 B10 B11"), expected);
}

TEST(PictureOrder, LeadingPicturesOfAClosedGroupUseTheFollowingAnchor) {
    std::vector<PictureEntry> const expected = {
        {1, 0, 0xC0}, {-1, -1, 0x13}, {1, 0, 0xC0}, {-1, -1, 0x13}, {0, -2, 0x22}};
    EXPECT_EQ(entriesOf("-[I1 B0 -[I1 B0 P2"), expected);
}

TEST(PictureOrder, IntraPicturesAreAccessPointsWithTheirHeaders) {
    EXPECT_EQ(entriesOf("-(I0 -(I0 (I0"),
              (std::vector<PictureEntry>{{0, 0, 0xC0}, {0, 0, 0xC0}, {0, 0, 0x00}}));
    // The first group has no other to begin in.
    EXPECT_EQ(entriesOf("-(I1 B0"), (std::vector<PictureEntry>{{1, 0, 0x40}, {-1, -1, 0x33}}));
}

TEST(PictureOrder, ReferencesThatWrapAndThatAreLeftOut) {
    std::string text = "-[I0";
    for (int i = 1; i < 1100; ++i) // I B P order, without groups, past 1024
        text += (i % 10 == 0 ? " I" : " P") + std::to_string((i * 2) % 1024) + " B" +
                std::to_string((i * 2 - 1) % 1024);
    auto const entries = entriesOf(text);
    ASSERT_EQ(entries.size(), 2199u);
    for (std::size_t i = 1; i < entries.size(); ++i)
        EXPECT_EQ(entries[i].temporalOffset, i % 2 != 0 ? 1 : -1) << i;
    EXPECT_EQ(entriesOf("-[I0 P9 B5"),
              (std::vector<PictureEntry>{{0, 0, 0xC0}, {1, -1, 0x22}, {-1, -2, 0x33}}));
}

TEST(PictureOrder, LongGroupsAreCutAndFarOffsetsSaid) {
    PictureOrder order;
    order.add({.beginsCount = true});
    Picture picture{Picture::Type::P, false, Picture::Access::None, false};
    std::vector<PictureEntry> entries;
    for (int i = 1; i < 5000; ++i) { // anchors before one B picture each
        picture.order = i % 2 != 0 ? i + 1 : i - 1;
        order.add(picture);
        while (auto const entry = order.next())
            entries.push_back(*entry);
    }
    EXPECT_GE(entries.size(), 4300u);
    order.finish();
    while (auto const entry = order.next())
        entries.push_back(*entry);
    ASSERT_EQ(entries.size(), 5000u);
    EXPECT_EQ(entries[128], (PictureEntry{-1, -128, 0x22}));
    EXPECT_EQ(entries[129], (PictureEntry{1, 0, 0x2A})); // too far from its key frame
    for (std::size_t i = 1; i + 1 < entries.size(); ++i)
        EXPECT_EQ(entries[i].temporalOffset, i % 2 != 0 ? 1 : -1) << i;
}

TEST(PictureOrder, GivesWhatIsKnownWhenFewPicturesWait) {
    PictureOrder order;
    order.mostReordered(2);
    std::string given; // how much later each picture is shown, as it becomes known
    Picture picture{Picture::Type::B, false, Picture::Access::None, false};
    for (int const shown : {0, 8, 4, 2, 6, 16, 12, 10, 14}) {
        picture.order = shown;
        order.add(picture);
        while (auto const placed = order.next())
            given += std::to_string(placed->shownLater) + " ";
        given += "| ";
    }
    EXPECT_EQ(given, "| | 0 | | | | 3 0 -2 -1 | | | ");
    order.finish();
    EXPECT_EQ(order.next()->shownLater, 3);
}

TEST(PictureOrder, AnyOrderGivesAsManyEntries) {
    PictureOrder order, few;
    few.mostReordered(3);
    std::uint32_t state = 1;
    std::size_t count = 0, ofFew = 0;
    for (int i = 0; i < 20000; ++i) {
        state = state * 1664525u + 1013904223u;
        Picture picture;
        picture.isKey = (state >> 20) % 5 == 0;
        picture.beginsCount = (state >> 24) % 200 == 0;
        picture.order = static_cast<std::int64_t>(state >> 8) - (1 << 23);
        order.add(picture);
        few.add(picture);
        while (order.next())
            ++count;
        while (few.next())
            ++ofFew;
        auto const came = static_cast<std::size_t>(i) + 1;
        EXPECT_TRUE(came - count <= PictureOrder::mostWaiting &&
                    came - ofFew <= PictureOrder::mostWaitingForFew)
            << i;
    }
    order.finish();
    while (order.next())
        ++count;
    EXPECT_EQ(count, 20000u);
}

} // namespace MXF::Zelm::Test
