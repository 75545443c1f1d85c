// zelm ancillary: files with tracks of VBI and ancillary data, made here, and what they are made of.
#include "SmallFile.h"
#include "support/EssenceBody.h"
#include "support/Program.h"
#include "support/StandardMetadata.h"

#include "MXF/Zelm/Essence/Ancillary/ActiveFormat.h"
#include "MXF/Zelm/Essence/Ancillary/Timecode.h"
#include "MXF/Zelm/GenericContainer/S436M/ANCPacket.h"
#include "MXF/Zelm/GenericContainer/S436M/FrameElement.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/BuildingDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"

#include <nlohmann/json.hpp>

namespace MXF::Zelm::Test {

namespace {

using namespace GenericContainer::S436M;
using namespace Metadata::Structural;
using Essence::Ancillary::Packet;
using Json = nlohmann::json;
using Packets = Templates::vector<StoredPacket>;

constexpr Templates::Rational<int> rate{25, 1};
constexpr std::uint64_t frames = 5;

/// Header metadata of a picture of 1080 lines, an ANC and a VBI track; the material starts at 10:00:00:00.
Bytes headerMetadata() {
    auto const metadata = standardMetadata();
    createPreface(*metadata, {.operationalPattern = "060E2B34.04010101.0D010201.01010900"_key,
                              .product = {u"Company", u"Product", u"1", Types::UUID::generate()}});
    auto& material = createMaterialPackage(*metadata);
    auto& file = createFilePackage(*metadata, {.bodySID = 1});
    addTimecodeTrack(*metadata, material, Utils::TimeCode(Utils::TimeBase(25), {.hours = 10}), rate, frames);
    auto const add = [&](FileDescriptor& descriptor, KLV::Key const& definition, std::uint32_t number) {
        addMaterialTrack(*metadata, material, file,
                         addEssenceTrack(*metadata, file, descriptor, {definition, rate, number, frames}));
    };
    add(createPictureDescriptor<CDCIEssenceDescriptor>(
            *metadata, {.essenceContainer = "060E2B34.04010102.0D010301.02046001"_key,
                        .coding = "060E2B34.04010103.04010202.01011100"_key,
                        .frameRate = rate,
                        .width = 1920,
                        .height = 1080}),
        DataDefinitions::picture, pictureTrack);
    auto& anc = create<ANCPacketsDescriptor>(*metadata);
    anc.sampleRate(Types::Rational(rate));
    anc.essenceContainer(ancContainer);
    add(anc, DataDefinitions::data, ancTrackNumber);
    auto& vbi = create<VBIDataDescriptor>(*metadata);
    vbi.sampleRate(Types::Rational(rate));
    vbi.essenceContainer(vbiContainer);
    add(vbi, DataDefinitions::data, vbiTrackNumber);
    return written(*metadata, false, Metadata::SerializationOrder::ForwardReferences);
}

/// A caption distribution packet with one pair of field 1, its bytes without parity.
Packet captions(std::uint16_t pair) {
    auto bytes = hex("9669 10 3F 43 0001  72 E1 FC 0000  74 0001 00");
    for (std::size_t i = 0; i < 2; ++i) {
        auto const byte = static_cast<unsigned char>(pair >> (i == 0 ? 8 : 0) & 0x7F);
        bytes[10 + i] = static_cast<unsigned char>(std::popcount(byte) % 2 != 0 ? byte : byte | 0x80);
    }
    bytes[2] = static_cast<unsigned char>(bytes.size());
    unsigned sum = 0;
    for (auto const byte : bytes)
        sum += byte;
    bytes.back() = static_cast<unsigned char>(256 - sum % 256);
    return Packet::ofBytes(0x61, 0x01, bytes);
}

StoredPacket stored(Packet const& packet, std::uint16_t line, SampleCoding coding = SampleCoding::Luma8) {
    return storeANC(packet, line, WrappingType::ProgressiveFrame, coding);
}

/// Captions in each frame: the code to paint them on, twice, "HI", the code to erase them, twice. Timecode of
/// 10 bits in the first two, an active format in the third. Line 21 of VBI in the second.
Bytes body(std::function<void(std::size_t frame, Packets& anc)> const& change) {
    constexpr std::uint16_t pairs[frames] = {0x1429, 0x1429, 0x4849, 0x142C, 0x142C};
    Bytes bytes;
    for (std::size_t frame = 0; frame < frames; ++frame) {
        Packets anc{stored(captions(pairs[frame]), 9)};
        if (frame < 2) {
            Utils::TimeCode const time(Utils::TimeBase(25), static_cast<std::int64_t>(frame));
            anc.push_back(
                stored(Packet::ofBytes(0x60, 0x60,
                                       Essence::Ancillary::Timecode{Utils::TimeCodeExtended(time)}.bytes()),
                       10, SampleCoding::Luma10));
        }
        if (frame == 2)
            anc.push_back(
                stored(Packet::ofBytes(0x41, 0x05,
                                       Essence::Ancillary::ActiveFormat{.code = 10, .isWide = true}.bytes()),
                       11));
        change(frame, anc);
        Packets vbi;
        if (frame == 1) {
            vbi.push_back({21, WrappingType::Field1, SampleCoding::Luma8});
            vbi[0].samples(std::vector<std::uint16_t>(720, 0x10));
        }
        bytes = bytes + klv(elementKey(pictureTrack), repeated(40, 1)) +
                klv(elementKey(vbiTrackNumber), joined(writeFrameElement(vbi))) +
                klv(elementKey(ancTrackNumber), joined(writeFrameElement(anc)));
    }
    return bytes;
}

FileOnDisk madeFile(
    std::function<void(std::size_t, Packets&)> const& change = [](std::size_t, Packets&) {},
    bool withMetadata = true) {
    return FileOnDisk(
        makeFile({{.kind = PartitionPack::Header, .metadata = withMetadata ? headerMetadata() : Bytes()},
                  {.kind = PartitionPack::Body, .body = body(change), .bodySID = 1},
                  {.kind = PartitionPack::Footer}})
            .bytes);
}

Json json(FileOnDisk const& file, std::vector<std::string> options = {}, int status = 0) {
    options.insert(options.begin(), {"ancillary", "--json", file.name()});
    auto const run = runZelm(options);
    EXPECT_EQ(run.status, status) << run.output << run.errors;
    return Json::parse(run.output);
}

TEST(Ancillary, TellsWhatTracksHold) {
    auto const file = madeFile();
    auto const tracks = json(file)["tracks"];
    ASSERT_EQ(tracks.size(), 2u);
    auto const& anc = tracks[0];
    EXPECT_EQ(anc["kind"], "ANC");
    EXPECT_EQ(anc["edit_units"], frames);
    EXPECT_EQ(anc["packets"], frames + 3);
    EXPECT_EQ(anc["faults"], Json::array());
    ASSERT_EQ(anc["identifiers"].size(), 3u);
    auto const &format = anc["identifiers"][0], &timecode = anc["identifiers"][1],
               &cdp = anc["identifiers"][2];
    EXPECT_EQ(format["content"][0]["text"], "16:9 centre, in a 16:9 frame");
    EXPECT_EQ(format["first"], (Json{{"edit_unit", 2}, {"timecode", "10:00:00:02"}}));
    EXPECT_EQ(timecode["lines"], Json({10}));
    EXPECT_EQ(timecode["count"], 2);
    EXPECT_EQ(timecode["content"][0]["last"]["detail"], "00:00:00:01");
    EXPECT_EQ(cdp["did"], 0x61);
    EXPECT_EQ(cdp["content"][0]["text"], "CEA-608, field 1");
    EXPECT_EQ(cdp["last"]["edit_unit"], frames - 1);
    EXPECT_EQ(tracks[1]["identifiers"][0]["lines"], Json({21}));
    EXPECT_EQ(tracks[1]["identifiers"][0]["count"], 1);

    EXPECT_EQ(json(file, {"--range", "1:2"})["tracks"][0]["packets"], 2);
    EXPECT_EQ(json(file, {"--range", "10:00:00:02-"})["tracks"][0]["edit_units"], 3);
    EXPECT_EQ(runZelm({"ancillary", "--range", "10:00:00;02-", file.name()}).status, 2);
    auto const text = runZelm({"ancillary", file.name()}).output;
    EXPECT_NE(text.find("61/01"), std::string::npos) << text;
    EXPECT_NE(text.find("4 (10:00:00:04)"), std::string::npos) << text;
}

TEST(Ancillary, ListsPacketsAndCaptions) {
    auto const file = madeFile();
    auto const packets = json(file, {"--dump"})["packets"];
    ASSERT_EQ(packets.size(), frames + 4);
    auto const bytes = readFile(file.name());
    for (auto const& packet : packets) {
        auto const line = packet["line"].get<unsigned>();
        auto const offset = packet["offset"].get<std::size_t>();
        EXPECT_EQ(bytes[offset] << 8 | bytes[offset + 1], line) << "the packet stands there";
        EXPECT_EQ(packet["faults"], Json::array());
    }
    EXPECT_EQ(packets[0]["data"],
              "9669103F43000172E1FC9429740001" + packets[0]["data"].get<std::string>().substr(30));
    auto const lines = runZelm({"ancillary", "--dump", "--range", "2:3", file.name()}).output;
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2) << lines;
    EXPECT_NE(lines.find("CEA-608, field 1: C849"), std::string::npos) << lines;

    auto const rows = json(file, {"--captions"})["captions"];
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0]["text"], "HI");
    EXPECT_EQ(rows[0]["channel"], "CC1");
    EXPECT_EQ(rows[0]["timecode"], "10:00:00:03");
}

TEST(Ancillary, ComesOutOfExtractAsItIsListed) {
    auto const file = madeFile();
    TemporaryFolder const folder;
    auto const extracted = [&](std::string const& kind, std::string const& name) {
        auto const run = runZelm({"extract", file.name(), "-o", folder.file(""), "--as", kind});
        EXPECT_EQ(run.status, 0) << run.errors;
        auto const bytes = readFile(folder.file(name));
        return std::string(bytes.begin(), bytes.end());
    };
    auto packets = Json::parse(extracted("anc-json", "small_d1.json"))["packets"];
    Json const lines = Json::parse(extracted("vbi-json", "small_d2.json"))["packets"];
    for (auto const& packet : lines)
        packets.push_back(packet);
    auto listed = json(file, {"--dump"})["packets"];
    std::stable_partition(listed.begin(), listed.end(),
                          [](Json const& each) { return each["kind"] == "ANC"; });
    EXPECT_EQ(packets, listed);
    EXPECT_EQ(extracted("captions", "small_d1.txt"),
              runZelm({"ancillary", "--captions", file.name()}).output);
}

TEST(Ancillary, TellsOfFaultsAndKeepsTheRest) {
    auto const file = madeFile([](std::size_t frame, Packets& anc) {
        if (frame == 0)
            anc[1].payload = DataIO::Slice::copyOf(repeated(28, 0x55).data(), 28); // parity, count, checksum
        if (frame == 1)
            anc.push_back(stored(captions(0), 2000));
        if (frame == 2)
            anc[0].coding = SampleCoding::Luma8WithParityError;
        if (frame == 3) {
            auto broken = captions(0);
            broken.userData.back() ^= 1;
            anc.push_back(stored(broken, 9));
        }
        if (frame == 4)
            anc.push_back({9, WrappingType::ProgressiveFrame, SampleCoding::Luma8, 200});
    });
    auto const anc = json(file, {}, 1)["tracks"][0];
    std::map<std::string, std::int64_t> first;
    for (auto const& fault : anc["faults"])
        first[fault["message"]] = fault["first"]["edit_unit"];
    EXPECT_EQ(first.at("a packet has wrong parity in DID, SDID or data count"), 0);
    EXPECT_EQ(first.at("a packet has a line number out of range"), 1) << "of 1125";
    EXPECT_EQ(first.at("a packet had a parity error before it was stored"), 2);
    EXPECT_EQ(first.at("a packet holds captions with a wrong checksum"), 3);
    EXPECT_EQ(first.at("a packet has more samples than its payload holds"), 4);
    EXPECT_EQ(anc["packets"], frames + 6);
    EXPECT_EQ(json(file, {"--dump", "--range", "1:2"}, 1)["packets"][3]["faults"].size(), 1u);
}

TEST(Ancillary, ReadsBodiesWithoutMetadataAndFilesWithoutPackets) {
    auto const file = madeFile([](std::size_t, Packets&) {}, false);
    auto const tracks = json(file)["tracks"];
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[1]["packets"], frames + 3);
    EXPECT_TRUE(tracks[1]["track_id"].is_null());
    EXPECT_TRUE(tracks[1]["identifiers"][0]["first"]["timecode"].is_null());
    FileOnDisk const without(SmallFile().bytes);
    EXPECT_EQ(json(without)["tracks"], Json::array());
    EXPECT_EQ(runZelm({"ancillary", without.name()}).output, "no VBI or ancillary data\n");
    EXPECT_EQ(runZelm({"ancillary", "no-such-file.mxf"}).status, 4);
    EXPECT_EQ(runZelm({"ancillary", FileOnDisk({}).name()}).status, 3);
}

} // namespace

} // namespace MXF::Zelm::Test
