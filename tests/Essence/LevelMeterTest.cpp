// The level meter: figures worked out by hand, whatever the size of samples and however they are cut.
#include "support/Bytes.h"

#include "MXF/Zelm/Essence/Wave/LevelMeter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <gtest/gtest.h>

#include <functional>

namespace MXF::Zelm::Test {

namespace {

using Essence::Wave::LevelMeter;
using Essence::Wave::WaveFormat;

WaveFormat formatOf(std::uint16_t channels, std::uint16_t bytes, std::uint32_t rate = 1000) {
    return {channels, rate, bytes, static_cast<std::uint16_t>(bytes * 8), 0};
}

/// Samples of 32 bits, of which the upper bytes are kept; `value(instant, channel)`.
Bytes samples(WaveFormat const& format, unsigned instants,
              std::function<std::int64_t(unsigned, unsigned)> const& value) {
    Bytes bytes;
    for (unsigned i = 0; i < instants; ++i)
        for (unsigned channel = 0; channel < format.channels; ++channel) {
            auto const sample = static_cast<std::uint32_t>(value(i, channel));
            for (unsigned byte = 4u - format.sampleBytes; byte < 4; ++byte)
                bytes.push_back(
                    static_cast<unsigned char>((sample >> 8 * byte) ^ (format.sampleBytes == 1 ? 0x80 : 0)));
        }
    return bytes;
}

LevelMeter measured(WaveFormat const& format, Bytes const& bytes, std::size_t piece,
                    std::size_t outlinePoints = 0) {
    LevelMeter meter(format, {.outlinePoints = outlinePoints});
    for (std::size_t at = 0; at < bytes.size(); at += piece)
        meter.take(
            DataIO::Chain(DataIO::Slice::copyOf(bytes.data() + at, std::min(piece, bytes.size() - at))));
    meter.finish();
    return meter;
}

constexpr std::int64_t half = std::int64_t{1} << 30, lowest = -(std::int64_t{1} << 31);

TEST(LevelMeterTest, FindsPeaksAndPowerInSamplesOfAnySize) {
    for (std::uint16_t bytes = 1; bytes <= 4; ++bytes) {
        auto const format = formatOf(2, bytes);
        auto const all = samples(format, 1003, [](unsigned i, unsigned channel) {
            return channel == 0 ? (i % 2 == 0 ? half : -half) : i == 500 ? lowest : std::int64_t{0};
        });
        for (std::size_t const piece : {all.size(), std::size_t{1}, std::size_t{7}}) {
            auto const meter = measured(format, all, piece);
            auto const& channels = meter.channels();
            EXPECT_EQ(meter.instants(), 1003u);
            EXPECT_DOUBLE_EQ(channels[0].all.peak(), 0.5);
            EXPECT_DOUBLE_EQ(channels[0].all.rms(), 0.5) << bytes;
            EXPECT_DOUBLE_EQ(channels[1].all.peak(), 1.0);
            EXPECT_DOUBLE_EQ(channels[1].all.squares, 1.0);
            EXPECT_EQ(channels[1].all.clipped, 0u);
        }
    }
    EXPECT_NEAR(Essence::Wave::decibels(0.5), -6.0206, 1e-4);
}

TEST(LevelMeterTest, CountsClippingInRunsAlsoAcrossBlocks) {
    auto const format = formatOf(1, 3);
    auto const all = samples(format, 100, [](unsigned i, unsigned) {
        bool const isHigh = (i >= 8 && i < 12) || i == 30 || i == 31; // a block has 10 instants
        bool const isLow = i >= 50 && i < 55;
        return isHigh ? 0x7FFFFF00 : isLow ? lowest : std::int64_t{0};
    });
    EXPECT_EQ(measured(format, all, all.size()).channels()[0].all.clipped, 9u);
    EXPECT_EQ(measured(format, all, 3).channels()[0].all.clipped, 9u);
}

TEST(LevelMeterTest, SilenceCountsFromASecondOn) {
    auto const format = formatOf(1, 2);
    auto const all = samples(format, 5000, [](unsigned i, unsigned) {
        bool const isLoud = i < 500 || (i >= 1200 && i < 1500);
        return isLoud ? half : std::int64_t{0x00010000}; // one bit is no sound
    });
    auto const meter = measured(format, all, 64);
    EXPECT_EQ(meter.channels()[0].stretches, (std::vector<LevelMeter::Stretch>{{1500, 3500}}));
    EXPECT_EQ(meter.channels()[0].silent, 3500u);
}

TEST(LevelMeterTest, TheOutlineKeepsItsSize) {
    auto const format = formatOf(1, 2);
    auto const all = samples(format, 1000, [](unsigned i, unsigned) { return i < 500 ? half : -half; });
    auto const meter = measured(format, all, 1000, 8);
    auto const& outline = meter.channels()[0].outline;
    ASSERT_EQ(meter.instantsOfPoint(), 80u);
    ASSERT_EQ(outline.size(), 13u);
    EXPECT_EQ(outline[0].least, half);
    EXPECT_EQ(outline[6].least, -half);
    EXPECT_EQ(outline[6].most, half);
    EXPECT_EQ(outline[12].count, 40u);
}

TEST(LevelMeterTest, RefusesFormatsWithoutSamples) {
    EXPECT_THROW(LevelMeter(formatOf(0, 2)), Exceptions::InvalidValue);
    EXPECT_THROW(LevelMeter(formatOf(1, 5)), Exceptions::InvalidValue);
    EXPECT_THROW(LevelMeter(formatOf(1, 2, 0)), Exceptions::InvalidValue);
}

} // namespace

} // namespace MXF::Zelm::Test
