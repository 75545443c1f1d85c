// zelm wrap: files that hold streams, and packets of VBI and ancillary data. tests/peers/compare-inputs holds
// such files of other programs against what they decode to.
#include "DataIO/Cuts.h"
#include "support/AVCStream.h"
#include "support/Codestream.h"
#include "support/FakeAnalyzer.h"
#include "support/Files.h"
#include "support/MPEGStream.h"
#include "support/Program.h"
#include "support/StandardMetadata.h"
#include "support/WaveBytes.h"
#include "support/WrittenFile.h"

#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/Essence/AES3/S302M/PacketWriter.h"
#include "MXF/Zelm/Essence/MPEG/TransportWriter.h"
#include "MXF/Zelm/OPBuilders/GenericOPBuilder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

constexpr std::size_t samplesOfFrame = 1920;

class Inputs {
public:
    std::string add(std::string const& name, Bytes const& bytes) const {
        writeFile(folder_.file(name), bytes);
        return folder_.file(name);
    }

    std::string file(std::string const& name) const { return folder_.file(name); }

    ProgramRun wrap(std::vector<std::string> options) const {
        options.insert(options.begin(), "wrap");
        options.insert(options.end(), {"-o", folder_.file("out.mxf"), "--force"});
        return runZelm(options);
    }

    /// The report on the file.
    Json report(std::vector<std::string> options) const {
        options.insert(options.end(), {"--json", "--md5", "--verify"});
        auto const done = wrap(options);
        EXPECT_EQ(done.status, 0) << done.errors;
        return done.status == 0 ? Json::parse(done.output)["files"][0] : Json::object();
    }

    /// The sum of a track, as it is when its bytes come from a file of their own.
    std::string md5(std::string const& name, Bytes const& bytes) const {
        return report({add(name, bytes)})["tracks"][0]["md5"];
    }

private:
    TemporaryFolder folder_;
};

Bytes samples(std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + i / 251);
    return bytes;
}

Bytes wave(Bytes const& data) { return riff("RIFF", waveFormat(2, 48000, 16) + chunk("data", data)); }

Bytes video() { return concatenated(mpegUnits({"SCI0", "P3", "B1", "B2", "SCI0", "P3", "B1", "B2"})); }

/// A packet of an elementary stream, without times.
Bytes pes(unsigned char streamId, Bytes const& payload) {
    return hex("00 00 01") + Bytes{streamId} + number(static_cast<std::uint16_t>(payload.size() + 3)) +
           hex("80 00 00") + payload;
}

TEST(WrapInputs, TakesStreamsOutOfPackets) {
    Inputs const inputs;
    auto const file = inputs.add("clip.pes", pes(0xE0, slice(video(), 0, 100)) + pes(0xC0, repeated(50, 1)) +
                                                 pes(0xE0, slice(video(), 100, video().size() - 100)));
    auto const report = inputs.report({file});
    ASSERT_EQ(report["tracks"].size(), 1u);
    EXPECT_EQ(report["tracks"][0]["md5"], inputs.md5("clip.m2v", video()));
    auto const pack = hex("00 00 01 BA 44 00 04 00 04 01 00 00 03 F8");
    auto const amid = inputs.wrap({inputs.add("amid.vob", hex("AA BB") + pack + pack + pes(0xE0, video()))});
    EXPECT_EQ(amid.status, 1);
    EXPECT_NE(amid.errors.find("2 bytes are no part of a program stream"), std::string::npos) << amid.errors;
    ASSERT_EQ(report["notes"].size(), 1u);
    EXPECT_NE(report["notes"][0].get<std::string>().find("stream 0xC0 (MPEG audio)"), std::string::npos);
}

/// Shorter than the pictures: it goes on without content beside them, and ends in a file of its own.
TEST(WrapInputs, TakesSoundInCodedFrames) {
    constexpr unsigned pictures = 8;
    Bytes frames;
    for (unsigned char i = 0; i < 4; ++i)
        frames = frames + hex("FF FD 14 C0") + repeated(92, i);
    Inputs const inputs;
    auto const file = inputs.add("clip.pes", pes(0xE0, video()) + pes(0xC1, frames));
    auto const tracks = inputs.report({file})["tracks"];
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[1]["edit_units"], pictures);
    EXPECT_EQ(tracks[1]["md5"], inputs.md5("clip.mp2", frames));
    auto const alone = inputs.report({inputs.file("clip.mp2")})["tracks"];
    EXPECT_EQ(alone[0]["edit_units"], 4u) << "a frame each";
    EXPECT_EQ(inputs.report({inputs.file("clip.mp2"), "--rate", "25"})["tracks"][0]["edit_units"], 2u);
    auto const two = inputs.wrap({file, "--preset", "as02", "--json"});
    ASSERT_EQ(two.status, 0) << two.errors;
    EXPECT_EQ(Json::parse(two.output)["files"][1]["tracks"][0]["edit_units"], 4u);
    EXPECT_EQ(inputs.wrap({file, "--preset", "rdd9"}).status, 2) << "sound of samples is asked for";
}

TEST(WrapInputs, TakesAVCThatBeginsAmidAGroup) {
    auto const head = hex(R"(
        00 00 01 BA  44 00 04 00 04 01 00 00 03 F8
        00 00 01 BC  00 0E  E0 FF  00 00  00 04  1B E0 00 00  00 00 00 00   # a map: AVC
    )");
    Bytes pictures;
    for (auto const& [picture, place] : avcPictures())
        pictures = pictures + picture;
    auto const cut = hex("00 00 00 01 41 9A 22 6C") + repeated(60000, 0x55); // of the group before
    Inputs const inputs;
    auto const file = inputs.add("clip.vob", head + pes(0xE0, cut) + pes(0xE0, cut) + pes(0xE0, pictures));
    auto const tracks = inputs.report({file})["tracks"];
    ASSERT_EQ(tracks.size(), 1u);
    EXPECT_EQ(tracks[0]["md5"], inputs.md5("clip.h264", pictures));
    auto const other = slice(head, 0, 26) + hex("24") + slice(head, 27, head.size() - 27);
    auto const refused = inputs.wrap({inputs.add("hevc.vob", other + pes(0xE0, pictures))});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("(HEVC): pictures of this coding"), std::string::npos) << refused.errors;
}

Bytes longs(std::initializer_list<std::uint32_t> values) {
    Bytes bytes;
    for (auto const value : values)
        bytes = bytes + little(value);
    return bytes;
}

/// A stream that begins `start` instants (of pictures: frames) late.
Bytes streamList(std::string_view type, Bytes const& format, std::uint32_t rate, std::uint32_t start) {
    return chunk("LIST",
                 ascii("strl") +
                     chunk("strh", ascii(type) + longs({0, 0, 0, 0, 1, rate, start, 0, 0, 0, 4, 0, 0})) +
                     chunk("strf", format));
}

Bytes avi(Bytes const& streams, Bytes const& chunks) {
    auto const content = chunk("LIST", ascii("hdrl") + chunk("avih", Bytes(56)) + streams) +
                         chunk("LIST", ascii("movi") + chunks);
    return chunk("RIFF", ascii("AVI ") + content);
}

TEST(WrapInputs, MovesSoundByTheTimesOfItsFile) {
    auto const format = slice(waveFormat(2, 48000, 16), 8, 16);
    auto const data = samples(4 * samplesOfFrame);
    Inputs const inputs;
    auto const file = inputs.add(
        "sound.avi", avi(streamList("auds", format, 48000, 0) + streamList("auds", format, 48000, 960),
                         chunk("00wb", data) + chunk("01wb", data)));
    auto const tracks = inputs.report({file})["tracks"];
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[0]["md5"], inputs.md5("plain.wav", wave(data)));
    EXPECT_EQ(tracks[1]["md5"], inputs.md5("late.wav", wave(Bytes(4 * 960) + slice(data, 0, 4 * 960))));
}

TEST(WrapInputs, RefusesByName) {
    Inputs const inputs;
    auto const noPackets = inputs.wrap({inputs.add("clip.302m", hex("0001 0000 00")), "--as", "302m"});
    EXPECT_EQ(noPackets.status, 2);
    EXPECT_NE(noPackets.errors.find("clip.302m: A AES packet"), std::string::npos) << noPackets.errors;
    auto const tooFast = slice(waveFormat(0x4000, 0x7FFFFFFF, 16), 8, 16);
    auto const huge = inputs.wrap(
        {inputs.add("huge.avi", avi(streamList("auds", tooFast, 25, 0), chunk("00wb", Bytes(0x8000))))});
    EXPECT_EQ(huge.status, 2);
    EXPECT_NE(huge.errors.find("edit units of more than"), std::string::npos) << huge.errors;
    auto const bitmap = longs({40, 720, 576}) + hex("01 00 18 00") + ascii("MJPG") + Bytes(20);
    auto const done = inputs.wrap(
        {inputs.add("clip.avi", avi(streamList("vids", bitmap, 25, 0), chunk("00dc", repeated(40, 1))))});
    EXPECT_EQ(done.status, 2);
    EXPECT_NE(done.errors.find("motion JPEG"), std::string::npos) << done.errors;
    auto const listed = runZelm({"audio", inputs.file("clip.avi")}).output;
    EXPECT_NE(listed.find("stream 0: pictures, MJPG"), std::string::npos) << listed;
    auto const unknown = runZelm({"audio", inputs.add("clip.txt", repeated(100, 'x'))});
    EXPECT_EQ(unknown.status, 3);
    EXPECT_NE(unknown.errors.find("nor an AVI file"), std::string::npos) << unknown.errors;
}

TEST(WrapInputs, NamesWhatCannotBeWrapped) {
    Inputs const inputs;
    for (auto const& [name, bytes, text] :
         {std::tuple("a.hevc", hex("00 00 00 01 40 01 0C 01"), "is HEVC video"),
          {"a.vob", pes(0xE0, hex("00 00 00 01 46 01 50 00 00 01 40 01 0C")), "(HEVC): pictures of this"},
          {"a.m4v", hex("00 00 01 B0 01 00 00 01 B3 00"), "is MPEG-4 video"},
          {"a.mp4", hex("00 00 00 08 66 74 79 70 00 00 01 B3"), "is an MP4 file"},
          {"a.h264", hex("00 00 01 09 F0 00 00 01 65 88 84"), "no parameter sets"}}) {
        auto const done = inputs.wrap({inputs.add(name, bytes)});
        EXPECT_EQ(done.status, 2) << name;
        EXPECT_NE(done.errors.find(text), std::string::npos) << done.errors;
    }
}

TEST(WrapInputs, TakesVideoOutOfAVIAndTellsOfItsFaults) {
    Inputs const inputs;
    auto const bitmap = longs({40, 720, 576}) + hex("01 00 18 00") + ascii("mpg2") + Bytes(20);
    auto file = avi(streamList("vids", bitmap, 25, 0),
                    chunk("00dc", slice(video(), 0, 100)) + chunk("00dc", slice(video(), 100, ~0ull)));
    auto const name = inputs.add("clip.avi", file + chunk("idx1", Bytes(16)));
    EXPECT_EQ(inputs.report({name})["tracks"][0]["md5"], inputs.md5("clip.m2v", video()));
    auto const cutOff = inputs.wrap({inputs.add("cut.avi", slice(file, 0, file.size() - 10))});
    EXPECT_EQ(cutOff.status, 1);
    EXPECT_NE(cutOff.errors.find("(mpg2): is damaged: A chunk of "), std::string::npos) << cutOff.errors;
}

TEST(WrapInputs, NamesTheFileOfASequenceThatIsWrong) {
    Inputs const inputs;
    for (auto const number : {"7", "8", "9"})
        inputs.add("frame0" + std::string(number) + ".j2c", codestream());
    auto const wrap = [&](std::vector<std::string> options) {
        options.insert(options.end(), {inputs.file("frame%02d.j2c"), "--rate", "24", "--json"});
        return inputs.wrap(options);
    };
    EXPECT_EQ(Json::parse(wrap({}).output)["files"][0]["tracks"][0]["edit_units"], 3);
    for (auto const& [scan, label] : {std::pair("progressive", "020c0600"), {"field", "020c0500"}}) {
        EXPECT_EQ(wrap({"--scan", scan}).status, 0);
        auto const dump = runZelm({"dump", inputs.file("out.mxf")}).output;
        EXPECT_NE(dump.find(label), std::string::npos) << scan;
    }
    inputs.add("frame10.j2c", codestream());
    EXPECT_EQ(Json::parse(wrap({"--scan", "two-fields"}).output)["files"][0]["tracks"][0]["edit_units"], 2);
    inputs.add("frame08.j2c", slice(codestream(), 0, 100));
    auto const cutOff = wrap({});
    EXPECT_EQ(cutOff.status, 1);
    EXPECT_NE(cutOff.errors.find("frame08.j2c: JPEG 2000: "), std::string::npos) << cutOff.errors;
    inputs.add("frame08.j2c", codestream(true));
    auto const other = wrap({});
    EXPECT_EQ(other.status, 3);
    EXPECT_NE(other.errors.find("frame08.j2c: JPEG 2000: the picture of edit unit 1"), std::string::npos)
        << other.errors;
}

TEST(WrapInputs, PassesOnClipsAndTheResourcesOfTimedText) {
    constexpr const char* uuid = "1a2b3c4d-0000-4000-8000-0123456789ab";
    auto const text = ascii(R"(<?xml version="1.0"?><tt xmlns="http://www.w3.org/ns/ttml" )"
                            R"(xmlns:p="http://www.w3.org/ns/ttml#parameter" p:frameRate="24"><body>)"
                            R"(<div><p begin="1s" end="10.5s">text</p></div></body></tt>)");
    Inputs const inputs;
    auto const resource = samples(5000);
    auto const first = inputs.file("first.mxf");
    auto const keep = [&] { writeFile(first, readFile(inputs.file("out.mxf"))); };
    auto const made = inputs.report({inputs.add("text.xml", text), "--resource",
                                     uuid + std::string("=image/png=") + inputs.add("logo.png", resource)});
    keep();
    auto const passed = inputs.report({first});
    EXPECT_EQ(passed["tracks"][0]["md5"], made["tracks"][0]["md5"]);
    EXPECT_EQ(passed["tracks"][0]["edit_units"], 252);
    ASSERT_EQ(runZelm({"extract", inputs.file("out.mxf"), "-o", inputs.file("")}).status, 0);
    EXPECT_EQ(readFile(inputs.file("out_d1.xml")), text);
    EXPECT_EQ(readFile(inputs.file("out_" + std::string(uuid) + ".png")), resource);

    auto const pictures = inputs.report({inputs.add("clip.m2v", video()), "--clip"});
    keep();
    EXPECT_EQ(inputs.report({first})["tracks"][0]["md5"], pictures["tracks"][0]["md5"]);
    auto const refused = inputs.wrap({first, "--frame"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("first.mxf: Only sound"), std::string::npos) << refused.errors;
}

TEST(WrapInputs, TakesPacketsOfSMPTE302MThatAreCutOff) {
    using namespace Essence::AES3;
    S302M::PacketWriter writer({2, 16, {48000, 1}}, {25, 1});
    auto const data = samples(4 * 4 * samplesOfFrame);
    Bytes packets;
    for (std::size_t frame = 0; frame < 4; ++frame) {
        auto const pcm = slice(data, frame * 4 * samplesOfFrame, 4 * samplesOfFrame);
        auto const packet = writer.packet(DataIO::Slice::copyOf(pcm.data(), pcm.size()));
        packets.insert(packets.end(), packet.begin(), packet.end());
    }
    packets.resize(packets.size() - 10);
    Inputs const inputs;
    auto const report = inputs.report({inputs.add("sound.302m", packets), "--aes3"});
    EXPECT_EQ(report["tracks"][0]["md5"], inputs.md5("whole.wav", wave(slice(data, 0, 12 * samplesOfFrame))));
    ASSERT_EQ(report["notes"].size(), 1u);
    EXPECT_NE(report["notes"][0].get<std::string>().find("ends early"), std::string::npos);
}

TEST(WrapInputs, KeepsPacketsOfSMPTE302MWithTheirBits) {
    using namespace Essence::AES3;
    S302M::PacketWriter writer({2, 16, {48000, 1}}, {25, 1});
    ChannelStatus status;
    status.isProfessional(true);
    status.audioSignalEmphasis(ChannelStatus::EmphasisJ17);
    writer.channelStatus(1, status);
    auto const data = samples(3 * 4 * samplesOfFrame);
    Bytes packets;
    for (std::size_t frame = 0; frame < 3; ++frame) {
        auto const pcm = slice(data, frame * 4 * samplesOfFrame, 4 * samplesOfFrame);
        auto const packet = writer.packet(DataIO::Slice::copyOf(pcm.data(), pcm.size()));
        packets.insert(packets.end(), packet.begin(), packet.end());
    }
    Inputs const inputs;
    auto const sound = inputs.add("sound.302m", packets);
    auto const extract = [&](std::vector<std::string> options) {
        options.insert(options.begin(),
                       {"extract", inputs.file("out.mxf"), "-o", inputs.file(""), "--force"});
        auto const done = runZelm(options);
        EXPECT_EQ(done.status, 0) << done.errors;
    };
    auto const kept = inputs.report({sound, "--packets"});
    auto const told = Json::parse(runZelm({"audio", "--json", inputs.file("out.mxf")}).output)["files"][0];
    EXPECT_EQ(told["tracks"][0]["coding"], "SMPTE 302M") << told;
    ASSERT_EQ(told["tracks"][0]["channels"].size(), 2u) << told;
    EXPECT_EQ(told["tracks"][0]["channels"][1]["status"], "professional, PCM, emphasis J.17") << told;
    extract({"--as", "aes3"});
    EXPECT_EQ(readFile(inputs.file("out_a1.aes3"))[8 * 2 + 7] & 0x40, 0x40)
        << "bit 2 of the second channel's status: of J.17";
    extract({});
    EXPECT_EQ(readFile(inputs.file("out_a1.302m")), packets);
    extract({"--as", "pcm"});
    EXPECT_EQ(readFile(inputs.file("out_a1.pcm")), data);
    extract({"--as", "302m"});
    EXPECT_EQ(inputs.report({inputs.file("out_a1.ts"), "--packets"})["tracks"][0]["md5"],
              kept["tracks"][0]["md5"]);
    auto const television =
        inputs.wrap({inputs.add("clip.m2v", video()), sound, "--packets", "--preset", "rdd9"});
    EXPECT_NE(television.errors.find("sound of 16 or 24 bits"), std::string::npos) << television.errors;
    EXPECT_NE(
        inputs.wrap({sound, "--packets", "--rate", "50"}).errors.find("do not go into edit units of 960"),
        std::string::npos);
    inputs.report({sound, "--aes3"});
    auto const channels = Json::parse(runZelm({"audio", "--json", inputs.file("out.mxf")}).output).dump();
    EXPECT_NE(channels.find("J.17"), std::string::npos) << channels;
    extract({"--as", "302m"});
    extract({"--as", "aes3"});
    inputs.report({inputs.file("out_a1.ts"), "--aes3"});
    auto const again = Json::parse(runZelm({"audio", "--json", inputs.file("out.mxf")}).output)["files"][0];
    EXPECT_EQ(again["tracks"][0]["channels"][1]["status"], "professional, PCM, emphasis J.17") << again;
    auto const words = readFile(inputs.file("out_a1.aes3"));
    EXPECT_EQ(words[8 * 2 + 7] & 0x40, 0x40) << "bit 2 of the second channel's status: of J.17";
}

/// Packets of SMPTE 302M for which a test has its own bytes.
class PacketSound : public FakeSound {
public:
    PacketSound(FakeEssence const& essence, std::vector<Bytes> units)
        : FakeSound(essence), units_(std::move(units)) {}

    bool nextEditUnit(GenericContainer::EditUnit& unit) override {
        if (!FakeSound::nextEditUnit(unit))
            return false;
        unit.data.clear();
        unit.data.append(DataIO::Slice::adopt(Bytes(units_[next_++])));
        return true;
    }

private:
    std::vector<Bytes> units_;
    std::size_t next_ = 0;
};

Bytes soundFile(KLV::Key const& label, std::vector<Bytes> const& units) {
    FakeEssence const essence{.count = units.size(), .itemType = 0x16, .elementType = 0x05, .label = label};
    OPBuilders::GenericOPBuilder builder(
        standardMetadata()->partitionDictionary().dictionary(),
        {.product = {u"Company", u"Product", u"1.0", Types::UUID::generate()}, .materialName = u"Sound"});
    builder.addFrameWrapped(
        {.packageRate = essence.rate, .analyzers = {std::make_shared<PacketSound>(essence, units)}});
    SeekableSink sink;
    builder.creator(sink)->run();
    return sink.bytes();
}

/// In two PES packets, the first with a time.
Bytes inPES(Bytes const& packet) {
    auto const head = [](std::size_t size) {
        return hex("00 00 01 BD") +
               Bytes{static_cast<unsigned char>(size >> 8), static_cast<unsigned char>(size)};
    };
    auto const first = slice(packet, 0, 1000), second = slice(packet, 1000, ~std::size_t{0});
    return head(first.size() + 8) + hex("84 80 05 21 00 01 00 01") + first + head(second.size() + 3) +
           hex("80 00 00") + second;
}

TEST(WrapInputs, ReadsPacketsOfSMPTE302MInPES) {
    using namespace Essence::AES3;
    using namespace KLV::Literals;
    auto const data = samples(3 * 4 * samplesOfFrame);
    std::vector<Bytes> packets;
    S302M::PacketWriter writer({2, 16, {48000, 1}}, {25, 1});
    for (std::size_t frame = 0; frame < 3; ++frame) {
        auto const pcm = slice(data, frame * 4 * samplesOfFrame, 4 * samplesOfFrame);
        auto const packet = writer.packet(DataIO::Slice::copyOf(pcm.data(), pcm.size()));
        packets.push_back(inPES(Bytes(packet.begin(), packet.end())));
    }
    Inputs const inputs;
    for (auto const& label :
         {"060E2B34.04010102.0D010301.02043D01"_key, "060E2B34.04010102.0D010301.02073D01"_key}) {
        auto const file = inputs.add("pes.mxf", soundFile(label, packets));
        auto const told = Json::parse(runZelm({"audio", "--json", file}).output)["files"][0]["tracks"][0];
        EXPECT_EQ(told["coding"], "SMPTE 302M");
        EXPECT_EQ(told["samples"], 3 * samplesOfFrame);
        for (std::string const kind : {"pcm", "302m", ""}) {
            std::vector<std::string> arguments = {"extract", file, "-o", inputs.file(""), "--force"};
            if (!kind.empty())
                arguments.insert(arguments.end(), {"--as", kind});
            EXPECT_EQ(runZelm(arguments).status, 0) << kind;
        }
        EXPECT_EQ(readFile(inputs.file("pes_a1.pcm")), data);
        EXPECT_EQ(inputs.report({inputs.file("pes_a1.ts"), "--aes3"})["tracks"][0]["md5"],
                  inputs.md5("whole.wav", wave(data)));
        EXPECT_EQ(readFile(inputs.file("pes_a1.pes")).size(), 3 * packets[0].size());
    }
}

TEST(WrapInputs, TellsOfLostPacketsAndGoesOn) {
    constexpr std::size_t frame = 4 * samplesOfFrame, transportPacket = 188;
    Essence::AES3::S302M::PacketWriter writer({2, 16, {48000, 1}}, {25, 1});
    DataIO::Memory::MemoryDataSink sink;
    Essence::MPEG::TransportWriter stream(sink);
    auto data = samples(4 * frame);
    for (std::size_t i = 0; i < 4; ++i) {
        auto const packet = writer.packet(DataIO::Slice::copyOf(data.data() + i * frame, frame));
        stream.write(packet, (i + (i > 2 ? 75 : 0)) * 3600);
    }
    Bytes bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    auto const packets = bytes.size() / transportPacket;
    auto const lost = bytes.begin() + static_cast<std::ptrdiff_t>((packets / 2 - 3) * transportPacket);
    bytes.erase(lost, lost + transportPacket);
    std::fill_n(data.begin() + frame, frame, std::uint8_t{0}); // of the packet that is not whole
    Inputs const inputs;
    auto const done = inputs.wrap({inputs.add("sound.ts", bytes), "--json", "--md5"});
    EXPECT_EQ(done.status, 1);
    EXPECT_NE(done.errors.find("is damaged in 2 places, the first: Continuity"), std::string::npos)
        << done.errors;
    EXPECT_NE(done.errors.find("its times leap by +3.04 s"), std::string::npos) << done.errors;
    EXPECT_EQ(Json::parse(done.output)["files"][0]["tracks"][0]["md5"], inputs.md5("plain.wav", wave(data)));
}

/// What a file holds, as it can be wrapped again; without the offsets in the file.
Json dumped(std::string const& file) {
    auto dump = Json::parse(runZelm({"ancillary", "--dump", "--json", file}).output);
    for (auto& packet : dump["packets"])
        packet.erase("offset");
    dump.erase("file");
    return dump;
}

/// Packets of all kinds, right and wrong ones.
constexpr const char* packets = R"({"packets": [
    {"edit_unit": 0, "line": 9, "did": 97, "sdid": 1, "data": "AABBCC"},
    {"edit_unit": 0, "line": 11, "coding": 7, "wrapping": 2, "did": 96, "sdid": 96, "data": "AABBCC"},
    {"edit_unit": 2, "line": 12, "coding": 7, "field_mark": true, "did": 65, "sdid": 5, "data": "00", "checksum": 5},
    {"edit_unit": 2, "line": 13, "coding": 8, "did": 65, "sdid": 5, "data_count": 2, "data": "3FF0AA", "checksum": null},
    {"edit_unit": 3, "line": 13, "did": 65, "sdid": 5, "data": "", "samples": 5, "payload": "6101030405060708"},
    {"edit_unit": 4, "kind": "VBI", "line": 21, "wrapping": 2, "samples": 6, "data": "0102030405060000"}]})";

TEST(WrapInputs, MakesCaptionPacketsOfTheirContent) {
    Inputs const inputs;
    auto const textOf = [](std::string const& type) {
        return R"({"packets": [{"edit_unit": 3, "line": 9, "captions": {"frame_rate": "29.97", "timecode": "10:00:00;03",
            "data": [{"type": )" +
               type +
               R"(, "bytes": "9420"}], "services": [{"number": 1, "language": "eng", "wide": true}]}}]})";
    };
    ASSERT_EQ(inputs.wrap({inputs.add("made.json", ascii(textOf("0")))}).status, 0);
    auto const packet = dumped(inputs.file("out.mxf"))["packets"][0];
    EXPECT_EQ(packet["did"], 0x61);
    EXPECT_EQ(packet["data"], "96691E4FF7000371D080008372E1FC942073D1A1656E67C17FFF7400037E");
    EXPECT_EQ(packet["faults"], Json::array());
    auto const refused = inputs.wrap({inputs.add("bad.json", ascii(textOf("4")))});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("packet 1: \"type\" is no number up to 3"), std::string::npos)
        << refused.errors;
}

TEST(WrapInputs, TakesPacketsAsTheyAreDumped) {
    Inputs const inputs;
    ASSERT_EQ(inputs.wrap({inputs.add("made.json", ascii(packets))}).status, 0);
    auto const first = dumped(inputs.file("out.mxf"));
    ASSERT_EQ(first["packets"].size(), 6u);
    EXPECT_EQ(first["packets"][0]["data"], "AABBCC");
    EXPECT_TRUE(first["packets"][0]["payload"].is_null()) << "the other members tell all";
    EXPECT_EQ(first["packets"][2]["checksum"], 5);
    EXPECT_EQ(first["packets"][4]["payload"], "6101030405060708");
    ASSERT_EQ(inputs.wrap({inputs.add("again.json", ascii(first.dump()))}).status, 0);
    EXPECT_EQ(dumped(inputs.file("out.mxf")), first);

    auto const report = inputs.report({inputs.add("clip.m2v", video()), inputs.file("made.json")});
    ASSERT_EQ(report["tracks"].size(), 3u);
    EXPECT_EQ(report["tracks"][2]["edit_units"], 8) << "frames without packets up to the end of the pictures";
    EXPECT_EQ(report["notes"], Json::array());
}

TEST(WrapInputs, RefusesPacketsThatCannotBe) {
    Inputs const inputs;
    for (auto const& [row, text] : {std::pair(R"("edit_unit": -1)", "edit_unit"),
                                    {R"("edit_unit": 99999999999)", "edit_unit"},
                                    {R"("edit_unit": 0, "did": 256)", "did"},
                                    {R"("edit_unit": 0, "coding": 2)", "coding"},
                                    {R"("edit_unit": 0, "checksum": 1024)", "checksum"},
                                    {R"("edit_unit": 0, "data": "0G")", "hexadecimal"},
                                    {R"("edit_unit": 0, "kind": "HANC")", "kind"},
                                    {R"("edit_unit": 0, "a": [[[[[[[[[[[[[[[[[[]]]]]]]]]]]]]]]]]])", "deep"},
                                    {R"("edit_unit": 0, [)", "no JSON"}}) {
        Json packet = {{"did", 65}, {"sdid", 5}, {"data", "00"}};
        auto const base = packet.dump();
        auto const done = inputs.wrap({inputs.add(
            "bad.json", ascii(R"({"packets": [)" + base.substr(0, base.size() - 1) + ", " + row + "}]}"))});
        EXPECT_EQ(done.status, 2) << row;
        EXPECT_NE(done.errors.find(text), std::string::npos) << done.errors;
    }
}

} // namespace

} // namespace MXF::Zelm::Test
