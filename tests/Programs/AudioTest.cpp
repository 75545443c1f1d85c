// zelm audio, labels and chunks through zelm wrap, and zelm extract --as for sound. tests/peers/compare-audio
// holds samples and levels against other programs.
#include "DataIO/Cuts.h"
#include "support/Files.h"
#include "support/Program.h"
#include "support/WaveBytes.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

constexpr std::size_t instants = 48000;

/// A second of 16 bits: channel n swings to 0x1000 times n + 1.
Bytes samples(std::uint16_t channels) {
    Bytes bytes;
    for (std::size_t i = 0; i < instants; ++i)
        for (unsigned channel = 0; channel < channels; ++channel) {
            int const sample = static_cast<int>(0x1000 * (channel + 1)) * (i % 2 == 0 ? 1 : -1);
            bytes.push_back(static_cast<unsigned char>(sample & 0xFF));
            bytes.push_back(static_cast<unsigned char>(sample >> 8 & 0xFF));
        }
    return bytes;
}

Bytes broadcast() {
    Bytes bytes(602, 0);
    auto const put = [&](std::size_t at, Bytes const& text) {
        std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    };
    put(0, ascii("Scene 12, take 3"));
    put(256, ascii("Recorder"));
    put(320, ascii("2024-11-0818:07:23"));
    put(338, little(std::uint64_t{36000} * 48000 + 24000));
    put(346, little(std::uint16_t{2}));
    put(412, hex("9C F7 F4 01 9C FF 00 00 01 80"));
    return bytes + ascii("A=PCM,F=48000,W=16\r\n");
}

Bytes audioIDs(std::uint16_t tracks) {
    return little(tracks) + little(std::uint16_t{1}) + little(std::uint16_t{1}) + ascii("ATU_00000001") +
           ascii("AT_00010001_01") + ascii("AP_00010002") + hex("00");
}

/// An axml chunk that no property can hold at once.
Bytes const document = ascii("<adm>") + Bytes(70001, 'x') + ascii("</adm>");

Bytes wave(std::uint16_t channels, Bytes const& chunks = {}) {
    return riff("RIFF", waveFormat(channels, 48000, 16) + chunks + chunk("data", samples(channels)) +
                            chunk("axml", document));
}

class Folder {
public:
    std::string file(std::string const& name) const { return folder_.file(name); }

    /// Runs the program with `arguments`, in which "@" stands for the folder.
    std::string run(std::vector<std::string> arguments, int status = 0) const {
        for (auto& argument : arguments)
            if (argument.substr(0, 1) == "@")
                argument = file(argument.substr(1));
        auto const done = runZelm(arguments);
        EXPECT_EQ(done.status, status) << done.output << done.errors;
        return status == 2 ? done.errors : done.output;
    }

    Json audio(std::string const& name, int status = 0, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"audio", "--json", "@" + name});
        return Json::parse(run(options, status))["files"][0];
    }

private:
    TemporaryFolder folder_;
};

/// The content of a chunk; empty when there is none.
Bytes chunkOf(Bytes const& file, std::string const& id) {
    for (std::size_t at = 12; at + 8 <= file.size();) {
        std::size_t const size = file[at + 4] + file[at + 5] * 256u + file[at + 6] * 65536u;
        if (std::equal(id.begin(), id.end(), file.begin() + static_cast<std::ptrdiff_t>(at)))
            return slice(file, at + 8, size);
        at += 8 + size + size % 2;
    }
    return {};
}

TEST(Audio, MeasuresAndSaysWhatDisagrees) {
    Folder const folder;
    writeFile(folder.file("a.wav"), wave(2, chunk("bext", broadcast()) + chunk("chna", audioIDs(3)) +
                                                chunk("iXML", ascii("<TRACK_COUNT>2</TRACK_COUNT>"))));
    auto const file = folder.audio("a.wav", 1);
    EXPECT_EQ(file["bext"]["time_reference"], std::uint64_t{36000} * 48000 + 24000);
    auto const& track = file["tracks"][0];
    EXPECT_EQ(track["samples"], instants);
    EXPECT_EQ(track["channels"][0]["peak_dbfs"], -18.062);
    EXPECT_EQ(track["channels"][1]["rms_dbfs"], -12.041);
    EXPECT_EQ(track["disagreements"].size(), 1u);
    EXPECT_EQ(track["disagreements"][0], "the chna chunk has 3 tracks for 2 channels");
    EXPECT_FALSE(folder.audio("a.wav", 1, {"--no-levels"})["tracks"][0]["channels"][0].contains("peak_dbfs"));

    auto cut = readFile(folder.file("a.wav"));
    cut.resize(cut.size() - document.size() - 100);
    writeFile(folder.file("cut.wav"), cut);
    EXPECT_EQ(folder.audio("cut.wav", 1)["tracks"][0]["disagreements"].size(), 2u);
    folder.run({"audio", "--plot", "@a.svg", "@a.wav"}, 1);
    auto const drawing = readFile(folder.file("a.svg"));
    EXPECT_NE(std::string(drawing.begin(), drawing.end()).find("a1.2"), std::string::npos);
    folder.run({"audio", "--plot", "@a.svg", "@a.wav"}, 2);
}

TEST(Audio, LabelsGoIntoTracks) {
    Folder const folder;
    writeFile(folder.file("a.wav"), wave(8));
    folder.run({"wrap", "@a.wav", "-o", "@grouped.mxf", "--map", "L,R,C,LFE,Ls,Rs;Lt,Rt"});
    auto const grouped = folder.audio("grouped.mxf");
    ASSERT_EQ(grouped["tracks"].size(), 2u);
    EXPECT_EQ(grouped["tracks"][0]["groups"].size(), 1u);
    EXPECT_EQ(grouped["tracks"][0]["groups"][0]["name"], "5.1");
    EXPECT_EQ(grouped["tracks"][0]["channels"][3]["label"], "LFE");
    EXPECT_EQ(grouped["tracks"][1]["channels"][1]["label"], "Rt");
    EXPECT_EQ(grouped["tracks"][1]["channels"][1]["peak_dbfs"], 0.0);

    folder.run(
        {"wrap", "@a.wav", "-o", "@mono.mxf", "--map", "L,R,C,LFE,Ls,Rs;NSC1,NSC12", "--channels", "1"});
    auto const mono = folder.audio("mono.mxf");
    ASSERT_EQ(mono["tracks"].size(), 8u);
    EXPECT_EQ(mono["tracks"][5]["groups"][0]["symbol"], "sg51");
    EXPECT_EQ(mono["tracks"][7]["channels"][0]["label"], "NSC012");

    EXPECT_NE(folder.run({"wrap", "@a.wav", "-o", "@no.mxf", "--map", "L,R,Left"}, 2)
                  .find("\"Left\" is no channel"),
              std::string::npos);
    folder.run({"wrap", "@a.wav", "-o", "@no.mxf", "--map", "L,R,C"}, 2);
}

TEST(Audio, ChunksSurviveATripThroughMXF) {
    Folder const folder;
    auto const kept = chunk("bext", broadcast()) + chunk("chna", audioIDs(2)) +
                      chunk("iXML", ascii("<BWFXML/>")) + chunk("odd!", hex("00 FF 01")) +
                      chunk("big!", repeated(3 << 20, 0x5A));
    writeFile(folder.file("a.wav"), wave(2, kept));
    for (std::string const options : {"--clip", "--frame"}) {
        folder.run({"wrap", "@a.wav", "-o", "@a.mxf", options, "--force"});
        folder.run({"extract", "@a.mxf", "-o", "@", "--force"});
        auto const before = readFile(folder.file("a.wav")), after = readFile(folder.file("a_a1.wav"));
        for (std::string const id : {"bext", "chna", "iXML", "odd!", "big!", "axml", "data"})
            EXPECT_EQ(chunkOf(after, id), chunkOf(before, id)) << id << options;
    }
    folder.run({"extract", "@a.mxf", "-o", "@", "--force", "--range", "5:"}); // of 25 a second
    EXPECT_EQ(folder.audio("a_a1.wav")["bext"]["time_reference"],
              std::uint64_t{36000} * 48000 + 24000 + 9600);
    auto const info = folder.run({"info", "@a.mxf"});
    EXPECT_NE(info.find("from 10:00:00:12"), std::string::npos) << info;
    folder.run({"wrap", "@a.wav", "-o", "@mono.mxf", "--channels", "1"});
    folder.run({"extract", "@mono.mxf", "-o", "@", "--force"});
    auto const mono = readFile(folder.file("mono_a2.wav"));
    EXPECT_EQ(chunkOf(mono, "axml"), document);
    EXPECT_TRUE(chunkOf(mono, "chna").empty()) << "which names channels that are not there";
}

TEST(Audio, ExtractsSoundInOtherForms) {
    Folder const folder;
    writeFile(folder.file("a.wav"), wave(3));
    folder.run({"wrap", "@a.wav", "-o", "@a.mxf"});
    for (std::string const kind : {"pcm", "aes3", "302m", "wav"})
        folder.run({"extract", "@a.mxf", "-o", "@", "--as", kind});
    EXPECT_EQ(readFile(folder.file("a_a1.pcm")), samples(3));
    auto const words = readFile(folder.file("a_a1.aes3"));
    ASSERT_EQ(words.size(), instants * 3 * 4);
    EXPECT_EQ(words[1], 0x00); // of sample 1000, placed in the upper 16 of 24 bits
    EXPECT_EQ(words[2] + (words[3] & 0x0F) * 256, 0x100);
    EXPECT_EQ(words[0], 0x08) << "channel 0, where a block begins";
    auto const packets = readFile(folder.file("a_a1.ts"));
    EXPECT_EQ(packets.size() % 188, 0u);
    EXPECT_GT(packets.size(), instants * 10);

    // 24 bits in the upper ones of 32
    auto const format = hex("FEFF 0100 80BB0000 00EE0200 0400 2000 1600 1800 00000000 0100") +
                        hex("000000001000800000AA00389B71");
    writeFile(folder.file("b.wav"),
              riff("RIFF", chunk("fmt ", format) + chunk("data", hex("00563412 00BC9A78"))));
    folder.run({"wrap", "@b.wav", "-o", "@b.mxf", "--clip"});
    folder.run({"extract", "@b.mxf", "-o", "@", "--as", "aes3"});
    folder.run({"extract", "@b.mxf", "-o", "@", "--as", "302m"});
    auto const wide = readFile(folder.file("b_a1.aes3"));
    ASSERT_EQ(wide.size(), 8u);
    EXPECT_EQ(wide[1] + wide[2] * 0x100 + (wide[3] & 0x0F) * 0x10000 + (wide[0] >> 4) * 0x100000, 0x612345);
    EXPECT_EQ(readFile(folder.file("b_a1.ts")).size(), 3 * 188u) << "tables and a packet";

    EXPECT_NE(folder.run({"extract", "@a.mxf", "-o", "@", "--as", "captions"}, 2)
                  .find("a1: has no ancillary data packets"),
              std::string::npos);
    folder.run({"extract", "@a.mxf", "-o", "@", "--as", "pcm", "--mix"}, 2);
    writeFile(folder.file("many.wav"), wave(10));
    folder.run({"wrap", "@many.wav", "-o", "@many.mxf"});
    EXPECT_NE(folder.run({"extract", "@many.mxf", "-o", "@", "--as", "302m"}, 2).find("has 10 channels"),
              std::string::npos);
}

} // namespace

} // namespace MXF::Zelm::Test
