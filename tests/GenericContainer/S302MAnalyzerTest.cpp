#include "MXF/Zelm/GenericContainer/Analyzers/S302MAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/AES3/S302M/PacketWriter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "support/AnalyzerPackage.h"
#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using GenericContainer::EditUnit;
using GenericContainer::S302MAnalyzer;
using Metadata::Structural::GenericSoundEssenceDescriptor;

namespace {

constexpr Templates::Rational<int> pal = {25, 1}, ntsc = {30000, 1001};

/// Packets of stereo sound of 20 bits, with as many instants each as told.
std::vector<DataIO::Chain> packetsOf(std::vector<std::size_t> const& instants) {
    Essence::AES3::S302M::PacketWriter writer({2, 20, {48000, 1}}, pal);
    std::vector<DataIO::Chain> packets;
    for (std::size_t const count : instants)
        packets.emplace_back(writer.packet(
            DataIO::Slice::adopt(repeated(6 * count, static_cast<unsigned char>(packets.size() * 16)))));
    return packets;
}

std::shared_ptr<DataIO::SliceSource> sourceOf(std::vector<DataIO::Chain> const& packets) {
    DataIO::Chain all;
    for (auto const& packet : packets)
        all.append(packet);
    return std::make_shared<DataIO::BufferSliceSource>(all);
}

/// Bytes of each edit unit.
std::vector<std::uint64_t> unitSizes(S302MAnalyzer& analyzer) {
    std::vector<std::uint64_t> found;
    EXPECT_TRUE(analyzer.preload());
    for (EditUnit unit; analyzer.nextEditUnit(unit);)
        found.push_back(unit.data.size());
    return found;
}

} // namespace

TEST(S302MAnalyzer, KeepsThePacketOfEachPicture) {
    auto const packets = packetsOf({1601, 1602, 1602, 1601, 1602, 1601, 700}); // a cadence that began before
    S302MAnalyzer analyzer(sourceOf(packets));
    analyzer.editRate(ntsc);
    ASSERT_TRUE(analyzer.preload());
    AnalyzerPackage package;
    auto const& descriptor = package.describedBy<GenericSoundEssenceDescriptor>(analyzer);
    EXPECT_EQ(*descriptor.channelCount(), 2u);
    EXPECT_EQ(*descriptor.quantizationBits(), 20u);
    EXPECT_EQ((*descriptor.essenceContainer()).key()[14], 0xBD & 0x7F) << "private stream 1";
    EditUnit unit;
    for (auto const& packet : packets) {
        ASSERT_TRUE(analyzer.nextEditUnit(unit));
        EXPECT_TRUE(unit.data == packet);
    }
    EXPECT_FALSE(analyzer.nextEditUnit(unit));
    EXPECT_TRUE(analyzer.finalize());
    EXPECT_EQ(*descriptor.containerDuration(), 7);
}

TEST(S302MAnalyzer, SharesOutPacketsThatAreNoPictures) {
    S302MAnalyzer shorter(sourceOf(packetsOf({1000, 1000, 1000, 1000, 1000})));
    shorter.editRate(pal);
    EXPECT_EQ(unitSizes(shorter), (std::vector<std::uint64_t>{2 * 6004, 2 * 6004, 6004}));
    S302MAnalyzer early(sourceOf(packetsOf({1920, 1920, 1920})), -1000);
    early.editRate(pal);
    EXPECT_EQ(unitSizes(early), (std::vector<std::uint64_t>{4 + 6 * 1920, 4 + 6 * 1920}))
        << "of a first one most is before";
}

TEST(S302MAnalyzer, RefusesPacketsThatLeaveEditUnitsEmpty) {
    S302MAnalyzer longer(sourceOf(packetsOf({1920, 1920}))), late(sourceOf(packetsOf({1920})), 1000);
    longer.editRate({50, 1});
    EXPECT_THROW(longer.preload(), Exceptions::InvalidValue);
    late.editRate(pal);
    EXPECT_THROW(late.preload(), Exceptions::InvalidValue);
    S302MAnalyzer gap(sourceOf(packetsOf({1920, 100, 100, 1920})));
    gap.editRate({30, 1});
    EXPECT_THROW(gap.preload(), Exceptions::InvalidValue);
    EXPECT_FALSE(S302MAnalyzer(sourceOf({})).preload());
}

TEST(S302MAnalyzer, EndsWithWhatIsNoWholePacket) {
    auto const right = packetsOf({1920, 1920});
    auto const cut = right[1].part(0, right[1].size() - 1);
    DataIO::Chain const none(DataIO::Slice::adopt(hex("0001 0000 00"))),
        four(DataIO::Slice::adopt(hex("000A 4000 0000000000 0000000000")));
    for (auto const& bad : {cut, none, four}) {
        S302MAnalyzer analyzer(sourceOf({right[0], bad}));
        analyzer.editRate(pal);
        EXPECT_EQ(unitSizes(analyzer).size(), 1u);
        EXPECT_FALSE(analyzer.finalize());
        EXPECT_NE(analyzer.fault().find("at 0x2D04"), std::string::npos) << analyzer.fault();
    }
}

} // namespace MXF::Zelm::Test
