// zelm edit: paths, values, and what is written.
#include "Programs/SmallFile.h"
#include "support/Program.h"

#include "MXF/Zelm/MXFIO/UndoRecord.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

/// A copy of a sample file; skips the test when the samples are not there.
class Edit : public testing::Test {
protected:
    void SetUp() override { copy("aces-picture-frame-wrapped.mxf"); }

    void copy(std::string const& name) {
        auto const sample = std::filesystem::path(MXFZELM_SAMPLES_DIR) / name;
        if (!std::filesystem::exists(sample))
            GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
        original_ = readFile(sample.string());
        writeFile(file_, original_);
    }

    ProgramRun edit(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"edit", file_});
        return runZelm(arguments);
    }

    /// The value of a path, as --paths gives it.
    Json value(std::string const& path, std::string const& file) const {
        auto const report = Json::parse(runZelm({"edit", file, "--paths", "--json"}).output);
        for (auto const& row : report["paths"])
            if (row["path"] == path)
                return row["value"];
        return nullptr;
    }

    bool isUntouched() const { return readFile(file_) == original_; }

    TemporaryFolder folder_;
    std::string file_ = folder_.file("clip.mxf");
    Bytes original_;
};

TEST_F(Edit, AddsFrameworksWithTheirProperties) {
    auto const run = edit({"--add-framework", "clip:kind=Moving Pictures,Clip Number=A1, take 2,track=2",
                           "--add-framework", "production:IntegrationIndication=Project", "--in-place"});
    ASSERT_EQ(run.status, 0) << run.errors;
    auto const frameworks =
        Json::parse(runZelm({"dump", "--frameworks", "--json", file_}).output)["frameworks"];
    ASSERT_EQ(frameworks.size(), 2u);
    EXPECT_EQ(frameworks[0]["described_tracks"], Json::array({2}));
    EXPECT_EQ(frameworks[0]["framework"]["properties"]["ClipNumber"], "A1, take 2");
    EXPECT_EQ(frameworks[0]["framework"]["properties"]["ClipKind"], "Moving Pictures");
    EXPECT_EQ(frameworks[1]["framework"]["class"], "ProductionFramework");
    auto const before = readFile(file_);
    for (auto const* const wrong : {"movie", "clip:", "clip:size=3", "clip:kind", "clip:track=x"})
        EXPECT_EQ(edit({"--add-framework", wrong, "--in-place"}).status, 2) << wrong;
    EXPECT_EQ(readFile(file_), before);
}

TEST_F(Edit, FindsEveryPathThatItListsAndReadsEveryValueThatItPrints) {
    for (auto const* const name : {"d10-imx50-op1a.mxf", "aces-picture-frame-wrapped.mxf",
                                   "dms-text-no-essence.mxf", "pcm-51-mca-clip.mxf"}) {
        copy(name);
        std::vector<std::string> arguments{"--dry-run", "--json", "--no-history"};
        auto const paths = Json::parse(edit({"--paths", "--json"}).output)["paths"];
        EXPECT_GT(paths.size(), 50u) << name;
        for (auto const& row : paths)
            if (row["value"].get<std::string>().size() < 1000) // a command line has its limits
                arguments.insert(arguments.end(), {"--set", row["path"].get<std::string>() + "=" +
                                                                row["value"].get<std::string>()});
        auto const run = edit(arguments);
        ASSERT_EQ(run.status, 0) << name << run.errors;
        auto const changes = Json::parse(run.output)["changes"];
        for (auto const& change : changes)
            EXPECT_EQ(change["old"], change["new"]) << name << change; // a string loses its end at most
    }
}

TEST_F(Edit, TakesPathsAsPeopleWriteThem) {
    struct Case {
        const char* edit;
        const char* path; // as the report has it
        const char* value;
    };
    Case const cases[] = {
        {"materialpackage/NAME=x", "MaterialPackage/Name", "x"},
        {"MaterialPackage/PackageName=x", "MaterialPackage/Name", "x"},
        {"MaterialPackage/Track[2]/TrackName=x", "MaterialPackage/Track[2]/TrackName", "x"},
        {"MaterialPackage/Tracks[2]/TrackName=x", "MaterialPackage/Track[2]/TrackName", "x"},
        {"TimelineTrack[2]/TrackName=x", "MaterialPackage/Track[2]/TrackName", "x"},
        {"MaterialPackage/Timecode/StartTimecode=90000",
         "MaterialPackage/Track[1]/Sequence/TimecodeComponent/StartTimecode", "90000"},
        {"Identification[last]/CompanyName=x", "Identification/CompanyName", "x"},
        {"Preface/OperationalPattern=OP1b, internal essence, stream, multi-track",
         "Preface/OperationalPattern", "urn:smpte:ul:060e2b34.04010101.0d010201.01020900"},
        {"MaterialPackage/PackageCreationDate=2026-03-01T12:30:00Z", "MaterialPackage/PackageCreationDate",
         "2026-03-01T12:30:00.000Z"},
    };
    for (auto const& row : cases) {
        auto const run = edit({"--no-history", "--json", "--set", row.edit});
        ASSERT_EQ(run.status, 0) << row.edit << run.errors;
        auto const changes = Json::parse(run.output)["changes"];
        ASSERT_EQ(changes.size(), 1u) << row.edit << changes;
        EXPECT_EQ(changes[0]["path"], row.path);
        EXPECT_EQ(changes[0]["new"], row.value);
    }
    auto const all = edit({"--no-history", "--json", "--set", "MaterialPackage/Track[*]/TrackName=x"});
    EXPECT_GE(Json::parse(all.output)["changes"].size(), 2u) << all.errors;
    EXPECT_TRUE(isUntouched());
}

TEST_F(Edit, RefusesWhatItCannotDoAndSaysWhy) {
    struct Case {
        std::vector<std::string> arguments;
        const char* message;
    };
    Case const cases[] = {
        {{"--set", "MaterialPackage/Nmae=x"}, "did you mean Name"},
        {{"--set", "MaterialPakage/Name=x"}, "did you mean MaterialPackage?"},
        {{"--set", "Track/TrackName=x"}, "may be one of MaterialPackage/Track[1], MaterialPackage/Track[2]"},
        {{"--set", "Track[99]/TrackName=x"}, "there is no Track[99]"},
        {{"--set", "Track[0]/TrackName=x"}, "a number from 1"},
        {{"--set", "MaterialPackage//Name=x"}, "a name is wanted"},
        {{"--set", "MaterialPackage/Tracks=x"}, "refers to other sets"},
        {{"--set", "MaterialPackage/Track[2]/EditRate=25p"}, "a rational such as"},
        {{"--set", "MaterialPackage/Track[2]/TrackID=-1"}, "from 0 to 4294967295"},
        {{"--set", "Preface/OperationalPattern=OP1a"}, "may be one of 8 labels"},
        {{"--set", "MaterialPackage/InstanceUID=urn:uuid:074b063b-5931-5a81-8956-8cc43c0e9778"},
         "cannot be changed"},
        {{"--unset", "Preface/OperationalPattern"}, "is required"},
        {{"--set", "no equals sign"}, "is not PATH=VALUE"},
        {{"--in-place"}, "nothing to do"},
        {{"--set", "MaterialPackage/Name=x", "-o", file_}, ""},
        {{"--restore"}, "no undo record"},
    };
    for (auto const& row : cases) {
        auto const run = edit(row.arguments);
        EXPECT_EQ(run.status, 2) << row.message << run.errors;
        EXPECT_NE(run.errors.find(row.message), std::string::npos) << run.errors;
    }
    EXPECT_TRUE(isUntouched());
}

TEST_F(Edit, WritesInPlaceWhatInfoAndDiffShow) {
    auto const before = folder_.file("before.mxf");
    writeFile(before, original_);
    ASSERT_EQ(edit({"--in-place", "--set", "MaterialPackage/Name=Evening news"}).status, 0);
    EXPECT_EQ(readFile(file_).size(), original_.size());
    EXPECT_NE(runZelm({"info", file_}).output.find("Material package \"Evening news\""), std::string::npos);
    EXPECT_NE(runZelm({"info", file_}).output.find("MXF::Zelm zelm"), std::string::npos);
    EXPECT_EQ(runZelm({"partitions", file_}).status, 0);

    auto const report = Json::parse(runZelm({"diff", "--json", "--essence-bytes", before, file_}).output);
    std::size_t counted = 0;
    for (auto const& difference : report["differences"])
        if (difference["counted"].get<bool>()) {
            ++counted;
            EXPECT_EQ(difference["path"], "MaterialPackage/Name");
            EXPECT_EQ(difference["b"], "Evening news");
        }
    EXPECT_EQ(counted, 1u) << report.dump(1);
}

TEST_F(Edit, WritesANewFileWhereTheValueDoesNotFit) {
    auto const output = folder_.file("out.mxf");
    std::string const name(20000, 'n');
    auto const refused = edit({"--in-place", "--set", "MaterialPackage/Name=" + name});
    EXPECT_EQ(refused.status, 2) << refused.errors;
    ASSERT_EQ(edit({"-o", output, "--no-history", "--set", "MaterialPackage/Name=" + name}).status, 0);
    EXPECT_TRUE(isUntouched());
    EXPECT_EQ(value("MaterialPackage/Name", output), name);
    EXPECT_EQ(runZelm({"partitions", output}).status, 0);
    auto const report = Json::parse(runZelm({"diff", "--json", "--essence-bytes", file_, output}).output);
    for (auto const& difference : report["differences"])
        EXPECT_TRUE(difference["path"] == "MaterialPackage/Name" || difference["area"] == "layout")
            << difference;

    EXPECT_EQ(edit({"-o", output, "--set", "MaterialPackage/Name=x"}).status, 2) << "it exists";
    EXPECT_EQ(edit({"-o", output, "--force", "--unset", "MaterialPackage/Name"}).status, 0);
    EXPECT_EQ(value("MaterialPackage/Name", output), nullptr);
}

TEST_F(Edit, RefusesAFileWithAnUndoRecordUntilThatIsEnded) {
    auto damaged = original_;
    damaged[100] ^= 0xFF;
    for (auto const* const option : {"--restore", "--discard-undo"}) {
        writeFile(file_, damaged);
        MXFIO::UndoRecord(file_, original_.size(), {{100, {original_[100]}}}).write();
        auto const refused = edit({"--in-place", "--set", "MaterialPackage/Name=x"});
        EXPECT_EQ(refused.status, 2);
        EXPECT_NE(refused.errors.find("--restore"), std::string::npos) << refused.errors;
        EXPECT_EQ(readFile(file_), damaged);
        EXPECT_EQ(edit({option}).status, 0);
        EXPECT_EQ(isUntouched(), std::string(option) == "--restore");
        EXPECT_FALSE(MXFIO::UndoRecord::exists(file_));
    }
}

} // namespace

} // namespace MXF::Zelm::Test
