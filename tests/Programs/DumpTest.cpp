// zelm dump and zelm info on whole and on damaged files.
#include "Programs/SmallFile.h"
#include "support/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

/// The bytes of a sample file; none when the samples are not there.
Bytes sample(const char* name) {
    auto const file = std::filesystem::path(MXFZELM_SAMPLES_DIR) / name;
    return std::filesystem::exists(file) ? readFile(file.string()) : Bytes();
}

TEST(Dump, ShowsTheChosenPartitionAndRefusesOneThatIsNotThere) {
    FileOnDisk const file(SmallFile().bytes);
    auto const header = Json::parse(runZelm({"dump", "--json", file.name()}).output);
    EXPECT_EQ(header["partition"]["kind"], "header partition");
    EXPECT_EQ(header["sets"].size(), 1u);
    EXPECT_EQ(header, Json::parse(runZelm({"dump", "--json", "--partition", "0", file.name()}).output));
    EXPECT_NE(runZelm({"dump", "--partition", "footer", file.name()}).output.find(": none"),
              std::string::npos);
    for (auto const* const none : {"4", "x", "-1"})
        EXPECT_EQ(runZelm({"dump", "--partition=" + std::string(none), file.name()}).status, 2) << none;
}

TEST(Dump, DecodesPropertiesAndNestsSets) {
    auto const bytes = sample("pcm-null-terminated-strings.mxf");
    if (bytes.empty())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    FileOnDisk const file(bytes);
    auto const report = Json::parse(runZelm({"dump", "--json", file.name()}).output);
    auto const& preface = report["sets"][0];
    EXPECT_EQ(preface["class"], "Preface");
    for (auto const& property : preface["properties"]) {
        if (property["name"] == "OperationalPattern") {
            EXPECT_EQ(property["value_name"], "OP1a, internal essence, stream, uni-track");
        }
        if (property["name"] == "FormatVersion") {
            EXPECT_EQ(property["value"], "1.3");
        }
        // Tag, length and value stand where the report says.
        auto const at = property["offset"].get<std::size_t>();
        EXPECT_EQ(bytes[at + 2] * 256u + bytes[at + 3] + 4u, property["length"].get<std::size_t>());
    }
    auto const tree = runZelm({"dump", file.name()}).output;
    EXPECT_NE(tree.find("\nPreface at "), std::string::npos);
    EXPECT_NE(tree.find("\n    ContentStorage at "), std::string::npos);
}

TEST(Dump, ShowsFrameworksAsPeopleReadThem) {
    auto const bytes = sample("dms-text-no-essence.mxf");
    if (bytes.empty())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    FileOnDisk const file(bytes), none(SmallFile().bytes);
    auto const text = runZelm({"dump", "--frameworks", file.name()}).output;
    for (auto const* const line :
         {"Material package \"RP2057 Example\", track 9001\n", "\n  Text Based Framework, at all times\n",
          "\n      UTF8Text Data\n        <?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
    auto const report = Json::parse(runZelm({"dump", "--frameworks", "--json", file.name()}).output);
    auto const& object = report["frameworks"][0]["framework"]["properties"]["TextBasedObject"][0];
    EXPECT_EQ(object["properties"]["TextBasedMetadataPayloadSchemeID"]["name"], "DM_XML_Document");
    EXPECT_EQ(runZelm({"dump", "--frameworks", none.name()}).output, "There is no descriptive metadata.\n");
}

TEST(Dump, TakesDefinitionsFromAFileAndNamesTheLineThatIsWrong) {
    TemporaryFolder const folder;
    auto const file = folder.file("small.mxf");
    writeFile(file, SmallFile().bytes);
    auto const dictionary = folder.file("private.zdict");
    std::string const text = "zelm-dictionary 1\nclass nonsense\n";
    writeFile(dictionary, Bytes(text.begin(), text.end()));
    auto const run = runZelm({"dump", "--dictionary", dictionary, file});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.errors.find("private.zdict:2: "), std::string::npos) << run.errors;
}

TEST(Info, ShowsWhatIsLeftOfACutFileAndSaysSo) {
    auto bytes = sample("d10-imx50-op1a.mxf");
    if (bytes.empty())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    bytes.resize(200000);
    FileOnDisk const file(bytes);
    auto const run = runZelm({"info", "--json", file.name()});
    EXPECT_EQ(run.status, 0) << run.errors;
    auto const info = Json::parse(run.output)["files"][0];
    EXPECT_EQ(info["complete"], false);
    EXPECT_EQ(info["duration"], 2);
    EXPECT_EQ(info["start_timecode"]["text"], "23:58:30:00");
    EXPECT_NE(info["odd"][0].get<std::string>().find("cut off"), std::string::npos);

    bytes.resize(3000); // amid the sets
    FileOnDisk const shorter(bytes);
    auto const rest = runZelm({"info", shorter.name()});
    EXPECT_EQ(rest.status, 3);
    EXPECT_NE(rest.output.find("Material package"), std::string::npos);
    EXPECT_NE(rest.errors.find(" at 0x"), std::string::npos) << rest.errors;
}

TEST(Info, GoesOnAfterAFileThatCannotBeRead) {
    FileOnDisk const file(SmallFile().bytes), junk(Bytes(100000, 'x'));
    auto const run = runZelm({"info", "--json", "no-such-file.mxf", junk.name(), file.name()});
    EXPECT_EQ(run.status, 4);
    auto const files = Json::parse(run.output)["files"];
    ASSERT_EQ(files.size(), 3u);
    EXPECT_TRUE(files[0].contains("fault") && files[1].contains("fault") && !files[2].contains("fault"));
    EXPECT_EQ(runZelm({"info", junk.name()}).status, 3);
    EXPECT_EQ(runZelm({"info"}).status, 2);
    EXPECT_EQ(runZelm({"help", "info"}).status, 0);
}

TEST(Help, FitsATerminal) {
    for (auto const* const command : {"wrap", "rewrap", "ancillary"}) {
        std::istringstream help(runZelm({"help", command}).output);
        for (std::string line; std::getline(help, line);) {
            EXPECT_TRUE(line.size() <= 110 || line.find("  --") == 0) << line; // an option's own words
            EXPECT_EQ(line.find(" in ["), std::string::npos) << line;          // a check's own words
        }
    }
}

} // namespace

} // namespace MXF::Zelm::Test
