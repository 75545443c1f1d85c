#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/AES3/EightChannelElement.h"
#include "MXF/Zelm/GenericContainer/Analyzers/D10Analyzer.h"
#include "MXF/Zelm/GenericContainer/Analyzers/D10SoundAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/Mux.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "support/AnalyzerPackage.h"
#include "support/MPEGStream.h"

namespace MXF::Zelm::Test {

using GenericContainer::D10Analyzer;
using GenericContainer::D10Format;
using GenericContainer::D10SoundAnalyzer;
using GenericContainer::EditUnit;

namespace {

std::shared_ptr<DataIO::SliceSource> sourceOf(Bytes const& bytes) {
    return std::make_shared<DataIO::BufferSliceSource>(bytes.data(), bytes.size());
}

/// A picture of `size` bytes, 625 lines; `rate` is the end of the sequence header, with the bit rate.
Bytes d10Picture(std::string_view rate, std::size_t size) {
    Bytes bytes = hex("00 00 01 B3 2D 02 60 23" + std::string(rate)) +
                  hex("00 00 01 B5 18 54 00 01 00 80  00 00 01 B8 00 08 00 40") + mpegPicture('I', 0, 3, 10);
    for (unsigned char row = 3; row <= 38; ++row)
        bytes = bytes + hex("00 00 01") + Bytes{row} + repeated(20, 0x77);
    return bytes + Bytes(size - bytes.size(), 0);
}

constexpr std::string_view rate30 = "49 3E 23 D8"; // 75000 units: 30 Mb/s

Bytes bytesOf(DataIO::Chain const& chain) {
    Bytes bytes(static_cast<std::size_t>(chain.size()));
    chain.copyTo(bytes.data(), bytes.size());
    return bytes;
}

D10Format const& pal30 = *D10Format::find(625, 30);

} // namespace

TEST(D10Analyzer, ChecksAndFillsPicturesOfConstantSize) {
    D10Analyzer analyzer(sourceOf(d10Picture(rate30, 150000) + d10Picture(rate30, 120000)));
    ASSERT_TRUE(analyzer.preload());
    EXPECT_EQ(analyzer.format().code, 5);
    EXPECT_EQ(analyzer.boundedEditUnitSize(), 150000u);
    EXPECT_EQ(analyzer.requiredKAGSize(), 512u);
    EXPECT_FALSE(analyzer.containsTemporalDependencies());
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<Metadata::Structural::CDCIEssenceDescriptor>(analyzer);
    EXPECT_EQ(*descriptor.storedHeight(), 304u);
    EXPECT_EQ(*descriptor.displayHeight(), 288u);
    EXPECT_EQ(*descriptor.displayYOffset(), 16);
    EXPECT_EQ(descriptor.pictureEssenceCoding()->toString(),
              u"urn:smpte:ul:060e2b34.04010101.04010202.01020105");
    EXPECT_EQ(descriptor.essenceContainer()->toString(), u"urn:smpte:ul:060e2b34.04010101.0d010301.02010501");
    EditUnit unit;
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(analyzer.nextEditUnit(unit));
        EXPECT_EQ(unit.data.size(), 150000u);
        EXPECT_EQ(unit.index.flags, 0xC0);
    }
    EXPECT_FALSE(analyzer.nextEditUnit(unit));
}

TEST(D10Analyzer, RefusesOtherStreamsAndLargerPictures) {
    EXPECT_FALSE(D10Analyzer(sourceOf(d10Picture("49 3E 63 D8", 150000))).preload()) << "no D-10 bit rate";
    EXPECT_FALSE(D10Analyzer(sourceOf(concatenated(mpegUnits({"SCI0", "I1"})))).preload());
    D10Analyzer larger(sourceOf(d10Picture(rate30, 150000) + d10Picture(rate30, 150001)));
    ASSERT_TRUE(larger.preload());
    EditUnit unit;
    EXPECT_TRUE(larger.nextEditUnit(unit));
    EXPECT_EQ(thrownBy<Exceptions::InvalidFormat>([&] { larger.nextEditUnit(unit); }),
              "D-10 picture 1 has 150001 bytes, more than 150000");
}

TEST(D10SoundAnalyzer, MakesElementsOfEightChannels) {
    auto const stereo = hex("A600 0BC0") + repeated(4 * 1921, 0x11); // 1923 instants of 16 bits
    auto const mono = hex("563412") + repeated(3 * 1919, 0);
    Templates::vector<D10SoundAnalyzer::Input> inputs = {{sourceOf(stereo), {2, 48000, 2, 16, 0}},
                                                         {sourceOf(mono), {1, 48000, 3, 24, 0}},
                                                         {sourceOf(hex("5F3412")), {1, 48000, 3, 20, 0}}};
    D10SoundAnalyzer analyzer(inputs, pal30);
    analyzer.channelMap(std::make_shared<Metadata::Structural::ChannelMap>("L,R;M1,M2"));
    ASSERT_TRUE(analyzer.preload());
    EXPECT_EQ(analyzer.boundedEditUnitSize(), 61444u);
    EditUnit unit;
    ASSERT_TRUE(analyzer.nextEditUnit(unit));
    auto const bytes = bytesOf(unit.data);
    ASSERT_EQ(bytes.size(), 61444u);
    EXPECT_TRUE(sameBytes(Bytes(bytes.begin(), bytes.begin() + 36), hex(R"(
        00 80 07 0F                       # 1920 samples, channels 1 to 4
        00 60 0A 00  01 B0 00 0C          # 00A6 and C00B of 16 bits
        62 45 23 01  03 45 23 01          # 123456 of 24, 12345 of 20
        04 00 00 00  05 00 00 00  06 00 00 00  07 00 00 00)")));
    std::vector<unsigned char> samples;
    Essence::AES3::EightChannelElement(unit.data).appendSamples(2, 2, samples);
    EXPECT_TRUE(sameBytes(samples, Bytes(stereo.begin(), stereo.begin() + 1920 * 4)));
    ASSERT_TRUE(analyzer.nextEditUnit(unit)) << "filled up with silence";
    EXPECT_EQ(unit.data.size(), 61444u);
    EXPECT_TRUE(analyzer.done());
    AnalyzerPackage package;
    auto const& descriptor =
        package.describedBy<Metadata::Structural::GenericSoundEssenceDescriptor>(analyzer);
    EXPECT_EQ(*descriptor.channelCount(), 4u);
    EXPECT_EQ(*descriptor.quantizationBits(), 24u);
    EXPECT_EQ(descriptor.subDescriptors().size(), 6u) << "four channels and two groups";
    inputs.push_back({sourceOf({}), {6, 48000, 2, 16, 0}});
    EXPECT_THROW(D10SoundAnalyzer(inputs, pal30), Exceptions::InvalidValue);
    EXPECT_THROW(D10SoundAnalyzer({{sourceOf({}), {1, 44100, 2, 16, 0}}}, pal30), Exceptions::InvalidValue);
}

TEST(D10SoundAnalyzer, CountsTheSequenceOfFive) {
    D10SoundAnalyzer analyzer({{sourceOf(Bytes(3 * 8008 * 2)), {1, 48000, 3, 24, 0}}},
                              *D10Format::find(525, 50));
    ASSERT_TRUE(analyzer.preload());
    EXPECT_EQ(analyzer.boundedEditUnitSize(), 51268u);
    EditUnit unit;
    for (unsigned i = 0; i < 10; ++i) {
        ASSERT_TRUE(analyzer.nextEditUnit(unit));
        Essence::AES3::EightChannelElement const element(unit.data);
        EXPECT_EQ(element.sequenceCount(), i % 5 + 1);
        EXPECT_EQ(element.sampleCount(), i % 5 % 2 == 0 ? 1602u : 1601u);
    }
    EXPECT_TRUE(analyzer.done());
}

TEST(D10SoundAnalyzer, PutsChannelStatusInTheWords) {
    Essence::AES3::ChannelStatus status;
    status.isProfessional(true);
    for (auto const& second : {status, Essence::AES3::ChannelStatus()}) {
        D10SoundAnalyzer analyzer({{sourceOf(Bytes(2 * 1920)), {1, 48000, 2, 16, 0}},
                                   {sourceOf(Bytes(2 * 1920)), {1, 48000, 2, 16, 0}, {second}}},
                                  pal30);
        ASSERT_TRUE(analyzer.preload());
        EditUnit unit;
        ASSERT_TRUE(analyzer.nextEditUnit(unit));
        auto const bytes = unit.data.contiguous();
        constexpr unsigned char channelStatusBit = 0x40;
        bool const isThere = second == status;
        EXPECT_EQ((bytes.data()[0] & 0x80) != 0, isThere);
        EXPECT_EQ(bytes.data()[4 + 3] & channelStatusBit, 0) << "channel 1 came with none";
        EXPECT_EQ((bytes.data()[4 + 4 + 3] & channelStatusBit) != 0, isThere);
    }
}

TEST(D10Analyzers, MakePackagesOfConstantSize) {
    AnalyzerPackage package;
    GenericContainer::Multiplexer::Mux mux(&package.package(), pal30.containerLabel(), {25, 1});
    Bytes pictures;
    for (int i = 0; i < 3; ++i)
        pictures = pictures + d10Picture(rate30, 150000);
    mux.addAnalyzer(std::make_shared<D10Analyzer>(sourceOf(pictures)), true, {0, 1});
    Templates::vector<D10SoundAnalyzer::Input> const sound = {
        {sourceOf(Bytes(2 * 3 * 1920)), {1, 48000, 2, 16, 0}}};
    mux.addAnalyzer(std::make_shared<D10SoundAnalyzer>(sound, pal30), false, {0, 1});
    auto const source = mux.commit();
    EXPECT_TRUE(source->isCBE());
    DataIO::Chain out;
    bool mayStart = false;
    GenericContainer::Source::FutureUpdaterPtr updater;
    Templates::Rational<std::int64_t> position;
    int packages = 0;
    for (; source->next(out, mayStart, updater, position); ++packages) {
        EXPECT_EQ(out.size(), 150528u + 61952u) << "picture and sound item of 625 lines, 30 Mb/s";
        unsigned char keys[2][16];
        out.copyTo(keys[0], 16);
        out.copyTo(keys[1], 16, 150528);
        EXPECT_TRUE(sameBytes({keys[0] + 12, keys[0] + 16}, hex("05 01 01 00")));
        EXPECT_TRUE(sameBytes({keys[1] + 12, keys[1] + 16}, hex("06 01 10 00")));
    }
    EXPECT_EQ(packages, 3);
    source->finalize();
    EXPECT_EQ(Metadata::Structural::durationOf(package.track()), 3);
}

} // namespace MXF::Zelm::Test
