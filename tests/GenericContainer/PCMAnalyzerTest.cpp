#include "MXF/Zelm/GenericContainer/Analyzers/PCMAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "support/AnalyzerPackage.h"
#include "support/WaveBytes.h"

#include <random>

namespace MXF::Zelm::Test {

using Essence::Wave::WaveFormat;
using GenericContainer::EditUnit;
using GenericContainer::makePCMAnalyzers;
using GenericContainer::PCMAnalyzer;
using GenericContainer::PCMOptions;
using GenericContainer::Wrapping;
using Metadata::Structural::AES3AudioEssenceDescriptor;
using Metadata::Structural::WAVEAudioEssenceDescriptor;

namespace {

constexpr Templates::Rational<int> ntsc = {30000, 1001};

Bytes noise(std::size_t size) {
    Bytes bytes(size);
    std::mt19937 random(1);
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

std::shared_ptr<DataIO::SliceSource> sourceOf(Bytes const& bytes) {
    return std::make_shared<DataIO::BufferSliceSource>(bytes.data(), bytes.size());
}

Bytes bytesOf(EditUnit const& unit) {
    Bytes bytes(static_cast<std::size_t>(unit.data.size()));
    unit.data.copyTo(bytes.data(), bytes.size());
    return bytes;
}

Bytes allOf(PCMAnalyzer& analyzer) {
    Bytes all;
    for (EditUnit unit; analyzer.nextEditUnit(unit);)
        all = all + bytesOf(unit);
    return all;
}

} // namespace

TEST(PCMAnalyzer, TellsItsGridBeforeItIsLookedAt) {
    struct {
        Templates::Rational<int> rate;
        bool isConstant;
        unsigned grid;
    } const cases[] = {{ntsc, true, 512}, {ntsc, false, 1}, {{25, 1}, true, 1}, {{}, true, 512}};
    for (auto const& [rate, isConstant, grid] : cases) {
        PCMAnalyzer const analyzer(sourceOf(noise(12)), {1, 48000, 3, 24, 0},
                                   {.editRate = rate, .hasConstantSize = isConstant});
        EXPECT_EQ(analyzer.requiredKAGSize(), grid);
    }
}

TEST(PCMAnalyzer, GivesTheSamplesOfEachFrame) {
    auto const bytes = noise(6 * 8008 + 6 * 100);
    PCMAnalyzer analyzer(sourceOf(bytes), {2, 48000, 3, 24, 0}, {.sampleCount = 8108});
    analyzer.editRate(ntsc);
    ASSERT_TRUE(analyzer.preload());
    EXPECT_FALSE(analyzer.isCBE());
    EXPECT_EQ(analyzer.requiredKAGSize(), 1u);
    Bytes all;
    EditUnit unit;
    for (std::size_t const samples : {1602u, 1601u, 1602u, 1601u, 1602u, 100u}) {
        EXPECT_FALSE(analyzer.done());
        ASSERT_TRUE(analyzer.nextEditUnit(unit));
        EXPECT_EQ(unit.data.size(), samples * 6);
        EXPECT_EQ(unit.duration, (Templates::Rational<std::int64_t>{1001, 30000}));
        all = all + bytesOf(unit);
    }
    EXPECT_TRUE(analyzer.done());
    EXPECT_FALSE(analyzer.nextEditUnit(unit));
    EXPECT_TRUE(sameBytes(all, bytes));
    EXPECT_TRUE(analyzer.finalize());
}

TEST(PCMAnalyzer, HasAConstantSizeWhereItCanOrIsToldTo) {
    struct Case {
        Templates::Rational<int> rate;
        bool isTold;
        bool isConstant;
        unsigned size;
        unsigned kag;
    };
    for (auto const& expected :
         {Case{{25, 1}, false, true, 3840, 1}, Case{{50, 1}, true, true, 1920, 1},
          Case{{24, 1}, false, true, 4000, 1}, Case{ntsc, true, true, 3204, 512},
          Case{ntsc, false, false, 3204, 1}, Case{{60000, 1001}, true, true, 1602, 512}}) {
        PCMAnalyzer analyzer(sourceOf({}), {1, 48000, 2, 16, 0}, {.hasConstantSize = expected.isTold});
        analyzer.editRate(expected.rate);
        ASSERT_TRUE(analyzer.preload());
        EXPECT_EQ(analyzer.isCBE(), expected.isConstant);
        EXPECT_EQ(analyzer.boundedEditUnitSize(), expected.size);
        EXPECT_EQ(analyzer.requiredKAGSize(), expected.kag);
    }
}

TEST(PCMAnalyzer, LeavesNoGapThatNoFillItemFitsIn) {
    for (std::size_t const missing : {1u, 9u, 10u}) {
        PCMAnalyzer analyzer(sourceOf(noise(2 * (1920 - missing))), {1, 48000, 2, 16, 0}, {});
        analyzer.editRate({25, 1});
        ASSERT_TRUE(analyzer.preload());
        EditUnit unit;
        ASSERT_TRUE(analyzer.nextEditUnit(unit));
        EXPECT_EQ(unit.data.size(), missing < 10 ? 3840u : 3820u);
    }
}

TEST(PCMAnalyzer, GivesClipsManySamplesAtOnce) {
    auto const bytes = noise(3'000'000);
    PCMAnalyzer analyzer(sourceOf(bytes), {1, 48000, 3, 24, 0}, {.wrapping = Wrapping::Clip});
    analyzer.editRate({25, 1});
    ASSERT_TRUE(analyzer.preload());
    EXPECT_EQ(analyzer.editRate(), (Templates::Rational<int>{48000, 1}));
    EXPECT_TRUE(analyzer.isCBE());
    EXPECT_EQ(analyzer.boundedEditUnitSize(), 3u);
    EXPECT_EQ(analyzer.universalLabel()[14], 2);
    EditUnit unit;
    ASSERT_TRUE(analyzer.nextEditUnit(unit));
    EXPECT_GT(unit.data.size(), 100'000u);
    EXPECT_EQ(unit.duration,
              (Templates::Rational<std::int64_t>{static_cast<std::int64_t>(unit.data.size() / 3), 48000}));
    EXPECT_TRUE(sameBytes(bytesOf(unit) + allOf(analyzer), bytes));
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<WAVEAudioEssenceDescriptor>(analyzer);
    EXPECT_TRUE(analyzer.finalize());
    EXPECT_EQ(*descriptor.containerDuration(), 1'000'000);
    PCMAnalyzer limited(sourceOf(bytes), {1, 48000, 3, 24, 0}, {.wrapping = Wrapping::Clip});
    limited.setDuration({1, 100});
    ASSERT_TRUE(limited.preload());
    EXPECT_EQ(allOf(limited).size(), 480u * 3);
}

TEST(PCMAnalyzer, SplitsChannelsAndJoinsThemInGroups) {
    for (unsigned const sampleBytes : {1u, 2u, 3u, 4u})
        for (unsigned const perTrack : {1u, 2u, 3u, 16u, 0u}) {
            constexpr unsigned channels = 7;
            auto const bytes = noise(sampleBytes * channels * 100'001 + 1);
            WaveFormat const format{channels, 48000, static_cast<std::uint16_t>(sampleBytes),
                                    static_cast<std::uint16_t>(sampleBytes * 8), 0};
            auto const analyzers = makePCMAnalyzers(sourceOf(bytes), format, perTrack, {.editRate = ntsc});
            unsigned const size = perTrack == 0 || perTrack > channels ? channels : perTrack;
            ASSERT_EQ(analyzers.size(), (channels + size - 1) / size);
            std::vector<Bytes> found(analyzers.size());
            for (auto const& analyzer : analyzers)
                ASSERT_TRUE(analyzer->preload());
            for (EditUnit unit; !analyzers.back()->done();)
                for (std::size_t i = 0; i < analyzers.size(); ++i)
                    if (analyzers[i]->nextEditUnit(unit))
                        found[i] = found[i] + bytesOf(unit);

            for (std::size_t sample = 0; sample < 100'001; sample += 997)
                for (std::size_t i = 0; i < analyzers.size(); ++i) {
                    std::size_t const block = analyzers[i]->format().blockAlign();
                    ASSERT_EQ(found[i].size(), block * 100'001);
                    auto const at = found[i].begin() + static_cast<std::ptrdiff_t>(sample * block);
                    auto const whole = bytes.begin() + static_cast<std::ptrdiff_t>(
                                                           (sample * channels + i * size) * sampleBytes);
                    ASSERT_TRUE(std::equal(at, at + static_cast<std::ptrdiff_t>(block), whole));
                }
        }
}

TEST(PCMAnalyzer, RefusesToReadOneChannelFarAheadOfAnother) {
    auto const bytes = noise(4 << 20);
    DataIO::Chain often;
    for (int i = 0; i < 40; ++i)
        often.append(DataIO::Slice::viewOf(bytes.data(), bytes.size()));
    auto analyzers = makePCMAnalyzers(std::make_shared<DataIO::BufferSliceSource>(often),
                                      {2, 48000, 2, 16, 0}, 1, {.editRate = {25, 1}});
    EditUnit unit;
    analyzers[0]->preload();
    EXPECT_THROW(while (analyzers[0]->nextEditUnit(unit)){}, Exceptions::InvalidStructure);
    analyzers.erase(analyzers.begin() + 1);
    EXPECT_NO_THROW(while (analyzers[0]->nextEditUnit(unit)){});
    EXPECT_TRUE(analyzers[0]->done());
}

TEST(PCMAnalyzer, DescribesWaveAndAES3) {
    PCMAnalyzer wave(sourceOf({}), {6, 48000, 4, 20, 0x3F}, {.editRate = ntsc});
    ASSERT_TRUE(wave.preload());
    AnalyzerPackage package;
    auto const& descriptor = package.describedBy<WAVEAudioEssenceDescriptor>(wave);
    EXPECT_EQ(*descriptor.quantizationBits(), 20u);
    EXPECT_EQ(*descriptor.blockAlign(), 24);
    EXPECT_EQ(*descriptor.avgBps(), 48000u * 24);
    EXPECT_EQ(*descriptor.sequenceOffset(), 0);
    EXPECT_EQ(descriptor.sampleRate()->value(), ntsc);
    PCMAnalyzer aes3(sourceOf({}), {1, 48000, 3, 24, 0},
                     {.mapping = PCMOptions::Mapping::AES3, .editRate = {25, 1}});
    ASSERT_TRUE(aes3.preload());
    AnalyzerPackage another;
    auto const& status = another.describedBy<AES3AudioEssenceDescriptor>(aes3);
    ASSERT_EQ(status.fixedChannelStatusData()->count(), 24u);
    EXPECT_EQ(status.fixedChannelStatusData()->at<Types::UInt8>(0), 0x85);
    EXPECT_EQ(status.fixedChannelStatusData()->at<Types::UInt8>(23), 0x2B) << "CRC of 85 00 2C 00 …";
    EXPECT_EQ(aes3.essenceElementType(), 3);
    EXPECT_EQ(status.sequenceOffset(), nullptr);
}

TEST(PCMAnalyzer, KeepsTheChannelStatusThatSoundCameWith) {
    using Essence::AES3::ChannelStatus;
    ChannelStatus emphasized;
    emphasized.isProfessional(true);
    emphasized.audioSignalEmphasis(ChannelStatus::Emphasis50_15);
    emphasized.useOfAuxiliarySampleBits(ChannelStatus::Coordination20Bits);
    PCMAnalyzer analyzer(sourceOf({}), {2, 48000, 3, 24, 0},
                         {.mapping = PCMOptions::Mapping::AES3,
                          .editRate = {25, 1},
                          .channelStatus = {emphasized, ChannelStatus()}});
    ASSERT_TRUE(analyzer.preload());
    AnalyzerPackage package;
    auto const& descriptor = package.describedBy<AES3AudioEssenceDescriptor>(analyzer);
    auto const& bytes = *descriptor.fixedChannelStatusData();
    EXPECT_EQ(bytes.at<Types::UInt8>(0), emphasized.rawBuffer()[0]);
    EXPECT_EQ(bytes.at<Types::UInt8>(24), 0x85) << "a block of zeros says nothing";
    EXPECT_EQ(*descriptor.emphasis(), 6) << "110 as AES3 writes it";
    EXPECT_EQ(*descriptor.auxBitsMode(), 2);
}

TEST(PCMAnalyzer, TellsTheChunksOfItsFileOnceEach) {
    using Metadata::Structural::WAVEAudioPhysicalDescriptor;
    auto const large = noise(200'000);
    Essence::Wave::WaveReader reader(
        sourceOf(riff("RIFF", waveFormat(1, 48000, 16) + chunk("odd!", hex("00 FF 01")) +
                                  chunk("data", noise(20)) + chunk("axml", large))));
    PCMAnalyzer analyzer(
        sourceOf({}), reader.format(),
        {.editRate = {25, 1}, .origin = std::make_shared<GenericContainer::WaveOrigin>(reader)});
    ASSERT_TRUE(analyzer.preload());
    AnalyzerPackage package;
    package.describedBy<WAVEAudioEssenceDescriptor>(analyzer);
    unsigned repeats = 0;
    for (auto* const set : package.metadata().packages())
        if (auto* const physical = dynamic_cast<WAVEAudioPhysicalDescriptor*>(
                dynamic_cast<Metadata::Structural::SourcePackage&>(*set).descriptor()))
            for (; repeats < 3; ++repeats)
                physical->addUnknownBWFChunk(*physical->unknownBWFChunks().front());
    EXPECT_EQ(repeats, 3u);
    auto const chunks = GenericContainer::originChunks(package.metadata(), package.package(), 256);
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(chunks[0].content, hex("00 FF 01"));
    EXPECT_TRUE(sameBytes(chunks[1].content, large));
}

TEST(PCMAnalyzer, TakesTimecodeFromTheTimeReferenceAndNamesEarlyEnds) {
    PCMAnalyzer analyzer(
        sourceOf(noise(2 * 1920 * 2 + 1)), {1, 48000, 2, 16, 0},
        {.editRate = {25, 1}, .timeReference = 48000ull * 36000 + 1921, .sampleCount = 9999});
    ASSERT_TRUE(analyzer.preload());
    EditUnit unit;
    ASSERT_TRUE(analyzer.nextEditUnit(unit));
    EXPECT_EQ(unit.timecode->toString(), u"10:00:00:01");
    ASSERT_TRUE(analyzer.nextEditUnit(unit));
    EXPECT_EQ(unit.timecode->toString(), u"10:00:00:02");
    EXPECT_FALSE(analyzer.nextEditUnit(unit));
    EXPECT_FALSE(analyzer.finalize());
    EXPECT_EQ(analyzer.fault(), "The sound ends amid a sample");
}

} // namespace MXF::Zelm::Test
