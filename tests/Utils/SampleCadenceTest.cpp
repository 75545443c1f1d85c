#include "MXF/Zelm/Utils/SampleCadence.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <gtest/gtest.h>

#include <vector>

namespace MXF::Zelm::Test {

using Utils::SampleCadence;

TEST(SampleCadence, SharesSamplesOutWithoutDrift) {
    struct Case {
        Templates::Rational<int> rate;
        std::vector<std::uint64_t> samples;
    };
    for (Case const& expected : {Case{{25, 1}, {1920, 1920, 1920}}, Case{{24000, 1001}, {2002, 2002, 2002}},
                                 Case{{30000, 1001}, {1602, 1601, 1602, 1601, 1602, 1602, 1601}},
                                 Case{{60000, 1001}, {801, 801, 800, 801, 801, 801, 801, 800}}}) {
        SampleCadence const cadence(48000, expected.rate);
        for (std::size_t i = 0; i < expected.samples.size(); ++i)
            EXPECT_EQ(cadence.samplesOf(i), expected.samples[i]) << expected.rate.numerator << " " << i;
        EXPECT_EQ(cadence.mostSamples(), expected.samples[0]);
        EXPECT_EQ(cadence.samplesBefore(std::uint64_t{30000} * 3600),
                  std::uint64_t{48000} * 3600 * 30000 * static_cast<unsigned>(expected.rate.denominator) /
                      static_cast<unsigned>(expected.rate.numerator));
    }
    EXPECT_EQ(SampleCadence(44100, {30000, 1001}).mostSamples(), 1472u);
    EXPECT_EQ(SampleCadence(48000, {30000, 1001}).samplesBefore(~0ull), ~0ull);
    EXPECT_EQ(SampleCadence({44100000, 1001}, {30000, 1001}).mostSamples(), 1470u);
    EXPECT_TRUE(SampleCadence({96000, 2}, {50, 2}).isConstant());
    EXPECT_EQ(SampleCadence(48000, {29970029, 1000000}).samplesBefore(29970029), 48000000000u);
    EXPECT_THROW(SampleCadence({48000, 0}, {25, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(SampleCadence(~0u, {25, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(SampleCadence(48000, {1, 0x7FFFFFFF}), Exceptions::InvalidValue);
    EXPECT_THROW(SampleCadence(48000, {0, 0}), Exceptions::InvalidValue);
    EXPECT_THROW(SampleCadence(48000, {-25, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(SampleCadence(10, {25, 1}), Exceptions::InvalidValue);
}

} // namespace MXF::Zelm::Test
