// zelm repair: what it finds, what it writes, what it refuses. tests/peers/compare-repair asks other
// programs.
#include "support/Files.h"
#include "support/Program.h"
#include "support/WrittenFile.h"

#include "MXF/Zelm/MXFIO/UndoRecord.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

/// A file of seven edit units that is cut off amid the last one.
class Repair : public testing::Test {
protected:
    void SetUp() override {
        WrittenFile layout{.containers = {{.packages = 7}}, .settings = {.partitions = {.packages = 3}}};
        broken_ = layout.write();
        OpenFile whole(broken_);
        broken_.resize(static_cast<std::size_t>(whole.reader.footerPartition()->partitionAbsoluteOffset()) -
                       40);
        writeFile(file_, broken_);
    }

    ProgramRun repair(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"repair", file_});
        return runZelm(arguments);
    }

    bool isUntouched() const { return readFile(file_) == broken_; }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("broken.mxf"), fresh_ = folder_.file("fresh.mxf");
    Bytes broken_;
};

TEST_F(Repair, TellsWhatIsWrongAndChangesNothing) {
    auto const run = repair({"--check", "--json"});
    EXPECT_EQ(run.status, 1) << run.errors;
    auto const report = Json::parse(run.output);
    EXPECT_FALSE(report["sound"]);
    EXPECT_FALSE(report["written"]);
    EXPECT_EQ(report["file_size"], nullptr);
    EXPECT_EQ(report["containers"][0]["edit_units"], 6);
    EXPECT_EQ(report["kept_bytes"].get<std::size_t>() + report["dropped_bytes"].get<std::size_t>(),
              broken_.size());
    std::vector<std::string> codes;
    for (auto const& finding : report["findings"])
        codes.push_back(finding["code"]);
    for (auto const* const code : {"torn_tail", "no_footer", "no_random_index", "no_index", "duration"})
        EXPECT_EQ(std::count(codes.begin(), codes.end(), code), 1) << code;
    EXPECT_NE(repair({"--check"}).output.find("! there is no footer partition"), std::string::npos);
    EXPECT_TRUE(isUntouched());
}

TEST_F(Repair, WritesANewFileAndTheFileItself) {
    ASSERT_EQ(repair({"-o", fresh_}).status, 0);
    EXPECT_TRUE(isUntouched());
    auto const refused = repair({"-o", fresh_});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("is there already (--force replaces it)"), std::string::npos)
        << refused.errors;
    EXPECT_EQ(repair({"-o", fresh_, "--replace"}).status, 0);
    auto const run = repair({"--in-place", "--json"});
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(Json::parse(run.output)["file_size"], readFile(file_).size());
    for (auto const& file : {file_, fresh_}) {
        auto const whole = readFile(file);
        EXPECT_EQ(runZelm({"repair", file, "--check"}).status, 0);
        EXPECT_EQ(runZelm({"index", "--rebuild", file}).status, 0);
        auto const again = runZelm({"repair", file, "--in-place"});
        EXPECT_EQ(again.status, 0);
        EXPECT_NE(again.output.find("nothing is wrong; nothing was written"), std::string::npos);
        EXPECT_EQ(readFile(file), whole);
    }
}

TEST_F(Repair, RefusesWhatItCannotDo) {
    EXPECT_EQ(repair({}).status, 2);
    EXPECT_EQ(repair({"--check", "--in-place"}).status, 2);
    EXPECT_EQ(repair({"-o", file_, "--replace"}).status, 2);
    EXPECT_TRUE(isUntouched());
    EXPECT_EQ(runZelm({"repair", fresh_, "--check"}).status, 4); // no such file
    broken_.resize(1000);
    writeFile(file_, broken_);
    auto const run = repair({"--in-place"});
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.errors.find("it ends amid the header metadata"), std::string::npos) << run.errors;
    EXPECT_TRUE(isUntouched());
}

TEST_F(Repair, UndoesARepairThatWasCutOff) {
    using MXFIO::UndoRecord;
    UndoRecord(file_, broken_.size(), {{0, Bytes(broken_.begin(), broken_.begin() + 4)}}, nullptr,
               UndoRecord::Growth::Appends)
        .write();
    Bytes half = broken_ + Bytes(100, 0xEE);
    half[0] = 0;
    writeFile(file_, half);
    EXPECT_EQ(repair({"--in-place"}).status, 2);
    EXPECT_EQ(readFile(file_), half);
    EXPECT_EQ(repair({"--restore"}).status, 0);
    EXPECT_TRUE(isUntouched());
    EXPECT_EQ(repair({"--restore"}).status, 2);
    EXPECT_EQ(repair({"--in-place"}).status, 0);
}

} // namespace

} // namespace MXF::Zelm::Test
