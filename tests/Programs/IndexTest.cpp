// zelm index: the tables of files from other programs, and of files whose one segment says what it should
// not.
#include "SmallFile.h"
#include "support/MxfFile.h"
#include "support/Program.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <set>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

constexpr std::size_t packSize = 124, segmentHead = 20, segmentSize = 40;
constexpr std::uint32_t essenceBytes = 710; // of the small file

/// The items of a segment of constant rate: as many bytes as the small file has for its segment.
Bytes constantRate(std::int64_t start, std::int64_t duration, std::uint32_t byteCount) {
    return hex("3F0C 0008") + number(start) + hex("3F0D 0008") + number(duration) + hex("3F05 0004") +
           number(byteCount) + hex("3F07 0004 00000001");
}

/// Those of a segment with one entry, and an item that nobody knows.
Bytes oneEntry(std::uint64_t streamOffset) {
    return hex("3F07 0004 00000001  3F0A 0013  00000001 0000000B  00 00 80") + number(streamOffset) +
           hex("FFFE 0005 0000000000");
}

SmallFile withSegment(Bytes const& items) {
    EXPECT_EQ(items.size(), segmentSize);
    SmallFile file;
    std::copy(items.begin(), items.end(),
              file.bytes.begin() + static_cast<long>(file.body1 + packSize + segmentHead));
    return file;
}

ProgramRun index(Bytes const& bytes, std::vector<std::string> options = {}) {
    FileOnDisk const file(bytes);
    options.insert(options.begin(), {"index", "--json", file.name()});
    return runZelm(options);
}

TEST(Index, ShowsATableThatAgrees) {
    auto const file = withSegment(constantRate(0, 2, essenceBytes / 2));
    auto const run = index(file.bytes);
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    auto const table = Json::parse(run.output)["tables"][0];
    EXPECT_EQ(table["index_sid"], 2);
    EXPECT_EQ(table["edit_unit_byte_count"], 355);
    EXPECT_EQ(table["essence_bytes"], essenceBytes);
    EXPECT_EQ(table["covered"], Json::parse(R"([{"start": 0, "duration": 2}])"));
    EXPECT_TRUE(table["gaps"].empty());
    EXPECT_EQ(table["segments"][0]["offset"], file.body1 + packSize);

    // The second edit unit begins in one partition and ends in the next.
    auto const unit = Json::parse(index(file.bytes, {"--at", "1"}).output)["edit_units"][0];
    EXPECT_EQ(unit["stream_offset"], 355);
    EXPECT_EQ(unit["extents"], Json({{{"offset", file.essence1 + 355}, {"length", 590 - 355}},
                                     {{"offset", file.body2 + packSize}, {"length", 120}}}));
    EXPECT_EQ(index(file.bytes, {"--at", "2"}).status, 2);
    EXPECT_EQ(Json::parse(index(file.bytes, {"--list", "-5:"}).output)["edit_units"].size(), 2u);
}

TEST(Index, FindsWhatDoesNotAgree) {
    struct {
        Bytes items;
        const char* message;
    } const cases[] = {
        {constantRate(0, 3, 355), "3 edit units of 355 bytes, but the essence has 710 bytes"},
        {constantRate(0, 1, 355), "1 edit unit of 355 bytes, but the essence has 710 bytes"},
        {constantRate(0, 301, 1), "301 edit units of 1 bytes, but the essence has 300 bytes"}, // a clip
        {constantRate(-4, 2, 355), "the segment starts at edit unit -4"},
        {constantRate(0, -1, 355), "the duration is -1"},
        {constantRate(0, 7, 0), "the duration is 7, the number of index entries 0"},
        {oneEntry(essenceBytes), "1 entry leads beyond the essence, which has 710 bytes: the first is entry "
                                 "0, which says 0x2C6"},
    };
    for (auto const& [items, message] : cases) {
        auto const run = index(withSegment(items).bytes);
        EXPECT_EQ(run.status, 1) << run.errors;
        auto const found = Json::parse(run.output)["disagreements"];
        ASSERT_EQ(found.size(), 1u) << found;
        EXPECT_EQ(found[0]["message"], message);
    }
}

TEST(Index, TellsRepeatsAndWhetherTheyAreTrue) {
    for (std::uint32_t const byteCount : {355u, 356u}) {
        auto file = withSegment(constantRate(0, 2, 355));
        auto const first = file.bytes.begin() + static_cast<long>(file.body1 + packSize);
        Bytes const repeat = Bytes(first, first + segmentHead) + constantRate(0, 2, byteCount);
        ByteCoders::codeInteger(std::uint32_t{2}, file.bytes.data() + file.footer + PackField::indexSID);
        file.bytes.insert(file.bytes.begin() + static_cast<long>(file.randomIndex), repeat.begin(),
                          repeat.end());
        auto const run = index(file.bytes);
        EXPECT_EQ(run.status, byteCount == 355 ? 0 : 1) << run.output;
        auto const segments = Json::parse(run.output)["tables"][0]["segments"];
        ASSERT_EQ(segments.size(), 2u);
        EXPECT_EQ(segments[1]["partition"], 3);
        EXPECT_EQ(segments[1]["repeat_of"], segments[0]["offset"]);
    }
}

TEST(Index, BearsAbsurdValues) {
    constexpr auto least = std::numeric_limits<std::int64_t>::min(), most = -(least + 1);
    for (std::int64_t const start : {least, std::int64_t{-1}, std::int64_t{0}, std::int64_t{1}, most})
        for (std::int64_t const duration : {least, std::int64_t{0}, std::int64_t{5}, most})
            for (std::uint32_t const byteCount : {0u, 1u, 355u, 0xFFFFFFFFu}) {
                auto const file = withSegment(constantRate(start, duration, byteCount));
                auto const run = index(file.bytes);
                EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << run.errors;
                auto const listed = Json::parse(index(file.bytes, {"--list", ":"}).output)["edit_units"];
                EXPECT_EQ(listed.size(), Json::parse(run.output)["tables"][0]["edit_units"]);
                EXPECT_LE(listed.size(), essenceBytes);
                auto const rebuilt = index(file.bytes, {"--rebuild"});
                EXPECT_TRUE(rebuilt.status == 0 || rebuilt.status == 1) << rebuilt.status << rebuilt.errors;
            }
    // No essence has this body SID: nothing to list, whatever the duration.
    Bytes items = constantRate(0, most, 1);
    items.back() = 9;
    EXPECT_EQ(Json::parse(index(withSegment(items).bytes, {"--list", ":"}).output)["edit_units"].size(), 0u);
    EXPECT_EQ(index(SmallFile().bytes).status, 3); // the segment holds no items
    EXPECT_EQ(index({}).status, 3);
    EXPECT_EQ(runZelm({"index", "no-such-file.mxf"}).status, 4);
}

TEST(Index, RebuildsATableAndSaysHowTheFilesOwnDiffers) {
    SmallFile const file; // of its segment nothing but the key is true: the fault is told
    auto const edges = Json::parse(index(file.bytes, {"--rebuild", "--list", ":"}).output)["edit_units"];
    ASSERT_FALSE(edges.empty());
    std::int64_t const units = std::ssize(edges);

    auto const run =
        index(withSegment(oneEntry(edges[0]["stream_offset"].get<std::uint64_t>() + 5)).bytes, {"--rebuild"});
    EXPECT_EQ(run.status, 1) << run.errors;
    auto const table = Json::parse(run.output)["tables"][0];
    EXPECT_EQ(table["edit_units"], units);
    EXPECT_TRUE(table["segments"][0]["offset"].is_null());
    auto const differences = table["comparison"]["differences"];
    EXPECT_FALSE(table["comparison"]["equal"]);
    ASSERT_EQ(differences.size(), units > 1 ? 2u : 1u) << differences;
    EXPECT_EQ(differences.back()["kind"], "offsets");
    EXPECT_EQ(differences.back()["first"][0],
              Json::parse(R"({"edit_unit": 0, "own": "0x5", "rebuilt": "0x0"})"));

    auto const surplus = index(withSegment(constantRate(std::int64_t{1} << 61, 3, 1)).bytes, {"--rebuild"});
    EXPECT_EQ(surplus.status, 1) << surplus.errors;
}

TEST(Index, FindsTheEditUnitOfAByte) {
    auto const file = withSegment(constantRate(0, 2, essenceBytes / 2));
    auto const unitAt = [&](std::uint64_t offset) {
        auto const run = index(file.bytes, {"--at-offset", std::to_string(offset)});
        return run.status == 0 ? Json::parse(run.output)["edit_units"][0]["edit_unit"].get<int>() : -1;
    };
    EXPECT_EQ(unitAt(file.essence1), 0);
    EXPECT_EQ(unitAt(file.essence1 + 354), 0);
    EXPECT_EQ(unitAt(file.essence1 + 355), 1);
    EXPECT_EQ(unitAt(file.body2 + packSize), 1);
    EXPECT_EQ(unitAt(file.body2), -1);
    EXPECT_EQ(unitAt(0), -1);
    EXPECT_EQ(index(file.bytes, {"--at-offset", "0x"}).status, 2);
}

TEST(Index, FindsSegmentsAmidEssence) {
    auto file = withSegment(constantRate(0, 2, 355));
    auto const first = file.bytes.begin() + static_cast<long>(file.body1 + packSize);
    Bytes const segment(first, first + segmentHead + segmentSize);
    Bytes const body = essence(40) + segment; // as many bytes as the second body has
    ASSERT_EQ(file.body2 + packSize + body.size(), file.footer);
    std::copy(body.begin(), body.end(), file.bytes.begin() + static_cast<long>(file.body2 + packSize));
    auto const tables = [&](std::vector<std::string> const& options) {
        return Json::parse(index(file.bytes, options).output)["tables"].size();
    };
    EXPECT_EQ(tables({}), 1u);
    EXPECT_EQ(tables({"--everywhere"}), 2u); // its partition has no index SID, and it none of its own
}

TEST(Index, FindsTimecodes) {
    if (sampleFiles().empty())
        GTEST_SKIP() << "no sample files";
    auto const file = sampleFiles().front().parent_path().string() + "/d10-imx50-op1a.mxf";
    auto const run = runZelm({"index", "--json", "--at", "23:58:30:01", file}); // it begins a frame earlier
    EXPECT_EQ(Json::parse(run.output)["edit_units"][0]["edit_unit"], 1);
    for (auto const* const text : {"23:58:30:02", "23:58:29:24", "23:58:30;01", "1:2"})
        EXPECT_EQ(runZelm({"index", "--at", text, file}).status, 2) << text;

    auto const csv = runZelm({"index", "--csv", "--list", "1:", file}).output;
    EXPECT_EQ(csv.substr(csv.find('\n') + 1), "2,1,1,1,1,0,0,192,274432,274432,280064\n");
}

/// Offsets of all KLV packets.
std::set<std::uint64_t> packets(std::string const& file) {
    std::set<std::uint64_t> offsets;
    auto const report = Json::parse(runZelm({"klv", "--json", file}).output);
    for (auto const& row : report["klvs"])
        offsets.insert(row["offset"].get<std::uint64_t>());
    return offsets;
}

TEST(Index, LeadsToTheElementsOfFilesOfOtherPrograms) {
    struct {
        const char* name;
        std::size_t entries, deltas;
    } const samples[] = {{"d10-imx50-op1a.mxf", 2, 3},
                         {"iab-generic-streams.mxf", 5, 1},
                         {"aces-picture-frame-wrapped.mxf", 4, 1}};
    if (sampleFiles().empty())
        GTEST_SKIP() << "no sample files";
    for (auto const& [name, entries, deltas] : samples) {
        auto const file = sampleFiles().front().parent_path().string() + "/" + name;
        SCOPED_TRACE(file);
        auto const table = Json::parse(runZelm({"index", "--json", file}).output)["tables"][0];
        EXPECT_EQ(table["segments"][0]["entries"], entries);
        EXPECT_EQ(table["segments"][0]["delta_entries"], deltas);
        EXPECT_EQ(table["edit_units"], entries);
        bool const isClip = std::string_view(name).starts_with("iab");
        auto const known = packets(file);
        for (std::size_t i = 0; i < entries; ++i) {
            auto const run = runZelm({"index", "--json", "--at", std::to_string(i), file});
            auto const elements = Json::parse(run.output)["edit_units"][0]["elements"];
            EXPECT_EQ(elements.size(), deltas);
            for (auto const& element : elements)
                EXPECT_TRUE(isClip || known.contains(element["offset"].get<std::uint64_t>())) << element;
        }
    }
}

} // namespace

} // namespace MXF::Zelm::Test
