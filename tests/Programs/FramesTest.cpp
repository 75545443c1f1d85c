// zelm frames and zelm index --plot: files with an index of reordered pictures, cut off, with absurd values,
// and from other programs.
#include "SmallFile.h"
#include "support/Program.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <limits>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

constexpr std::size_t packSize = 124;
constexpr std::int64_t farAway = std::int64_t{1} << 62;

struct Entry {
    int temporalOffset, keyFrameOffset;
    unsigned flags;
    std::uint64_t streamOffset;
};

/// Stored I, P, B; shown I, B, P. These are where the small file's three elements stand.
const std::vector<Entry> pictures = {{0, 0, 0xC0, 0}, {1, -1, 0x22, 320}, {-1, -2, 0x33, 590}};

Bytes segment(std::vector<Entry> const& entries, std::int64_t start, std::int64_t duration,
              std::uint32_t byteCount = 0, const char* rate = "00000019 00000001") {
    auto const count = static_cast<std::uint32_t>(entries.size());
    Bytes items = hex("3F0B 0008") + hex(rate) + hex("3F0C 0008") + number(start) + hex("3F0D 0008") +
                  number(duration) + hex("3F05 0004") + number(byteCount) +
                  hex("3F06 0004 00000002  3F07 0004 00000001  3F0A") +
                  number(static_cast<std::uint16_t>(8 + 11 * count)) + number(count) + hex("0000000B");
    for (auto const& entry : entries)
        items = items + number(static_cast<std::int8_t>(entry.temporalOffset)) +
                number(static_cast<std::int8_t>(entry.keyFrameOffset)) +
                number(static_cast<std::uint8_t>(entry.flags)) + number(entry.streamOffset);
    return klv(KLV::Key(KLV::INDEXTABLE_SEGMENT_KEY), items);
}

/// The small file with a segment in its footer instead of the one in its body.
SmallFile indexed(Bytes const& segment) {
    SmallFile file;
    Bytes const fill = klv(KLV::fillItemKey(), {});
    std::copy_n(fill.begin(), 16, file.bytes.begin() + static_cast<long>(file.body1 + packSize));
    ByteCoders::codeInteger(std::uint32_t{2}, file.bytes.data() + file.footer + PackField::indexSID);
    file.bytes.insert(file.bytes.begin() + static_cast<long>(file.randomIndex), segment.begin(),
                      segment.end());
    return file;
}

ProgramRun frames(Bytes const& bytes, std::vector<std::string> options = {}) {
    FileOnDisk const file(bytes);
    options.insert(options.begin(), {"frames", file.name()});
    return runZelm(options);
}

std::string sample(std::string const& name) {
    return sampleFiles().empty() ? "" : sampleFiles().front().parent_path().string() + "/" + name;
}

TEST(Frames, ShowsOrderKeyFramesAndPlaces) {
    auto const file = indexed(segment(pictures, 0, 3));
    auto const run = frames(file.bytes);
    EXPECT_EQ(run.status, 0) << run.errors;
    char expected[400];
    std::snprintf(expected, sizeof expected,
                  " stored  display  timecode     key  type         size  offset  flags\n"
                  "      0        0  -            K    I             320   0x%zX  0xC0\n"
                  "      1        2  -            .    P             270   0x%zX  0x22\n"
                  "      2        1  -            .    B             120   0x%zX  0x33\n",
                  file.essence1, file.essence1 + 320, file.body2 + packSize);
    EXPECT_EQ(run.output, expected);
    auto const rows = Json::parse(frames(file.bytes, {"--json"}).output)["frames"];
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]["offset"], file.essence1);
    EXPECT_EQ(rows[1]["size"], 270); // with the fill behind it
    EXPECT_EQ(rows[2]["offset"], file.body2 + packSize);
    EXPECT_EQ(rows[2]["timecode"], nullptr);

    std::string const head = "body_sid,edit_unit,display,timecode,key,type,size,offset,flags\n";
    auto const place = [](std::size_t offset) { return std::to_string(offset); };
    std::string const rowI = "1,0,0,,1,I,320," + place(file.essence1) + ",192\n",
                      rowP = "1,1,2,,0,P,270," + place(file.essence1 + 320) + ",34\n",
                      rowB = "1,2,1,,0,B,120," + place(file.body2 + packSize) + ",51\n";
    EXPECT_EQ(frames(file.bytes, {"--csv"}).output, head + rowI + rowP + rowB);
    EXPECT_EQ(frames(file.bytes, {"--csv", "--display"}).output, head + rowI + rowB + rowP);
    EXPECT_EQ(frames(file.bytes, {"--csv", "--range", "1:2"}).output, head + rowP);
    EXPECT_EQ(frames(file.bytes, {"--csv", "--range", "1:2", "--display"}).output, head + rowB);
}

TEST(Frames, TellsOfEssenceThatEndsEarly) {
    auto const file = indexed(segment(pictures, 0, 3));
    for (std::size_t const end : {file.body2 + packSize + 60, file.body2 + packSize + 5}) {
        Bytes const cut(file.bytes.begin(), file.bytes.begin() + static_cast<long>(end));
        auto const run = frames(cut, {"--json"});
        EXPECT_EQ(run.status, 1) << run.errors;
        auto const report = Json::parse(run.output);
        EXPECT_EQ(report["frames"].size(), 2u);
        EXPECT_EQ(report["frames"][0]["key"], nullptr); // the index is cut off
        EXPECT_EQ(report["ends_early"], true);
        EXPECT_EQ(frames(cut, {"--range", ":2"}).status, 0);
    }
    for (auto const* const option : {"--csv", "--display"}) // the index says that there are more
        EXPECT_EQ(frames(indexed(segment(pictures, 0, 4)).bytes, {option}).status, 1) << option;
    Bytes damaged = file.bytes;
    damaged[file.essence1 + 320] = 0; // no key
    EXPECT_EQ(frames(damaged).status, 3);
    EXPECT_EQ(frames({}).status, 3);
    EXPECT_EQ(runZelm({"frames", "no-such-file.mxf"}).status, 4);
}

TEST(Frames, ListsTracksAndTimecodesOfASample) {
    auto const file = sample("d10-imx50-op1a.mxf");
    if (file.empty())
        GTEST_SKIP() << "no sample files";
    auto const row = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"frames", "--json", file});
        auto const run = runZelm(options);
        EXPECT_EQ(run.status, 0) << run.errors;
        auto const rows = Json::parse(run.output)["frames"];
        EXPECT_EQ(rows.size(), 1u);
        return rows.empty() ? Json() : rows[0];
    };
    for (auto const* const name : {"v1", "15010500", "0x15010500"}) {
        auto const picture = row({"--track", name, "--range", "1:"});
        EXPECT_EQ(picture["size"], 250020) << name;
        EXPECT_EQ(picture["key"], true);
        EXPECT_EQ(picture["timecode"], "23:58:30:01");
    }
    auto const sound = row({"--track", "a1", "--range", "23:58:30:01-"});
    EXPECT_EQ(sound["size"], 23040);
    EXPECT_EQ(sound["edit_unit"], 1);
    EXPECT_EQ(sound["key"], nullptr); // the index tells of the pictures
    EXPECT_EQ(row({"--range", "-23:58:30:01"})["edit_unit"], 0);
    for (auto const* const range : {"1", "2:1", "-", "23:58:30:01-23:58:30:01", "00:00:00;00-", "1:2-3:4"})
        EXPECT_EQ(runZelm({"frames", "--range", range, file}).status, 2) << range;
    for (auto const* const track : {"v2", "d1", "x", "77"})
        EXPECT_EQ(runZelm({"frames", "--track", track, file}).status, 2) << track;
    EXPECT_EQ(runZelm({"frames", "--display", "-"}).status, 2);
}

/// Whether every text and tag of a drawing is closed.
bool isBalanced(std::string const& svg) {
    auto const count = [&](std::string const& part) {
        std::size_t found = 0;
        for (std::size_t at = svg.find(part); at != std::string::npos; at = svg.find(part, at + 1))
            ++found;
        return found;
    };
    return count("<") == count(">") && count("<text") == count("</text>") &&
           count("<title>") == count("</title>") && svg.find("nan") == std::string::npos &&
           svg.find("inf\"") == std::string::npos && svg.ends_with("</svg>\n");
}

TEST(IndexPlot, DrawsAndOverwritesNothing) {
    TemporaryFolder const folder;
    auto const file = folder.file("a&b'c.mxf"), out = folder.file("out.svg");
    writeFile(file, indexed(segment(pictures, 0, 3)).bytes);
    auto const plot = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"index", file, "--plot"});
        return runZelm(options).status;
    };
    EXPECT_EQ(plot({out}), 0);
    auto const drawn = readFile(out);
    std::string const svg(drawn.begin(), drawn.end());
    EXPECT_TRUE(isBalanced(svg)) << svg;
    EXPECT_NE(svg.find("a&amp;b'c.mxf"), std::string::npos);
    EXPECT_NE(svg.find("3 edit units at 25/s"), std::string::npos);
    EXPECT_NE(svg.find("710 bytes, 47.3 kbit/s; edit units of 120 to 320 bytes, the largest is number 0; "
                       "1 key frame"),
              std::string::npos)
        << svg;
    EXPECT_EQ(plot({out}), 2);
    EXPECT_EQ(plot({out, "--force"}), 0);
    EXPECT_EQ(plot({file, "--force"}), 2);
    EXPECT_EQ(plot({folder.file("no/such/folder.svg")}), 4);
}

TEST(IndexPlot, BearsAbsurdValuesAsFramesDoes) {
    constexpr auto least = std::numeric_limits<std::int64_t>::min(), most = -(least + 1);
    TemporaryFolder const folder;
    auto const file = folder.file("absurd.mxf"), out = folder.file("out.svg");
    for (std::int64_t const start : {least, std::int64_t{-1}, std::int64_t{0}, farAway, most})
        for (std::int64_t const duration : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{2}, most})
            for (auto const& bad : {Entry{127, 127, 0xFF, 709}, Entry{-128, -128, 0, ~std::uint64_t{0}}}) {
                writeFile(file, indexed(segment({pictures[0], bad, bad}, start, duration)).bytes);
                for (auto const* const order : {"--csv", "--display"}) {
                    auto const run = runZelm({"frames", order, file});
                    EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << run.errors;
                    EXPECT_LE(std::count(run.output.begin(), run.output.end(), '\n'), 4);
                }
                EXPECT_EQ(runZelm({"index", file, "--force", "--plot", out}).status, 0);
                auto const drawn = readFile(out);
                EXPECT_TRUE(isBalanced(std::string(drawn.begin(), drawn.end()))) << start << " " << duration;
            }
}

/// Segments that lead a table from one end of all positions to the other, at rates that are none.
TEST(IndexPlot, BearsTablesWithoutEnd) {
    TemporaryFolder const folder;
    auto const file = folder.file("endless.mxf"), out = folder.file("out.svg");
    constexpr auto least = std::numeric_limits<std::int64_t>::min(), most = -(least + 1);
    for (auto const* const rate :
         {"00000000 00000000", "80000000 FFFFFFFF", "00000019 00000000", "7FFFFFFF 00000001"}) {
        auto const segments = segment({pictures[0]}, least, 1, 0, rate) +
                              segment({pictures[0]}, 0, farAway, 1, rate) +
                              segment({pictures[1]}, most - 1, 1, 0, rate);
        writeFile(file, indexed(segments).bytes);
        auto const run = runZelm({"index", file, "--json"});
        EXPECT_EQ(run.status, 1) << rate << run.errors;
        EXPECT_LE(Json::parse(run.output)["tables"][0]["edit_units"], 712);
        for (std::vector<std::string> const& order : {std::vector<std::string>{"index", file},
                                                      {"index", file, "--list", ":", "--display"},
                                                      {"index", file, "--force", "--plot", out},
                                                      {"frames", "--display", file}}) {
            auto const other = runZelm(order);
            EXPECT_TRUE(other.status == 0 || other.status == 1) << order[0] << other.errors;
        }
    }
}

} // namespace

} // namespace MXF::Zelm::Test
