// zelm extract: names, ranges, files that are there already, files that are damaged.
// tests/peers/compare-extract holds what it writes against another program.
#include "SmallFile.h"
#include "support/EssenceBody.h"
#include "support/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

/// The small file has three edit units of these bytes and no metadata that could be read.
constexpr std::size_t unitBytes[] = {300, 200, 100};

/// A file, and a folder for what comes out of it.
class Extracted {
public:
    explicit Extracted(Bytes const& bytes) : file_(folder_.file("clip.mxf")) { writeFile(file_, bytes); }
    explicit Extracted(fs::path const& sample) : file_(sample.string()) {}

    ProgramRun run(std::vector<std::string> options = {}) {
        options.insert(options.begin(), {"extract", file_, "-o", out()});
        return runZelm(options);
    }

    Json report(std::vector<std::string> options = {}) {
        options.push_back("--json");
        return Json::parse(run(options).output);
    }

    std::string out() const { return folder_.file("out"); }
    std::string out(std::string const& name) const { return out() + "/" + name; }

    std::vector<std::string> names() const {
        std::vector<std::string> found;
        if (fs::exists(out()))
            for (auto const& entry : fs::directory_iterator(out()))
                found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }

private:
    TemporaryFolder folder_;
    std::string file_;
};

using Names = std::vector<std::string>;

fs::path sample(std::string const& name) { return sampleFiles().front().parent_path() / name; }

TEST(Extract, TakesEditUnitsOfAFileWithoutMetadata) {
    Extracted all(SmallFile().bytes);
    EXPECT_EQ(all.run().status, 0);
    EXPECT_EQ(all.names(), Names{"clip_v1.m2v"});
    EXPECT_EQ(readFile(all.out("clip_v1.m2v")), repeated(600, 0x55));

    struct {
        const char* range;
        std::size_t first, count;
    } const ranges[] = {{"0:1", 0, 1}, {"1:3", 1, 2},  {"2:", 2, 1},
                        {":2", 0, 2},  {"1:99", 1, 2}, {"-7:1", 0, 1}};
    for (auto const& [range, first, count] : ranges) {
        auto const track = all.report({"--force", "--range", range})["tracks"][0];
        EXPECT_EQ(track["first_edit_unit"], first) << range;
        EXPECT_EQ(track["edit_units"], count) << range;
        std::size_t bytes = 0;
        for (std::size_t i = first; i < first + count; ++i)
            bytes += unitBytes[i];
        EXPECT_EQ(readFile(all.out("clip_v1.m2v")).size(), bytes) << range;
    }
    for (auto const* const range :
         {"5", "x:y", "3:2", "10:00:00:00", "10:00:00:00-10:00:01:00", "1-2", "3:4"})
        EXPECT_EQ(all.run({"--force", "--range", range}).status, 2) << range;
    EXPECT_EQ(readFile(all.out("clip_v1.m2v")).size(), unitBytes[0]); // of the last run that was right
}

TEST(Extract, TakesLargeElementsInPieces) {
    Bytes large(std::size_t{5} << 20);
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<unsigned char>(i * i >> 7);
    Bytes const body = klv(elementKey(pictureTrack), large) + klv(elementKey(pictureTrack), Bytes{1, 2, 3}) +
                       klv(elementKey(pictureTrack), large);
    Part header, content, footer;
    content.kind = PartitionPack::Body;
    content.bodySID = 1;
    content.body = body;
    footer.kind = PartitionPack::Footer;
    Extracted extracted(makeFile({header, content, footer}).bytes);
    EXPECT_EQ(extracted.run().status, 0);
    Bytes const expected = large + Bytes{1, 2, 3} + large;
    EXPECT_TRUE(readFile(extracted.out("clip_v1.m2v")) == expected); // too much to be printed
}

TEST(Extract, TakesTheTracksThatAreChosen) {
    Extracted small(SmallFile().bytes);
    for (auto const* const choice : {"v1", "v", "15010500"})
        EXPECT_EQ(small.report({"--force", "--track", choice})["tracks"].size(), 1u) << choice;
    for (auto const* const choice : {"a1", "v2", "15010501", "1", "g", "", "../v1"}) {
        EXPECT_EQ(small.run({"--force", "--track", choice}).status, 2) << choice;
    }
    EXPECT_EQ(small.run({"--list"}).output.find(".part"), std::string::npos);

    auto const streamed = runZelm({"extract", "-o", "-", "--range", "2:3", sample("none").string()});
    EXPECT_EQ(streamed.status, 4);
    FileOnDisk const file(SmallFile().bytes);
    EXPECT_EQ(runZelm({"extract", "-o", "-", "--range", "2:3", file.name()}).output, std::string(100, 'U'));
    EXPECT_EQ(runZelm({"extract", "-o", "-", "--md5", file.name()}).status, 2);
    EXPECT_EQ(runZelm({"extract", file.name()}).status, 2);
}

TEST(Extract, NeverReplacesAFileUnasked) {
    for (auto const* const name : {"clip_v1.m2v", "clip_v1.m2v.part"}) {
        Extracted taken(SmallFile().bytes);
        fs::create_directory(taken.out());
        writeFile(taken.out(name), Bytes{1, 2, 3});
        auto const refused = taken.run();
        EXPECT_EQ(refused.status, 2);
        EXPECT_NE(refused.errors.find(name), std::string::npos) << refused.errors;
        EXPECT_EQ(taken.names(), Names{name});
        EXPECT_EQ(readFile(taken.out(name)), (Bytes{1, 2, 3}));
        EXPECT_EQ(taken.run({"--list"}).status, 0);
        EXPECT_EQ(taken.run({"--force"}).status, 0);
        EXPECT_EQ(taken.names(), Names{"clip_v1.m2v"});
        EXPECT_EQ(readFile(taken.out("clip_v1.m2v")).size(), 600u);
    }
    Extracted nowhere(SmallFile().bytes);
    writeFile(nowhere.out(), Bytes{1}); // no folder
    EXPECT_EQ(nowhere.run().status, 4);
}

TEST(Extract, GivesWhatIsWholeOfAFileThatEndsEarly) {
    SmallFile const file;
    constexpr std::size_t head = 20;
    struct {
        std::size_t size, bytes;
    } const cases[] = {{file.essence1 + head + 300 + 50, 300}, // amid the second element
                       {file.essence1 + 2 * head + 500, 500},  // behind it
                       {file.body2 + 20, 500},                 // amid the pack of the next partition
                       {file.footer - 1, 500}};                // amid the third
    for (auto const& [size, bytes] : cases) {
        Extracted cut(Bytes(file.bytes.begin(), file.bytes.begin() + static_cast<long>(size)));
        auto const run = cut.run();
        EXPECT_EQ(run.status, 1) << size << run.errors;
        EXPECT_NE(run.errors.find("ends early"), std::string::npos) << run.errors;
        EXPECT_EQ(readFile(cut.out("clip_v1.m2v")), repeated(bytes, 0x55)) << size;
    }
}

TEST(Extract, NamesWhatIsNotWhole) {
    SmallFile file;
    file.bytes[file.body2 + 124] = 0x77; // no key any more
    Extracted damaged(file.bytes);
    auto const run = damaged.run();
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.errors.find("clip_v1.m2v.part: is not whole"), std::string::npos) << run.errors;
    EXPECT_EQ(damaged.names(), Names{"clip_v1.m2v.part"});
    EXPECT_EQ(readFile(damaged.out("clip_v1.m2v.part")), repeated(300, 0x55));
    Extracted none(Bytes(100));
    EXPECT_EQ(none.run().status, 3);
    EXPECT_TRUE(none.names().empty());
}

TEST(Extract, NamesFilesAfterWhatTheyHold) {
    if (sampleFiles().empty())
        GTEST_SKIP() << "no sample files";
    struct {
        const char* stem;
        Names names;
    } const cases[] = {{"jpeg2000-op1a-final-footer", {"_v1_00000000.j2c"}},
                       {"iab-generic-streams", {"_a1.iab", "_g2.xml", "_g3.xml"}},
                       {"timed-text", {"_d1.xml"}},
                       {"vc3-opatom-indirect-values", {"_v1.vc3"}},
                       {"d10-open-incomplete-header", {"_v1.h264"}},
                       {"class14-private-metadata", {"_d1.bin"}},
                       {"dms-text-no-essence", {}}};
    for (auto const& [stem, suffixes] : cases) {
        Extracted extracted(sample(stem + std::string(".mxf")));
        EXPECT_EQ(extracted.run().status, 0);
        Names expected;
        for (auto const& suffix : suffixes)
            expected.push_back(stem + suffix);
        EXPECT_EQ(extracted.names(), expected);
    }
    Extracted frames(sample("aces-picture-frame-wrapped.mxf"));
    EXPECT_EQ(frames.run({"--range", "2:"}).status, 0);
    EXPECT_EQ(frames.names(), (Names{"aces-picture-frame-wrapped_v1_00000002.exr",
                                     "aces-picture-frame-wrapped_v1_00000003.exr"}));
    EXPECT_EQ(frames.run({"--range", "2:"}).status, 2);
}

TEST(Extract, GivesWaveFilesTheTimecode) {
    if (sampleFiles().empty())
        GTEST_SKIP() << "no sample files";
    Extracted sound(sample("d10-imx50-op1a.mxf"));
    constexpr std::size_t reference = 48 + 8 + 338, formatAt = 48 + 8 + 602;
    for (std::uint32_t const unit : {0u, 1u}) {
        EXPECT_EQ(
            sound.run({"--force", "--track", "3", "--range", unit == 0 ? "23:58:30:00-" : "23:58:30:01-"})
                .status,
            0);
        auto const wave = readFile(sound.out("d10-imx50-op1a_a1.wav"));
        ASSERT_EQ(wave.size(), formatAt + 48 + 8 + (2 - unit) * 23040);
        std::uint32_t samples = 0;
        for (int i = 3; i >= 0; --i)
            samples = samples << 8 | wave[reference + static_cast<std::size_t>(i)];
        EXPECT_EQ(samples, 86310u * 48000u + unit * 1920u);
        EXPECT_EQ(wave[formatAt + 10], 4); // channels
    }
    EXPECT_EQ(sound.run({"--force", "--range", "23:58:30;00-"}).status, 2); // it drops no frames
}

} // namespace

} // namespace MXF::Zelm::Test
