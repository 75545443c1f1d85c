/// Elements of VBI lines and ancillary data packets, and the analyzers that make them.
#include "MXF/Zelm/GenericContainer/S436M/ANCPacket.h"
#include "MXF/Zelm/GenericContainer/S436M/PacketAnalyzers.h"
#include "MXF/Zelm/GenericContainer/S436M/PacketDemultiplexer.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "support/EssenceBody.h"
#include "support/StandardMetadata.h"
#include "support/TestMux.h"

#include <algorithm>

namespace MXF::Zelm::Test {

using namespace GenericContainer;
using namespace GenericContainer::S436M;
using Essence::Ancillary::Packet;

namespace {

constexpr const char* oneCaption = R"(
    0009 04 04 0006 00000008 00000001   # line 9, progressive, 8-bit luma, 6 samples, 8 bytes
    61 01 03 AA BB CC 00 00)";

FrameElement read(Bytes const& bytes, ElementKind kind = ElementKind::ANC) {
    return readFrameElement(kind, DataIO::Slice::copyOf(bytes.data(), bytes.size()), 1125);
}

/// One packet, then a sound one.
FrameElement readBefore(std::string const& packet) { return read(hex("0002" + packet + oneCaption)); }

Bytes writtenElement(Templates::vector<StoredPacket> const& packets) {
    return joined(writeFrameElement(packets));
}

} // namespace

TEST(FrameElement, IsReadAndWritten) {
    auto const bytes = hex(std::string("0001") + oneCaption);
    auto const element = read(bytes);
    ASSERT_EQ(element.packets.size(), 1u);
    auto const& found = element.packets[0];
    EXPECT_EQ(found.faults, 0u);
    EXPECT_EQ(found.stored.line(), 9u);
    auto const packet = Packet::ofBytes(0x61, 0x01, hex("AA BB CC"));
    EXPECT_EQ(readANC(found.stored).packet, packet);
    EXPECT_TRUE(sameBytes(writtenElement({storeANC(packet, 9, WrappingType::ProgressiveFrame)}), bytes));
    EXPECT_TRUE(sameBytes(writtenElement({}), hex("0000")));
    DataIO::Chain pieces;
    for (auto const& byte : bytes)
        pieces.append(DataIO::Slice::copyOf(&byte, 1));
    auto const fromPieces = readFrameElement(ElementKind::ANC, pieces);
    EXPECT_TRUE(sameBytes(writtenElement({fromPieces.packets.at(0).stored}), bytes));
    EXPECT_EQ(read(hex("0000")).packetCount, 0u);
}

TEST(FrameElement, KeepsEveryWrappingAndCoding) {
    for (unsigned const wrapping : {1u, 2u, 3u, 4u, 0x11u, 0x12u, 0x13u, 0x14u})
        for (unsigned coding = 1; coding <= 12; ++coding)
            for (auto const kind : {ElementKind::VBI, ElementKind::ANC}) {
                SCOPED_TRACE(std::to_string(wrapping) + " " + std::to_string(coding));
                StoredPacket stored{571, static_cast<WrappingType>(wrapping),
                                    static_cast<SampleCoding>(coding)};
                unsigned const most = (1u << bitsOf(stored.coding)) - 1;
                std::vector<std::uint16_t> samples(65);
                for (std::size_t i = 0; i < samples.size(); ++i)
                    samples[i] = static_cast<std::uint16_t>(i * 173 & most);
                samples[0] = static_cast<std::uint16_t>(most); // bits at the top
                stored.samples(samples);
                auto const bytes = writtenElement({stored, stored});
                auto const element = read(bytes, kind);
                ASSERT_EQ(element.packets.size(), 2u);
                EXPECT_EQ(element.bytesBehind, 0u);
                auto const& found = element.packets[1];
                bool const isVBI = kind == ElementKind::VBI;
                EXPECT_EQ(found.faults,
                          (isVBI && wrapping > 4 ? FoundPacket::UnknownWrapping : 0u) |
                              ((isVBI ? coding > 9 : coding < 4) ? FoundPacket::UnknownCoding : 0u));
                EXPECT_EQ(found.stored.samples(), samples);
                EXPECT_TRUE(sameBytes(writtenElement({element.packets[0].stored, found.stored}), bytes));
                EXPECT_EQ(found.stored.field(), wrapping % 16 == 2 ? 1u : wrapping % 16 == 3 ? 2u : 0u);
                EXPECT_EQ(hasParityError(found.stored.coding), coding > 9);
            }
}

TEST(FrameElement, PacksTenBitsInEitherPlace) {
    auto const packet = Packet::ofBytes(0x61, 0x01, hex("AA BB CC"));
    auto const stored = storeANC(packet, 9, WrappingType::Field1, SampleCoding::Luma10);
    EXPECT_EQ(stored.sampleCount, 7);
    // 161 101 203 | 2AA 2BB 2CC | 296, each word << 2
    auto const upper = hex("58501 80C AAABBB30 A5800000"), lower = hex("16140603 2AAAEECC 29600000");
    EXPECT_TRUE(sameBytes(Bytes(stored.payload.begin(), stored.payload.end()), upper));
    auto other = stored;
    other.payload = DataIO::Slice::copyOf(lower.data(), lower.size());
    // Words of which only the parity of the first three tells where they stand.
    auto even = storeANC(Packet::ofBytes(0x60, 0x60, {}), 9, WrappingType::Field1, SampleCoding::Luma10);
    auto const evenLower = hex("26098200 2C000000");
    even.payload = DataIO::Slice::copyOf(evenLower.data(), evenLower.size());
    EXPECT_EQ(readANC(even).packet, Packet::ofBytes(0x60, 0x60, {}));
    EXPECT_EQ(readANC(even).faults, 0u);
    // A dark line of VBI looks like such words, and is none.
    StoredPacket dark{21, WrappingType::Field1, SampleCoding::Luma10};
    std::vector<std::uint16_t> const level(720, 0x041);
    dark.samples(level);
    EXPECT_EQ(dark.samples(), level);
    for (auto const& each : {stored, other}) {
        EXPECT_EQ(readANC(each).packet, packet);
        EXPECT_EQ(readANC(each).faults, 0u);
    }
}

TEST(FrameElement, TellsWhatIsWrongAndReadsOn) {
    struct {
        const char* packet;
        unsigned faults;
    } const cases[] = {
        {"0009 05 04 0003 00000004 00000001 61010000", FoundPacket::UnknownWrapping},
        {"0009 04 0D 0003 00000004 00000001 61010000", FoundPacket::UnknownCoding},
        {"0466 04 04 0003 00000004 00000001 61010000", FoundPacket::LineOutOfRange},
        {"4465 04 04 0003 00000004 00000001 61010000", 0}, // 1125 of field 2
        {"0009 04 04 0003 00000002 00000002 61010000", FoundPacket::WrongItemSize},
        {"0009 04 04 0003 00000004 00000000 61010000", FoundPacket::WrongItemSize},
        {"0009 04 04 0003 00001000 00000001 61010000", FoundPacket::PayloadTooLarge},
        {"0009 04 04 0003 FFFFFFFF FFFFFFFF 61010000",
         FoundPacket::WrongItemSize | FoundPacket::PayloadTooLarge},
        {"0009 04 04 0005 00000004 00000001 61010000", FoundPacket::TooManySamples},
        {"0009 04 04 0003 00000003 00000001 610100", 0},   // not filled up
        {"0009 04 04 0003 00000003 00000001 61010000", 0}, // filled up, not counted
    };
    for (auto const& [packet, faults] : cases) {
        SCOPED_TRACE(packet);
        auto const element = readBefore(packet);
        ASSERT_EQ(element.packets.size(), 2u);
        EXPECT_EQ(element.packets[0].faults, faults);
        EXPECT_EQ(element.packets[0].stored.payload.data()[0], 0x61);
        EXPECT_EQ(element.packets[1].faults, 0u);
        EXPECT_EQ(readANC(element.packets[1].stored).packet.userData.size(), 3u);
        EXPECT_EQ(element.bytesBehind, 0u);
    }
    EXPECT_EQ(read(hex(std::string("0003") + oneCaption)).packetCount, 3u);
    EXPECT_EQ(read(hex(std::string("0001") + oneCaption + "00 01 00")).bytesBehind, 3u);
    EXPECT_EQ(read(hex(std::string("0001") + oneCaption + "00 00 00")).bytesBehind, 0u) << "filled up";
    auto const cut = read(hex(std::string("0002") + oneCaption + "0009 04"));
    ASSERT_EQ(cut.packets.size(), 2u);
    EXPECT_EQ(cut.packets[1].faults, unsigned{FoundPacket::CutOff});
    survivesEveryFault(hex(std::string("0002") + oneCaption + oneCaption), [](Bytes const& bytes) {
        for (auto const& found : read(bytes).packets)
            EXPECT_LE(found.stored.payload.size() + found.offset, bytes.size());
    });
}

namespace {

class Counter : public PacketReceiver {
public:
    void receive(ReceivedPacket const& packet) override {
        seen += std::to_string(packet.found.stored.line()) + " ";
    }
    std::string seen;
};

/// One frame after another.
class Frames : public PacketProvider {
public:
    explicit Frames(Templates::vector<Templates::vector<StoredPacket>> frames) : frames_(std::move(frames)) {}
    bool nextFrame(Templates::vector<StoredPacket>& packets) override {
        if (at_ == frames_.size())
            return false;
        packets = frames_[at_++];
        return true;
    }

private:
    Templates::vector<Templates::vector<StoredPacket>> frames_;
    std::size_t at_ = 0;
};

StoredPacket packetOn(std::uint16_t line, unsigned char did, unsigned char sdid) {
    return storeANC(Packet::ofBytes(did, sdid, hex("01 02")), line, WrappingType::Frame);
}

} // namespace

TEST(PacketDemultiplexer, HandsOutByIdentifierAndLine) {
    PacketDemultiplexer demultiplexer(ElementKind::ANC);
    Counter captions, line9, both, all;
    demultiplexer.add({.did = 0x61, .sdid = 0x01}, captions);
    demultiplexer.add({.line = 9}, line9);
    demultiplexer.add({.did = 0x61, .line = 9}, both);
    demultiplexer.add({}, all);
    auto const element = demultiplexer.take(0, writeFrameElement(Templates::vector<StoredPacket>{
                                                   packetOn(9, 0x61, 0x01), packetOn(10, 0x61, 0x01),
                                                   packetOn(9, 0x60, 0x60), packetOn(0x4009, 0x61, 0x02)}));
    EXPECT_EQ(element.packets.size(), 4u);
    EXPECT_EQ(captions.seen, "9 10 ");
    EXPECT_EQ(line9.seen, "9 9 9 ");
    EXPECT_EQ(both.seen, "9 9 ");
    EXPECT_EQ(all.seen, "9 10 9 9 ");
}

TEST(PacketAnalyzers, WrapFramesAndDescribeThem) {
    using namespace Metadata::Structural;
    auto const metadata = standardMetadata();
    createPreface(*metadata, {.operationalPattern = "060E2B34.04010101.0D010201.01010900"_key,
                              .product = {u"Company", u"Product", u"1", Types::UUID::generate()}});
    auto& file = createFilePackage(*metadata, {.bodySID = 1, .indexSID = 2});
    ANCAnalyzer anc(std::make_shared<Frames>(Templates::vector<Templates::vector<StoredPacket>>{
        {packetOn(9, 0x61, 0x01)}, {}, {packetOn(9, 0x61, 0x01)}, {packetOn(9, 0x61, 0x01)}}));
    VBIAnalyzer vbi(std::make_shared<Frames>(Templates::vector<Templates::vector<StoredPacket>>{}));
    EXPECT_FALSE(anc.preload());
    anc.setDuration({3, 25});
    for (PacketAnalyzer* const analyzer :
         {static_cast<PacketAnalyzer*>(&vbi), static_cast<PacketAnalyzer*>(&anc)}) {
        analyzer->editRate({25, 1});
        EXPECT_TRUE(analyzer->preload());
        // Two data elements: the multiplexer's rule makes it 17 02 xx 00.
        std::uint32_t const number =
            makeTrackNumber(analyzer->itemTypeIdentifier(), 2, analyzer->essenceElementType(), 0);
        EXPECT_TRUE(analyzer->setMetadata(*metadata, &file, number, 0));
    }
    EXPECT_EQ(anc.proposeKey(elementKey(0x17020200)), elementKey(ancTrackNumber));

    EditUnit unit;
    std::vector<std::uint64_t> sizes;
    while (anc.nextEditUnit(unit)) {
        sizes.push_back(unit.data.size());
        for (auto const& found : readFrameElement(ElementKind::ANC, unit.data).packets)
            EXPECT_EQ(readANC(found.stored).packet, Packet::ofBytes(0x61, 0x01, hex("01 02")));
        EXPECT_EQ(unit.duration, (Templates::Rational<std::int64_t>{1, 25}));
    }
    EXPECT_EQ(sizes, (std::vector<std::uint64_t>{24, 2, 24})) << "three frames are 3/25 seconds";
    EXPECT_TRUE(anc.done());
    EXPECT_TRUE(anc.finalize());
    EXPECT_TRUE(vbi.finalize());

    auto const tracks = file.tracks();
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[0]->trackNumber()->value(), vbiTrackNumber);
    EXPECT_EQ(tracks[1]->trackNumber()->value(), ancTrackNumber);
    EXPECT_EQ(tracks[1]->sequence()->duration()->value(), 3);
    auto const* const descriptor =
        dynamic_cast<ANCPacketsDescriptor const*>(fileDescriptorForTrack(file, *tracks[1]->trackID()));
    ASSERT_NE(descriptor, nullptr);
    EXPECT_EQ(*descriptor->essenceContainer(), Types::UniversalLabel(ancContainer));
    EXPECT_EQ(descriptor->containerDuration()->value(), 3);
    EXPECT_EQ(descriptor->sampleRate()->value(), (Templates::Rational<int>{25, 1}));
    EXPECT_NE(dynamic_cast<VBIDataDescriptor const*>(fileDescriptorForTrack(file, *tracks[0]->trackID())),
              nullptr);

    ANCAnalyzer bounded(std::make_shared<Frames>(
        Templates::vector<Templates::vector<StoredPacket>>{{packetOn(9, 0x61, 0x01)}}));
    bounded.editRate({25, 1});
    bounded.boundedEditUnitSize(23);
    EXPECT_TRUE(bounded.isCBE());
    EXPECT_THROW(bounded.nextEditUnit(unit), Exceptions::InvalidLength);
}

TEST(PacketAnalyzers, AreMultiplexedAndHandedOutAgain) {
    Templates::vector<Templates::vector<StoredPacket>> const frames{
        {packetOn(9, 0x61, 0x01), packetOn(571, 0x41, 0x05)}, {}, {packetOn(10, 0x60, 0x60)}};
    for (int const bound : {0, 100}) {
        TestMux test;
        for (std::shared_ptr<PacketAnalyzer> const& analyzer :
             {std::shared_ptr<PacketAnalyzer>(
                  std::make_shared<VBIAnalyzer>(std::make_shared<Frames>(frames))),
              std::shared_ptr<PacketAnalyzer>(
                  std::make_shared<ANCAnalyzer>(std::make_shared<Frames>(frames)))}) {
            analyzer->boundedEditUnitSize(bound);
            test.mux.addAnalyzer(analyzer, false, atStart);
        }
        auto const made = packagesOf(test);
        ASSERT_EQ(made.size(), frames.size());
        EXPECT_EQ(made[0].size() == made[1].size(), bound != 0) << "filled up to one size";
        for (std::size_t i = 0; i < made.size(); ++i) {
            auto const vbi = klv(elementKey(vbiTrackNumber), writtenElement(frames[i]));
            auto const anc = klv(elementKey(ancTrackNumber), writtenElement(frames[i]));
            EXPECT_TRUE(std::equal(vbi.begin(), vbi.end(), made[i].begin()));
            EXPECT_NE(std::search(made[i].begin() + 1, made[i].end(), anc.begin(), anc.end()), made[i].end());
        }
    }
}

} // namespace MXF::Zelm::Test
