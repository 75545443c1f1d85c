// zelm partitions: what it finds, and what it finds wrong in files doctored byte by byte.
#include "SmallFile.h"
#include "support/Program.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

ProgramRun partitions(Bytes const& bytes, std::vector<std::string> options = {"--json"}) {
    FileOnDisk const file(bytes);
    options.insert(options.begin(), {"partitions", file.name()});
    return runZelm(options);
}

std::vector<std::string> fields(Json const& report) {
    std::vector<std::string> names;
    for (auto const& disagreement : report["disagreements"])
        names.push_back(disagreement["field"]);
    return names;
}

template <class Integer>
void put(Bytes& bytes, std::size_t at, Integer value) {
    ByteCoders::codeInteger(value, bytes.data() + at);
}

TEST(Partitions, ShowsAFileThatAgrees) {
    SmallFile const file;
    for (auto const& options : {std::vector<std::string>{"--json"}, {"--json", "--walk"}}) {
        auto const run = partitions(file.bytes, options);
        EXPECT_EQ(run.status, 0) << run.errors;
        auto const json = Json::parse(run.output);
        EXPECT_TRUE(json["disagreements"].empty()) << json["disagreements"];
        ASSERT_EQ(json["partitions"].size(), 4u);
        auto const& body = json["partitions"][1];
        EXPECT_EQ(body["offset"], file.body1);
        EXPECT_EQ(body["length"], 124);
        EXPECT_EQ(body["kind"], "body");
        EXPECT_EQ(body["status"], "closed complete");
        EXPECT_EQ(body["body_sid"], 1);
        EXPECT_EQ(body["index_sid"], 2);
        EXPECT_EQ(body["footer_partition"], file.footer);
        EXPECT_EQ(body["essence_containers"][0], "urn:smpte:ul:060e2b34.04010101.0d010301.02046001");
        EXPECT_EQ(json["random_index_pack"]["offset"], file.randomIndex);
        EXPECT_EQ(json["random_index_pack"]["entries"][2],
                  Json({{"body_sid", 1}, {"byte_offset", file.body2}}));
    }
}

TEST(Partitions, CountsOffsetsFromTheHeaderPartition) {
    SmallFile file;
    file.bytes.insert(file.bytes.begin(), 777, 'r');
    auto const json = Json::parse(partitions(file.bytes).output);
    EXPECT_EQ(json["run_in"], 777);
    EXPECT_TRUE(json["disagreements"].empty()) << json["disagreements"];
    EXPECT_EQ(json["partitions"][1]["offset"], file.body1 + 777);
    EXPECT_EQ(json["partitions"][1]["this_partition"], file.body1);
}

struct Doctored {
    const char* field;
    std::size_t SmallFile::*partition; ///< null for the header partition or the whole file
    void (*doctor)(SmallFile&);
};

const Doctored doctoredFiles[] = {
    {"this_partition", &SmallFile::body2,
     [](SmallFile& f) { put(f.bytes, f.body2 + PackField::thisPartition, f.body2 + std::uint64_t{1}); }},
    {"previous_partition", &SmallFile::body2,
     [](SmallFile& f) { put(f.bytes, f.body2 + PackField::previousPartition, std::uint64_t{0}); }},
    {"previous_partition", &SmallFile::footer,
     [](SmallFile& f) { put(f.bytes, f.footer + PackField::previousPartition, ~std::uint64_t{0}); }},
    {"previous_partition", nullptr,
     [](SmallFile& f) { put(f.bytes, PackField::previousPartition, std::uint64_t{5}); }},
    {"footer_partition", nullptr,
     [](SmallFile& f) { put(f.bytes, PackField::footerPartition, std::uint64_t{0}); }},
    {"footer_partition", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.body1 + PackField::footerPartition, std::uint64_t{99}); }},
    {"status", &SmallFile::footer, [](SmallFile& f) { f.bytes[f.footer + PackField::status] = 3; }},
    {"index_byte_count", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.body1 + PackField::indexByteCount, std::uint64_t{0}); }},
    {"header_byte_count", nullptr,
     [](SmallFile& f) { put(f.bytes, PackField::headerByteCount, std::uint64_t{27}); }},
    {"header_byte_count", nullptr,
     [](SmallFile& f) { put(f.bytes, PackField::headerByteCount, std::uint64_t{30}); }},
    {"header_byte_count", nullptr,
     [](SmallFile& f) { put(f.bytes, PackField::headerByteCount, ~std::uint64_t{0}); }},
    {"header_byte_count", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.body1 + PackField::headerByteCount, std::uint64_t{60}); }},
    {"index_byte_count", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.body1 + PackField::indexByteCount, std::uint64_t{59}); }},
    {"index_byte_count", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.body1 + PackField::indexByteCount, std::uint64_t{380}); }},
    {"index_byte_count", &SmallFile::body2,
     [](SmallFile& f) { put(f.bytes, f.body2 + PackField::indexByteCount, std::uint64_t{120}); }},
    {"index_sid", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.body1 + PackField::indexSID, std::uint32_t{0}); }},
    {"body_offset", &SmallFile::body2,
     [](SmallFile& f) { put(f.bytes, f.body2 + PackField::bodyOffset, std::uint64_t{1}); }},
    {"operational_pattern", &SmallFile::body2,
     [](SmallFile& f) { f.bytes[f.body2 + PackField::operationalPattern + 12] = 3; }},
    {"essence_containers", &SmallFile::footer,
     [](SmallFile& f) { f.bytes[f.footer + PackField::essenceContainers + 15] = 9; }},
    {"random_index_pack", &SmallFile::body1,
     [](SmallFile& f) { put(f.bytes, f.randomIndex + 20 + 12, std::uint32_t{7}); }},
    {"random_index_pack", nullptr, [](SmallFile& f) { put(f.bytes, f.bytes.size() - 4, std::uint32_t{70}); }},
};

TEST(Partitions, FindsEachFieldThatIsWrong) {
    for (auto const& doctored : doctoredFiles) {
        SmallFile file;
        doctored.doctor(file);
        auto const run = partitions(file.bytes);
        EXPECT_EQ(run.status, 1) << run.errors;
        auto const json = Json::parse(run.output);
        SCOPED_TRACE(json["disagreements"].dump());
        auto const found = fields(json);
        ASSERT_EQ(std::count(found.begin(), found.end(), doctored.field), static_cast<long>(found.size()))
            << doctored.field;
        ASSERT_FALSE(found.empty()) << doctored.field;
        auto const& offset = json["disagreements"][0]["partition_offset"];
        std::size_t const expected = doctored.partition != nullptr ? file.*doctored.partition : 0;
        EXPECT_TRUE(offset == expected || (offset.is_null() && doctored.partition == nullptr)) << offset;
        EXPECT_EQ(json["partitions"].size(), 4u);
        EXPECT_NE(partitions(file.bytes, {}).output.find("\n! "), std::string::npos);
    }
}

TEST(Partitions, AcceptsBodyOffsetsWithoutTheFillBetween) {
    SmallFile file;
    put(file.bytes, file.body2 + PackField::bodyOffset, std::uint64_t{320 + 220});
    EXPECT_EQ(partitions(file.bytes).status, 0);
}

TEST(Partitions, FindsWhatTheRandomIndexPackLeavesOutOrInvents) {
    SmallFile file;
    put(file.bytes, file.randomIndex + 20 + 12 + 4, std::uint64_t{3}); // instead of the first body partition
    auto const json = Json::parse(partitions(file.bytes).output);
    EXPECT_EQ(json["partitions"].size(), 4u);
    EXPECT_EQ(fields(json), std::vector<std::string>(2, "random_index_pack"));
}

TEST(Partitions, ShowsFilesThatEndTooEarly) {
    SmallFile const file;
    struct {
        std::size_t size;
        std::size_t partitions;
        int status;
    } const cases[] = {
        {file.randomIndex, 4, 0},  // no random index pack: a note
        {file.footer, 3, 1},       // closed, but without a footer
        {file.footer - 10, 3, 3},  // inside an essence element
        {file.essence1 + 5, 2, 3}, // inside a key
        {file.body1 + 60, 1, 3},   // inside a partition pack
        {60, 0, 3},
        {0, 0, 3},
    };
    for (auto const& [size, count, status] : cases) {
        auto const run = partitions(Bytes(file.bytes.begin(), file.bytes.begin() + static_cast<long>(size)));
        EXPECT_EQ(run.status, status) << size << run.errors;
        auto const json = Json::parse(run.output);
        EXPECT_EQ(json["partitions"].size(), count) << size;
        EXPECT_EQ(json["fault"].is_null(), status != 3) << json["fault"];
        EXPECT_TRUE(json["random_index_pack"].is_null());
    }
    EXPECT_EQ(runZelm({"partitions", "no-such-file.mxf"}).status, 4);
}

} // namespace

} // namespace MXF::Zelm::Test
