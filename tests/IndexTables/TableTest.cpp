/// Index tables: which segment serves an edit unit, and where an edit unit stands.
#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "support/IndexSegments.h"

#include <limits>
#include <random>

namespace MXF::Zelm::Test {

using namespace IndexTables;

namespace {

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

struct Table : IndexTable {
    explicit Table(std::vector<Rows> const& segments) : IndexTable(2, 1) {
        for (auto const& rows : segments)
            add(makeSegment(rows), true);
    }
};

/// "OFFSET+LENGTH" with ? for an unknown length, "none" for no answer.
template <class Location>
std::string text(std::optional<Location> const& location) {
    if (!location)
        return "none";
    return std::to_string(location->streamOffset) + "+" +
           (location->length ? std::to_string(*location->length) : "?");
}

/// The texts of some edit units.
std::string texts(EditUnitLocator const& locator, std::vector<std::int64_t> const& positions) {
    std::string all;
    for (auto const position : positions)
        all += (all.empty() ? "" : " ") + text(locator.locate(position));
    return all;
}

std::int64_t startOf(IndexTableSegment const* segment) {
    return segment != nullptr ? segment->indexStartPosition().value() : -99;
}

} // namespace

TEST(IndexTable, KeepsARepeatedSegmentOnce) {
    IndexTable table(2, 1);
    EXPECT_EQ(table.find(0), nullptr);
    table.add(makeSegment({.start = 0, .duration = 100}), false);
    table.add(makeSegment({.start = 0, .duration = 100}), false);
    EXPECT_EQ(table.size(), 1u);
    table.add(makeSegment({.start = 0, .duration = 100}), true);
    table.add(makeSegment({.start = 0, .duration = 50}), false);
    EXPECT_EQ(table.size(), 3u);
    auto withoutSID = makeSegment({.start = 200, .duration = 100});
    withoutSID->resetIndexSID();
    table.add(std::move(withoutSID), false);
    EXPECT_EQ(startOf(table.find(250)), 200);
    EXPECT_EQ(table.find(150), nullptr);
    EXPECT_EQ(table.find(-1), nullptr);
    EXPECT_EQ(table.firstGap(0), 100);
    EXPECT_EQ(table.firstGap(150), 150);
    EXPECT_EQ(table.firstGap(200), 300);
    EXPECT_EQ(table.editRate().numerator, 25);
    EXPECT_EQ(thrownBy([&] { table.add(makeSegment({.bodySID = 7}), false); }),
              "Trying to load a IndexTable segment into a IndexTable with different bodySIDs");
    EXPECT_EQ(thrownBy([&] { table.add(makeSegment({.indexSID = 7}), false); }),
              "Trying to load a IndexTable segment into a IndexTable with different indexSIDs");
}

TEST(IndexTable, FindsTheSegmentThatStartsLast) {
    for (bool const longLast : {false, true}) {
        Table const table({{.duration = longLast ? 50 : 100}, {.duration = longLast ? 100 : 50}});
        EXPECT_EQ(table.find(75)->indexDuration().value(), 100);
        EXPECT_EQ(table.find(25)->indexDuration().value(), longLast ? 100 : 50) << "the one added last";
    }
    // Against a walk backwards over segments that overlap, repeat, are empty, negative or end beyond all.
    std::mt19937 random(1);
    auto const any = [&random](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    for (int round = 0; round < 200; ++round) {
        std::vector<Rows> rows(static_cast<std::size_t>(any(0, 40)));
        for (auto& row : rows)
            row = {.start = any(-5, 60), .duration = any(0, 9) == 0 ? largest : any(-3, 20)};
        Table const table(rows);
        for (std::int64_t position = -8; position < 90; ++position) {
            IndexTableSegment const* expected = nullptr;
            for (auto const& [start, segment] : table)
                if (start <= position &&
                    (segment->indexDuration() == largest || position < start + segment->indexDuration()))
                    expected = segment.get();
            ASSERT_EQ(table.find(position), expected) << "position " << position;
        }
    }
}

TEST(EditUnitLocator, LocatesBothKindsOfRate) {
    auto const three = entriesAt({0, 100, 250});
    struct {
        const char* name;
        std::vector<Rows> segments;
        EssenceExtent extent;
        const char* expected; // edit units 0, 1, 2, 3, 4
        std::optional<std::int64_t> end;
    } const rows[] = {
        {"entries", {{.duration = 3, .entries = three}}, {}, "0+100 100+150 250+? none none", 3},
        {"the essence's end",
         {{.duration = 3, .entries = three}},
         {300},
         "0+100 100+150 250+50 none none",
         3},
        {"an entry more than edit units",
         {{.duration = 2, .entries = three}},
         {300},
         "0+100 100+150 none none none",
         2},
        {"the next segment",
         {{.start = 3, .duration = 1, .entries = entriesAt({400})}, {.duration = 3, .entries = three}},
         {1000},
         "0+100 100+150 250+150 400+600 none",
         4},
        {"a gap",
         {{.duration = 1, .entries = three}, {.start = 3, .duration = 1, .entries = entriesAt({400})}},
         {500},
         "0+100 none none 400+100 none",
         4},
        {"entries without duration", {{.entries = three}}, {300}, "0+100 100+150 250+50 none none", 3},
        {"fewer entries than edit units",
         {{.duration = 5, .entries = three}},
         {},
         "0+100 100+150 250+? none none",
         5},
        {"entries, then a constant rate",
         {{.duration = 5, .byteCount = 10, .entries = three}},
         {},
         "0+100 100+150 250+10 260+10 270+10",
         5},
        {"constant", {{.duration = 3, .byteCount = 10}}, {}, "0+10 10+10 20+10 none none", 3},
        {"constant to the end", {{.byteCount = 10}}, {33}, "0+10 10+10 20+10 30+3 none", 4},
        {"constant, no end known", {{.byteCount = 10}}, {}, "0+10 10+10 20+10 30+10 40+10", std::nullopt},
        {"constant, negative duration",
         {{.duration = -1, .byteCount = 10}},
         {20},
         "0+10 10+10 none none none",
         2},
        {"clip wrapped", {{.byteCount = 6}}, {25 + 12, 25}, "25+6 31+6 none none none", 2},
        {"two constant rates",
         {{.duration = 1, .byteCount = 512}, {.start = 1, .byteCount = 100}},
         {800},
         "0+512 512+100 612+100 712+88 none",
         4},
        {"a constant rate whose beginning is lost",
         {{.start = 2, .byteCount = 10}},
         {50},
         "none none 20+10 30+10 40+10",
         5},
        {"entries before a constant rate",
         {{.duration = 2, .entries = three}, {.start = 2, .byteCount = 10}},
         {},
         "0+100 100+150 250+10 260+10 270+10",
         std::nullopt},
        {"entries that end nowhere before a constant rate",
         {{.duration = 1, .entries = entriesAt({0})}, {.start = 1, .byteCount = 10}},
         {},
         "0+? none none none none",
         std::nullopt},
        {"a start position",
         {{.start = 1, .duration = 2, .entries = entriesAt({40, 90})}},
         {100},
         "none 40+50 90+10 none none",
         3},
        {"entries that go back",
         {{.duration = 3, .entries = entriesAt({0, 500, 100})}},
         {600},
         "0+500 500+? 100+500 none none",
         3},
        {"entries beyond the essence",
         {{.duration = 3, .entries = entriesAt({0, 500, ~0ull})}},
         {600},
         "0+500 500+100 none none none",
         3},
        {"neither entries nor bytes", {{.duration = 3}}, {600}, "none none none none none", 3},
        {"nothing", {}, {600}, "none none none none none", std::nullopt},
    };
    for (auto const& row : rows) {
        Table const table(row.segments);
        EditUnitLocator const locator(table, row.extent);
        EXPECT_EQ(texts(locator, {0, 1, 2, 3, 4}), row.expected) << row.name;
        EXPECT_EQ(locator.end(), row.end) << row.name;
        EXPECT_EQ(texts(locator, {-1, smallest}), "none none") << row.name;
    }
}

TEST(EditUnitLocator, LocatesElements) {
    auto const entry = [](std::uint64_t offset, std::uint32_t slice) {
        IndexEntry made(offset);
        made.addSliceOffset(0, slice);
        return made;
    };
    // System item of 512 bytes, picture of any size, sound of constant size.
    std::vector<DeltaEntry> const deltas{{0, 0, 0}, {-1, 0, 512}, {0, 1, 0}};
    Table const variable({{.duration = 2, .entries = {entry(0, 1000), entry(1500, 2000)}, .deltas = deltas}});
    EditUnitLocator const locator(variable, EssenceExtent{4000});
    auto const elements = [](EditUnitLocator const& from, std::int64_t position) {
        std::string all;
        for (std::size_t i = 0; i < 4; ++i)
            all += text(from.locateElement(position, i)) + " ";
        return all;
    };
    EXPECT_EQ(elements(locator, 0), "0+512 512+488 1000+500 none ");
    EXPECT_EQ(elements(locator, 1), "1500+512 2012+1488 3500+500 none ");
    EXPECT_EQ(elements(locator, 2), "none none none none ");
    EXPECT_EQ(locator.locateElement(0, 1)->posTableIndex, -1);
    EXPECT_EQ(locator.elementCount(1), 3u);
    EXPECT_EQ(locator.elementCount(2), 0u);

    Table const constant({{.byteCount = 1000, .deltas = {{0, 0, 0}, {0, 0, 600}}}});
    EXPECT_EQ(elements(EditUnitLocator(constant), 2), "2000+600 2600+400 none none ");
    Table const noDeltas(std::vector<Rows>{{.byteCount = 1000}});
    EXPECT_EQ(elements(EditUnitLocator(noDeltas), 2), "2000+1000 none none none ");
    // A slice that no entry has, deltas that go back or beyond the edit unit.
    Table const wrong({{.byteCount = 1000, .deltas = {{0, 0, 500}, {0, 0, 100}, {0, 1, 0}, {0, 0, 1001}}}});
    EXPECT_EQ(elements(EditUnitLocator(wrong), 0), "500+? 100+? none none ");
}

TEST(EditUnitLocator, ReordersPictures) {
    // Display I0 B1 B2 P3 B4 B5 P6 | B7 B8 I9 B10 B11 P12, stored I0 P3 B1 B2 P6 B4 B5 | I9 B7 B8 P12 B10
    // B11.
    struct {
        int temporal, key;
        std::uint8_t flags;
        std::int64_t stored, display,
            first; // of display position i: where stored; of stored i: where shown, key
    } const rows[] = {{0, 0, 0xC0, 0, 0, 0},    {1, -1, 0x22, 2, 3, 0},   {1, -2, 0x33, 3, 1, 0},
                      {-2, -3, 0x33, 1, 2, 0},  {1, -4, 0x22, 5, 6, 0},   {1, -5, 0x33, 6, 4, 0},
                      {-2, -6, 0x33, 4, 5, 0},  {1, 0, 0x40, 8, 9, 7},    {1, -8, 0x33, 9, 7, 0},
                      {-2, -9, 0x33, 7, 8, 0},  {1, -3, 0x22, 11, 12, 7}, {1, -4, 0x33, 12, 10, 7},
                      {-2, -5, 0x33, 10, 11, 7}};
    std::vector<Rows> segments(2); // the second begins amid a group
    std::int64_t position = 0;
    for (auto const& row : rows) {
        auto& segment = segments[position < 5 ? 0 : 1];
        IndexEntry entry(static_cast<std::uint64_t>(position++));
        entry.temporalOffset(static_cast<std::int8_t>(row.temporal));
        entry.keyFrameOffset(static_cast<std::int8_t>(row.key));
        entry.flags(row.flags);
        segment.entries.push_back(entry);
        ++segment.duration;
    }
    segments[1].start = 5;
    Table const table(segments);
    EditUnitLocator const locator(table);
    for (std::int64_t i = 0; i < 13; ++i) {
        auto const& row = rows[i];
        EXPECT_EQ(locator.storedPosition(i), row.stored) << i;
        EXPECT_EQ(locator.displayPosition(i), row.display) << i;
        EXPECT_EQ(locator.keyFrame(i), row.first) << i;
        EXPECT_EQ(locator.flags(i), row.flags) << i;
        auto const range = locator.decodingRange(i);
        EXPECT_EQ(range->last, row.stored);
        EXPECT_EQ(range->first, rows[row.stored].first);
    }
    EXPECT_EQ(locator.storedPosition(13), std::nullopt);

    Table const tens(std::vector<Rows>{{.byteCount = 10}});
    EditUnitLocator const constant(tens);
    EXPECT_EQ(constant.storedPosition(5), 5);
    EXPECT_EQ(constant.displayPosition(5), 5);
    EXPECT_EQ(constant.keyFrame(5), 5);
    EXPECT_EQ(constant.flags(5), std::nullopt);
}

TEST(EditUnitLocator, BelievesNoOffsetThatLeadsOut) {
    auto const entry = [](int temporal, int key, std::uint8_t flags = 0) {
        return IndexEntry(static_cast<std::int8_t>(temporal), static_cast<std::int8_t>(key), false, false,
                          (flags & 0x20) != 0, false, 5);
    };
    std::vector<IndexEntry> entries{entry(-1, -1), entry(127, 1), entry(-128, -128), entry(0, 0)};
    entries[3].flags(IndexEntry::OffsetOutOfRange);
    for (std::int64_t const start : {std::int64_t{0}, smallest, std::int64_t{1} << 62, largest - 4}) {
        Table const table({{.start = start, .duration = 4, .entries = entries}});
        EditUnitLocator const locator(table);
        for (std::int64_t i = 0; i < 3; ++i) {
            EXPECT_EQ(locator.storedPosition(start + i), std::nullopt);
            EXPECT_EQ(locator.displayPosition(start + i), std::nullopt);
            EXPECT_EQ(locator.keyFrame(start + i), std::nullopt);
        }
        EXPECT_EQ(locator.storedPosition(start + 3), start + 3);
        EXPECT_EQ(locator.keyFrame(start + 3), std::nullopt);
        EXPECT_TRUE(locator.locate(start + 3));
    }
    // Constant rates whose sums leave all bounds, and segments that cover everything.
    Table const wide({{.start = smallest, .duration = largest, .byteCount = ~0u},
                      {.start = 0, .duration = largest, .byteCount = ~0u},
                      {.start = std::int64_t{1} << 62, .byteCount = ~0u},
                      {.start = largest, .byteCount = 1},
                      {.start = smallest, .entries = entriesAt({1, 2})}});
    EditUnitLocator const locator(wide, EssenceExtent{~0ull});
    EXPECT_EQ(texts(locator, {smallest, smallest + 1, -1, 1, std::int64_t{1} << 62, largest - 1, largest}),
              "none none none 4294967295+4294967295 none none none");
    locator.end();
    EXPECT_EQ(locator.positionAt(~0ull - 1), std::int64_t{1} << 32);
    EXPECT_EQ(locator.positionAt(4294967295u + std::uint64_t{7}), 1);
}

TEST(EditUnitLocator, AgreesWithATableOfAllEditUnits) {
    std::mt19937 random(2);
    auto const any = [&random](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    for (int round = 0; round < 100; ++round) {
        std::vector<std::uint64_t> offsets{0}; // of every edit unit, and the end
        std::vector<Rows> segments;
        while (offsets.size() < 300) {
            Rows rows{.start = std::ssize(offsets) - 1, .duration = any(1, 40)};
            bool const constant = any(0, 2) == 0;
            std::uint32_t const size = static_cast<std::uint32_t>(any(1, 1000));
            rows.byteCount = constant ? size : 0;
            for (std::int64_t i = 0; i < rows.duration; ++i) {
                if (!constant)
                    rows.entries.emplace_back(offsets.back());
                offsets.push_back(offsets.back() + (constant ? size : static_cast<unsigned>(any(1, 1000))));
            }
            if (!constant) // so that the table tells where a constant rate goes on
                rows.entries.emplace_back(offsets.back());
            segments.push_back(rows);
            if (any(0, 3) == 0)
                segments.push_back(rows);
        }
        std::shuffle(segments.begin(), segments.end(), random);
        Table const table(segments);
        EditUnitLocator const locator(table, EssenceExtent{offsets.back()});
        EXPECT_EQ(locator.end(), std::ssize(offsets) - 1);
        for (std::size_t i = 0; i + 1 < offsets.size(); ++i) {
            auto const found = locator.locate(static_cast<std::int64_t>(i));
            ASSERT_TRUE(found && found->streamOffset == offsets[i] &&
                        found->length == offsets[i + 1] - offsets[i])
                << "edit unit " << i << ": " << text(found);
        }
    }
}

} // namespace MXF::Zelm::Test
