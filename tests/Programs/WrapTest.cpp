// zelm wrap: names, refusals, what --verify finds, standard output, interruption by a sink that fails.
// tests/peers/compare-wrap holds the files against other programs.
#include "support/DVStream.h"
#include "support/Files.h"
#include "support/MPEGStream.h"
#include "support/Program.h"
#include "support/WaveBytes.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

constexpr std::size_t frames = 9;
constexpr std::size_t samplesOfFrame = 1920;

constexpr unsigned char groupCode[] = {0, 0, 1, 0xB8};

Bytes video() {
    return concatenated(mpegUnits({"SCI0", "P3", "B1", "B2", "SCI0", "P3", "B1", "B2", "P4"})) +
           hex("00 00 01 B7");
}

Bytes wave(std::uint16_t channels, std::size_t instants) {
    Bytes samples(instants * channels * 2);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<unsigned char>(i * 7 + i / 251);
    return riff("RIFF", waveFormat(channels, 48000, 16) + chunk("data", samples));
}

/// A folder with a video of nine frames and a sound of two channels, which is half a frame longer.
class Wrapped {
public:
    Wrapped() {
        writeFile(file("clip.m2v"), video());
        writeFile(file("clip.wav"), wave(2, frames * samplesOfFrame + samplesOfFrame / 2));
    }

    std::string file(std::string const& name) const { return folder_.file(name); }

    ProgramRun run(std::vector<std::string> inputs, std::vector<std::string> const& options = {},
                   std::string const& output = "out.mxf") const {
        std::vector<std::string> arguments{"wrap"};
        for (auto const& input : inputs)
            arguments.push_back(input == "," ? input : file(input));
        arguments.insert(arguments.end(), {"-o", output == "-" ? output : file(output)});
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runZelm(arguments);
    }

    /// The report on the first file.
    Json report(std::vector<std::string> const& inputs, std::vector<std::string> options = {}) const {
        options.insert(options.end(), {"--json", "--verify", "--force"});
        auto const done = run(inputs, options);
        EXPECT_EQ(done.status, 0) << done.errors;
        return Json::parse(done.output)["files"][0];
    }

    std::vector<std::string> outputs() const {
        std::vector<std::string> found;
        for (auto const& entry : fs::directory_iterator(fs::path(file("x")).parent_path()))
            if (entry.path().filename().string().find(".mxf") != std::string::npos)
                found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }

private:
    TemporaryFolder folder_;
};

using Names = std::vector<std::string>;

TEST(Wrap, EndsSoundWithThePictures) {
    Wrapped const folder;
    writeFile(folder.file("short.wav"), wave(1, 3 * samplesOfFrame + 5));
    auto const report = folder.report({"clip.m2v", "clip.wav", "short.wav"}, {"--md5"});
    ASSERT_EQ(report["tracks"].size(), 3u);
    for (auto const& track : report["tracks"])
        EXPECT_EQ(track["edit_units"], frames) << track;
    EXPECT_EQ(report["tracks"][0]["bytes"], video().size());
    EXPECT_EQ(report["tracks"][1]["bytes"], frames * samplesOfFrame * 4);
    EXPECT_EQ(report["tracks"][2]["bytes"], frames * samplesOfFrame * 2);
    EXPECT_EQ(report["verified"], true);
    ASSERT_EQ(report["notes"].size(), 2u) << report["notes"];
    EXPECT_NE(std::string(report["notes"][0]).find("longer"), std::string::npos);
    EXPECT_NE(std::string(report["notes"][1]).find("silence was added, 0.24 s"), std::string::npos);
    auto const clips =
        folder.report({"clip.m2v", "clip.wav", "short.wav"}, {"--pattern", "op1b", "--clip"})["tracks"];
    EXPECT_EQ(clips[1]["bytes"], frames * samplesOfFrame * 4);
    EXPECT_EQ(clips[2]["bytes"], frames * samplesOfFrame * 2);
    writeFile(folder.file("short.wav"), wave(1, frames * samplesOfFrame - 72));
    auto const almost = folder.run({"clip.m2v", "short.wav"}, {"--force"}).errors;
    EXPECT_NE(almost.find("silence was added, 1.50 ms"), std::string::npos) << almost;
}

/// The pictures that the first one shown needs stand before it, and count in descriptors.
TEST(Wrap, PartsOfItAreNotOdd) {
    Wrapped const folder;
    ASSERT_EQ(folder.run({"clip.m2v", "clip.wav"}).status, 0);
    auto const part = folder.file("part.mxf");
    ASSERT_EQ(runZelm({"rewrap", folder.file("out.mxf"), "--range", "6:8", "-o", part}).status, 0);
    auto const info = Json::parse(runZelm({"info", "--json", part}).output)["files"][0];
    EXPECT_EQ(info["odd"], Json::array());

    // Sound that is cut in edit units is played by them, and not by samples.
    ASSERT_EQ(folder.run({"clip.wav"}, {"--clip", "--force"}).status, 0);
    ASSERT_EQ(
        runZelm({"rewrap", folder.file("out.mxf"), "--frame", "--rate", "25", "-o", part, "--force"}).status,
        0);
    auto const cut = Json::parse(runZelm({"info", "--json", part}).output)["files"][0];
    EXPECT_EQ(cut["odd"], Json::array());
    auto const& played = cut["packages"][0]["tracks"][1];
    EXPECT_EQ(played["edit_rate"], "25/1");
    EXPECT_EQ(played["duration"], frames + 1);
}

TEST(Wrap, WritesEachPatternAndIndexPlaceSoThatItReadsBack) {
    Wrapped const folder;
    std::vector<std::string> const both{"clip.m2v", "clip.wav"};
    struct {
        std::vector<std::string> inputs, options;
        std::size_t tracks;
    } const cases[] = {
        {both, {"--channels", "1", "--kag", "512", "--index", "body", "--partition-every", "4"}, 3},
        {both, {"--index", "own", "--partition-every", "0.1s", "--system-item"}, 2},
        {both, {"--pattern", "op1b"}, 2},
        {{"clip.m2v", ",", "clip.m2v"}, {"--pattern", "op2a"}, 2},
        {{"clip.m2v", "clip.wav", ",", "clip.m2v", "clip.wav"}, {"--pattern", "op2b"}, 4},
        {{"clip.m2v", "clip.wav", ",", "clip.m2v", "clip.wav"},
         {"--pattern", "op3a", "--play", "2:5", "--play", "0:4"},
         4},
        {{"clip.m2v", ",", "clip.m2v"}, {"--pattern", "op1c"}, 2},
        {{"clip.wav"}, {"--clip"}, 1},
        {{"clip.m2v"}, {"--clip"}, 1},
        {both, {"--clip", "--pattern", "op1b"}, 2},
        {both, {"--repeat-header", "--partition-every", "4"}, 2},
        {{"clip.wav"}, {"--index", "header"}, 1},
        {{"clip.m2v"}, {"--pcm", "16,1,48000", "--reserve", "100"}, 1},
    };
    for (auto const& [inputs, options, tracks] : cases) {
        auto const report = folder.report(inputs, options);
        EXPECT_EQ(report["tracks"].size(), tracks) << options[1];
        EXPECT_EQ(report["verified"], true) << options[1];
        auto const index = runZelm({"index", folder.file("out.mxf")});
        EXPECT_EQ(index.status, 0) << index.output << index.errors;
        auto const packs = Json::parse(runZelm({"partitions", "--json", folder.file("out.mxf")}).output);
        bool const hasOutgrownItsPlace = options.back() == "100";
        EXPECT_EQ(packs["partitions"][0]["status"],
                  hasOutgrownItsPlace ? "open incomplete" : "closed complete")
            << packs;
        EXPECT_EQ(report["notes"].dump().find("header") != std::string::npos, hasOutgrownItsPlace)
            << report["notes"];
    }
}

/// Of a picture, with one of its own before that of a sound; the option before both.
TEST(Wrap, TimecodeBeginsAsTheEssenceTells) {
    Wrapped const folder;
    auto timed = video();
    auto const group = std::search(timed.begin(), timed.end(), std::begin(groupCode), std::end(groupCode));
    timed[static_cast<std::size_t>(group - timed.begin()) + 4] = 10 << 2; // hours
    writeFile(folder.file("timed.m2v"), timed);
    Bytes extension(602);
    extension[338 + 2] = 0x20; // time reference: 43 s and 17 frames
    writeFile(folder.file("timed.wav"), riff("RIFF", chunk("bext", extension) + waveFormat(1, 48000, 16) +
                                                         chunk("data", Bytes(2 * frames * samplesOfFrame))));
    writeFile(folder.file("timed.dv"), dvFrame({}, 5) + dvFrame({}, 6));
    std::vector<std::string> const option{"--start-timecode", "01:02:03:04", "--system-item"};
    struct {
        std::vector<std::string> inputs, options;
        const char* start;
        Json from;
    } const cases[] = {
        {{"clip.m2v", "clip.wav"}, {}, "00:00:00:00", nullptr},
        {{"timed.wav", "timed.m2v"}, {"--system-item"}, "10:00:00:00", folder.file("timed.m2v")},
        {{"clip.m2v", "timed.wav"}, {"--pattern", "op1b"}, "00:00:43:17", folder.file("timed.wav")},
        {{"clip.m2v", "timed.wav"}, {"--preset", "atom"}, "00:00:43:17", folder.file("timed.wav")},
        {{"timed.m2v"}, option, "01:02:03:04", "--start-timecode"},
        {{"timed.dv"}, {"--clip"}, "10:20:30:05", folder.file("timed.dv")},
    };
    for (auto const& [inputs, options, start, from] : cases) {
        auto const report = folder.report(inputs, options);
        EXPECT_EQ(report["start_timecode"], start);
        EXPECT_EQ(report["timecode_from"], from);
        auto const info = Json::parse(runZelm({"info", "--json", report["file"]}).output)["files"][0];
        EXPECT_EQ(info["start_timecode"]["text"], start);
        for (auto const& package : info["packages"])
            for (auto const& track : package["tracks"])
                if (package["kind"] == "file" && !track["start_timecode"].is_null()) {
                    EXPECT_EQ(track["start_timecode"]["text"], start) << track;
                }
    }
    ASSERT_EQ(folder.run({"timed.m2v"}, {}, "timed.mxf").status, 0);
    EXPECT_EQ(folder.report({"timed.mxf"})["start_timecode"], "10:00:00:00");
}

TEST(Wrap, TellsWhatIsAmiss) {
    Wrapped const folder;
    writeFile(folder.file("torn.dv"), dvFrame({}) + dvFrame({}) + Bytes(dvFrame({}).size()));
    auto const done = folder.run({"clip.wav", "torn.dv"});
    EXPECT_EQ(done.status, 3);
    EXPECT_NE(done.errors.find("torn.dv: Frame 2"), std::string::npos) << done.errors;
    EXPECT_NE(done.errors.find("out.mxf.part: is not whole"), std::string::npos) << done.errors;
    auto const open = folder.run({"clip.m2v"}, {"--reserve", "0", "--force"});
    EXPECT_NE(open.errors.find("header partition stays open"), std::string::npos) << open.errors;
    // An instant that is torn off belongs to no track.
    writeFile(folder.file("torn.wav"), riff("RIFF", waveFormat(3, 48000, 16) + chunk("data", Bytes(30004))));
    EXPECT_EQ(folder.report({"torn.wav"}, {"--preset", "atom"})["notes"], Json::array());
}

TEST(Wrap, TakesDataAndLongWaveFiles) {
    Wrapped const folder;
    auto const samples = repeated(2 * samplesOfFrame * 2, 0x11);
    auto const sizes = little(std::uint64_t{samples.size() + 72}) + little(std::uint64_t{samples.size()}) +
                       little(std::uint64_t{0}) + little(std::uint32_t{0});
    writeFile(folder.file("long.wav"), riff("RF64", chunk("ds64", sizes) + waveFormat(1, 48000, 16) +
                                                        ascii("data") + hex("FF FF FF FF") + samples));
    auto const sound = folder.report({"long.wav"}, {"--md5"});
    EXPECT_EQ(sound["tracks"][0]["bytes"], samples.size());
    for (auto const* const name : {"1.bin", "2.bin", "3.bin"})
        writeFile(folder.file(name), ascii(name));
    auto const data = folder.report({"1.bin", "2.bin", "3.bin"}, {"--as", "data", "--rate", "50"});
    ASSERT_EQ(data["tracks"].size(), 1u);
    EXPECT_EQ(data["tracks"][0]["edit_units"], 3);
    EXPECT_EQ(data["tracks"][0]["bytes"], 15);

    // One that was cut off, of more than 32 bits of samples: the sound beside it ends when it does.
    auto const claimed = std::uint64_t{1} << 33;
    auto const claims =
        little(claimed + 72) + little(claimed) + little(std::uint64_t{0}) + little(std::uint32_t{0});
    writeFile(folder.file("cut.wav"),
              riff("RF64", chunk("ds64", claims) + waveFormat(1, 48000, 16) + ascii("data") +
                               hex("FF FF FF FF") + repeated(20 * samplesOfFrame * 2, 0x11)));
    auto const cut = folder.run({"cut.wav", "clip.wav"}, {"--pattern", "op1b", "--clip", "--force"});
    EXPECT_EQ(cut.status, 1) << cut.errors;
    EXPECT_NE(cut.errors.find("cut.wav: The sound ends after"), std::string::npos) << cut.errors;
    EXPECT_LT(readFile(folder.file("out.mxf")).size(), 1000000u);
}

TEST(Wrap, WritesAFileForEachTrackOfAS02) {
    Wrapped const folder;
    auto const done = folder.run({"clip.m2v", "clip.wav"}, {"--preset", "as02", "--verify"});
    EXPECT_EQ(done.status, 0) << done.errors;
    EXPECT_EQ(folder.outputs(), (Names{"out_a1.mxf", "out_a2.mxf", "out_v1.mxf"}));
    for (auto const& name : folder.outputs()) {
        auto const info = Json::parse(runZelm({"info", "--json", folder.file(name)}).output)["files"][0];
        EXPECT_EQ(info["partitions"]["count"], 4) << "header, body, index, footer of " << name;
    }
}

TEST(Wrap, TellsOfGroupsThatThePresetDoesNotAllow) {
    Wrapped const folder;
    std::vector<std::string> texts{"SCI0"};
    for (unsigned i = 1; i < 16; ++i)
        texts.push_back("P" + std::to_string(i));
    writeFile(folder.file("long.m2v"), concatenated(mpegUnits({texts.begin(), texts.end()})));
    auto const done = folder.run({"long.m2v"}, {"--preset", "rdd9"});
    EXPECT_EQ(done.status, 1);
    EXPECT_NE(done.errors.find("groups of at most 15 pictures, the longest here has 16"), std::string::npos)
        << done.errors;
}

TEST(Wrap, PassesTracksOfOtherFilesOn) {
    Wrapped const folder;
    auto const first = folder.report({"clip.m2v", "clip.wav"}, {"--md5"});
    fs::rename(folder.file("out.mxf"), folder.file("first.mxf"));
    auto const second = folder.report({"first.mxf"}, {"--md5"});
    ASSERT_EQ(second["tracks"].size(), 2u);
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_EQ(second["tracks"][i]["md5"], first["tracks"][i]["md5"]);
}

TEST(Wrap, WritesAFileForEachTrackOfOPAtom) {
    Wrapped const folder;
    auto const done = folder.run({"clip.m2v", "clip.wav"}, {"--preset", "atom", "--verify"});
    EXPECT_EQ(done.status, 0) << done.errors;
    EXPECT_EQ(folder.outputs(), (Names{"out_a1.mxf", "out_a2.mxf", "out_v1.mxf"}));
    std::set<std::string> packages;
    for (auto const& name : folder.outputs()) {
        auto const info = Json::parse(runZelm({"info", "--json", folder.file(name)}).output)["files"][0];
        for (auto const& package : info["packages"])
            if (package["kind"] == "material")
                packages.insert(package["package_uid"]);
        EXPECT_EQ(info["partitions"]["count"], 3) << name;
    }
    EXPECT_EQ(packages.size(), 1u);
}

TEST(Wrap, RefusesAndLeavesNothingBehind) {
    Wrapped const folder;
    writeFile(folder.file("text.txt"), ascii("no essence at all"));
    writeFile(folder.file("intra.m2v"), concatenated(mpegUnits({"SCI0", "SCI0", "SCI0"})));
    auto simple = video();
    simple[16] = 0x15; // simple profile at main level
    writeFile(folder.file("simple.m2v"), simple);
    writeFile(folder.file("slow.wav"), riff("RIFF", waveFormat(1, 32000, 16) + chunk("data", Bytes(6400))));
    auto floating = wave(1, 100);
    floating[20] = 3; // the format's tag
    writeFile(folder.file("float.wav"), floating);
    struct {
        std::vector<std::string> inputs, options;
        const char* text;
    } const cases[] = {
        {{"text.txt"}, {}, "none of the inputs that can be wrapped"},
        {{"clip.m2v", "clip.wav"}, {"--clip"}, "op1b"},
        {{"clip.m2v"}, {"--pattern", "op9z"}, "the patterns are op1a"},
        {{"clip.m2v"}, {"--pattern", "op1b"}, "these inputs make op1a"},
        {{"clip.m2v", ",", "clip.m2v"}, {}, "--pattern says which"},
        {{"clip.m2v", ","}, {"--pattern", "op2a"}, "nothing to wrap"},
        {{"clip.m2v"}, {"--rate", "50"}, "has 25 edit units a second"},
        {{"clip.m2v"}, {"--rate", "fast"}, "is no rate"},
        {{"clip.m2v"}, {"--drop"}, "no numbers are dropped"},
        {{"clip.m2v"}, {"--start-timecode", "25:00:00:00"}, "--start-timecode"},
        {{"clip.m2v"}, {"--partition-every", "x"}, "--partition-every"},
        {{"clip.m2v"}, {"--preset", "rdd9", "--kag", "1"}, "an alignment of 512"},
        {{"clip.m2v", "clip.m2v"}, {"--preset", "rdd9"}, "one picture track"},
        {{"float.wav"}, {}, "float.wav: The samples of the Wave file have format 3"},
        {{"clip.m2v"}, {"--preset", "d10"}, "D-10 pictures"},
        {{"clip.m2v"}, {"--preset", "d10", "--channels", "2"}, "no --channels"},
        {{"clip.m2v"}, {"--map", "L,R"}, "--map: no input has samples"},
        {{"clip.m2v"}, {"--aes3"}, "--aes3: no input has samples"},
        {{"intra.m2v"}, {"--preset", "rdd9"}, "asks for MPEG-2 long GOP"},
        {{"simple.m2v"}, {"--preset", "rdd9"}, "main or 4:2:2 profile"},
        {{"clip.m2v", "slow.wav"}, {"--preset", "rdd9"}, "sound of 16 or 24 bits at 48000 Hz"},
        {{"clip.m2v", "clip.m2v"}, {"--preset", "as02"}, "one picture track"},
        {{"clip.m2v", "clip.m2v"}, {}, "one stream with B pictures"},
        {{"clip.m2v"}, {"--preset", "atom", "--system-item"}, "--system-item"},
        {{"text.txt"}, {"--as", "data", "--clip"}, "is wrapped by edit units alone"},
        {{"clip.wav"}, {"--pcm", "16"}, "--pcm"},
        {{}, {"-"}, "standard input"},
        {{"clip.m2v"}, {"--first", "3"}, "--first"},
        {{"clip.m2v"}, {"--program", "3"}, "--program"},
        {{"clip.m2v"}, {"--pattern", "op3a", "--play", "0:4", "--play", "5:6"}, "more parts than"},
        {{"clip.m2v"}, {"--meta", "MaterialPackage/Nonsense=1"}, "MaterialPackage/Nonsense"},
    };
    for (auto const& [inputs, options, text] : cases) {
        auto const done = folder.run(inputs, options);
        EXPECT_EQ(done.status, 2) << text << ": " << done.errors;
        EXPECT_NE(done.errors.find(text), std::string::npos) << done.errors;
        EXPECT_EQ(folder.outputs(), Names{}) << text;
    }
    EXPECT_EQ(folder.run({"missing.wav"}).status, 4);
}

TEST(Wrap, NeverOverwritesUnlessAsked) {
    Wrapped const folder;
    ASSERT_EQ(folder.run({"clip.m2v"}).status, 0);
    auto const before = readFile(folder.file("out.mxf"));
    EXPECT_EQ(folder.run({"clip.m2v"}).status, 2);
    EXPECT_EQ(folder.run({"out.mxf"}, {"--force"}).status, 2); // its own input
    EXPECT_EQ(readFile(folder.file("out.mxf")), before);
    EXPECT_EQ(folder.run({"clip.m2v"}, {"--force", "--kag", "512"}).status, 0);
    EXPECT_NE(readFile(folder.file("out.mxf")), before);
    writeFile(folder.file("new.mxf.part"), {});
    EXPECT_EQ(folder.run({"clip.m2v"}, {}, "new.mxf").status, 2);
}

TEST(Wrap, WritesToStandardOutput) {
    Wrapped const folder;
    auto const done = folder.run({"clip.m2v", "clip.wav"}, {}, "-");
    ASSERT_EQ(done.status, 0) << done.errors;
    writeFile(folder.file("piped.mxf"), Bytes(done.output.begin(), done.output.end()));
    auto const index = runZelm({"index", folder.file("piped.mxf")});
    EXPECT_EQ(index.status, 0) << index.output << index.errors;
    EXPECT_EQ(folder.run({"clip.m2v"}, {"--json"}, "-").status, 2);
    writeFile(folder.file("short.wav"), wave(1, 700));
    auto const clips = folder.run({"short.wav", "clip.wav"}, {"--clip", "--pattern", "op1b"}, "-");
    ASSERT_EQ(clips.status, 0) << clips.errors;
    writeFile(folder.file("clips.mxf"), Bytes(clips.output.begin(), clips.output.end()));
    auto const extracted =
        Json::parse(runZelm({"extract", folder.file("clips.mxf"), "--list", "--json"}).output);
    EXPECT_EQ(extracted["tracks"].size(), 2u);
    EXPECT_EQ(runZelm({"index", folder.file("clips.mxf")}).status, 0);
}

TEST(Wrap, SetsMetadataAndNamesTracks) {
    Wrapped const folder;
    ASSERT_EQ(folder
                  .run({"clip.m2v", "clip.wav"},
                       {"--meta", "MaterialPackage/Name=Evening", "--track-label", "v1=Programme",
                        "--track-label", "a1=Left", "--start-timecode", "10:00:00:00", "--channels", "1"})
                  .status,
              0);
    auto const dump = runZelm({"dump", folder.file("out.mxf")}).output;
    for (auto const* const text : {"Evening", "Programme", "Left"})
        EXPECT_NE(dump.find(text), std::string::npos) << text;
    auto const info = runZelm({"info", folder.file("out.mxf")}).output;
    EXPECT_NE(info.find("10:00:00:00"), std::string::npos) << info;
}

} // namespace

} // namespace MXF::Zelm::Test
