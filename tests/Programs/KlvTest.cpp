// zelm klv: lists and summaries, faults, and what goes on after them.
#include "SmallFile.h"
#include "support/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

ProgramRun listed(Bytes const& bytes, std::vector<std::string> options = {"--json"}) {
    FileOnDisk const file(bytes);
    options.insert(options.begin(), {"klv", file.name()});
    return runZelm(options);
}

/// The bytes that all rows together stand for.
std::uint64_t bytesOf(Json const& rows) {
    std::uint64_t sum = 0;
    for (auto const& row : rows)
        sum += row["length"].get<std::uint64_t>() +
               (row["key"].is_null() ? 0 : 16 + row["ber_length"].get<std::uint64_t>());
    return sum;
}

TEST(Klv, ListsEveryPacketWithItsOffsetAndName) {
    SmallFile const file;
    auto const run = listed(file.bytes);
    ASSERT_EQ(run.status, 0) << run.errors;
    auto const json = Json::parse(run.output);
    EXPECT_EQ(json["schema_version"], 1);
    EXPECT_EQ(json["size"], file.bytes.size());
    EXPECT_EQ(json["run_in"], 0);
    EXPECT_TRUE(json["fault"].is_null());
    ASSERT_EQ(json["klvs"].size(), file.packets);
    EXPECT_EQ(bytesOf(json["klvs"]), file.bytes.size());
    auto const& essence = json["klvs"][5];
    EXPECT_EQ(essence["offset"], file.essence1);
    EXPECT_EQ(essence["key"], "urn:smpte:ul:060e2b34.01020101.0d010301.15010500");
    EXPECT_EQ(essence["ber_length"], 4);
    EXPECT_EQ(essence["length"], 300);
    EXPECT_NE(essence["name"].get<std::string>().find("MPEG"), std::string::npos);

    auto const text = listed(file.bytes, {}).output;
    EXPECT_EQ(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), file.packets + 1);
}

TEST(Klv, CountsByKeyInTheOrderAskedFor) {
    SmallFile const file;
    auto const json = Json::parse(listed(file.bytes, {"--json", "--summary", "--sort", "bytes"}).output);
    auto const& first = json["keys"][0];
    EXPECT_EQ(first["key"], "urn:smpte:ul:060e2b34.01020101.0d010301.15010500");
    EXPECT_EQ(first["count"], 3);
    EXPECT_EQ(first["value_bytes"], 600);
    EXPECT_EQ(first["klv_bytes"], 660);
    EXPECT_EQ(json["total"]["count"], file.packets);
    EXPECT_EQ(json["total"]["klv_bytes"], file.bytes.size());
    EXPECT_NE(listed(file.bytes, {"--summary"}).output.find("660"), std::string::npos);
}

TEST(Klv, PassesOverARunInAndKeepsOffsetsOfTheFile) {
    SmallFile file;
    file.bytes.insert(file.bytes.begin(), 1000, 'r');
    auto const json = Json::parse(listed(file.bytes).output);
    EXPECT_EQ(json["run_in"], 1000);
    EXPECT_EQ(json["klvs"][0]["offset"], 1000);
    EXPECT_EQ(json["klvs"].size(), file.packets);
}

TEST(Klv, ListsOnlyTheRangeAskedFor) {
    SmallFile const file;
    auto const one = std::to_string(file.essence1 + 30);
    auto const json = Json::parse(listed(file.bytes, {"--json", "--range", one + ":"}).output);
    EXPECT_EQ(json["klvs"][0]["offset"], file.essence1);
    EXPECT_EQ(Json::parse(listed(file.bytes, {"--json", "--range", ":0x1"}).output)["klvs"].size(), 1u);
    for (auto const* wrong : {"5", "9:3", "0x:", "1:2:3", "-1:"})
        EXPECT_EQ(listed(file.bytes, {"--range=" + std::string(wrong)}).status, 2) << wrong;
}

/// Ways to break a file: what is done to it, how many packets are still read, what the fault says.
struct Broken {
    const char* name;
    void (*breakIt)(SmallFile&);
    std::size_t packets;
    const char* message;
    std::size_t SmallFile::*offset;
    std::size_t plus;
    std::size_t packetsResynchronised;
};

const Broken brokenFiles[] = {
    {"garbage", [](SmallFile& f) { f.bytes.insert(f.bytes.begin() + static_cast<long>(f.body2), 50, 0x77); },
     8, "no key", &SmallFile::body2, 0, 12},
    {"a label for a key", [](SmallFile& f) { f.bytes[f.essence1 + 4] = 4; }, 5, "another label",
     &SmallFile::essence1, 0, 11},
    {"indefinite length", [](SmallFile& f) { f.bytes[f.essence1 + 16] = 0x80; }, 5, "Invalid BER size: 0x80",
     &SmallFile::essence1, 16, 11},
    {"nine bytes of length", [](SmallFile& f) { f.bytes[f.essence1 + 16] = 0x89; }, 5,
     "Invalid BER size: 0x89", &SmallFile::essence1, 16, 11},
    {"a length beyond the end", [](SmallFile& f) { f.bytes[f.essence1 + 17] = 0x7F; }, 6,
     "the file ends inside a value", &SmallFile::essence1, 0, 12},
    {"a value cut off", [](SmallFile& f) { f.bytes.resize(f.essence1 + 50); }, 6,
     "the file ends inside a value", &SmallFile::essence1, 0, 6},
    {"a key cut off", [](SmallFile& f) { f.bytes.resize(f.essence1 + 7); }, 5, "the file ends inside the key",
     &SmallFile::essence1, 0, 5},
};

TEST(Klv, TellsAFaultAfterWhatCouldBeRead) {
    for (auto const& broken : brokenFiles) {
        SCOPED_TRACE(broken.name);
        SmallFile file;
        broken.breakIt(file);
        auto const run = listed(file.bytes);
        EXPECT_EQ(run.status, 3);
        auto const json = Json::parse(run.output);
        EXPECT_EQ(json["klvs"].size(), broken.packets);
        EXPECT_NE(json["fault"]["message"].get<std::string>().find(broken.message), std::string::npos)
            << json["fault"];
        EXPECT_EQ(json["fault"]["offset"], file.*broken.offset + broken.plus);
        EXPECT_NE(run.errors.find(broken.message), std::string::npos) << run.errors;
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);

        auto const resumed = listed(file.bytes, {"--json", "--resync"});
        EXPECT_EQ(resumed.status, 3);
        std::size_t packets = 0;
        auto const rows = Json::parse(resumed.output);
        for (auto const& row : rows["klvs"])
            packets += row["key"].is_null() ? 0 : 1;
        EXPECT_EQ(packets, broken.packetsResynchronised);
    }
}

TEST(Klv, AccountsForEveryByteAcrossAGap) {
    SmallFile file;
    file.bytes[file.essence1 + 17] = 0x7F; // a length beyond the end of the file
    auto const json = Json::parse(listed(file.bytes, {"--json", "--resync", "--summary"}).output);
    EXPECT_EQ(json["gaps"]["count"], 1);
    EXPECT_EQ(json["gaps"]["bytes"].get<std::uint64_t>() + json["total"]["klv_bytes"].get<std::uint64_t>(),
              file.bytes.size());
}

TEST(Klv, RefusesWhatIsNoMxfAndWhatIsNotThere) {
    Bytes const text(100000, 'x');
    for (auto const& bytes : {Bytes(), Bytes(3, 6), text}) {
        auto const run = listed(bytes);
        EXPECT_EQ(run.status, 3);
        EXPECT_NE(run.errors.find("no MXF header partition"), std::string::npos) << run.errors;
        EXPECT_TRUE(Json::parse(run.output)["klvs"].empty());
    }
    EXPECT_EQ(runZelm({"klv", "no-such-file.mxf"}).status, 4);
    EXPECT_EQ(runZelm({"klv"}).status, 2);
}

} // namespace

} // namespace MXF::Zelm::Test
