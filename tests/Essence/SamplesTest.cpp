// Samples out of AES3 elements, their auxiliary bits, and channels of several sounds side by side.
#include "MXF/Zelm/DataIO/Slice.h"
#include "MXF/Zelm/Essence/AES3/EightChannelElement.h"
#include "MXF/Zelm/Essence/Converters/SampleConverters.h"

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

namespace {

using namespace Essence;
using AES3::EightChannelElement;
using Converters::Interleaver;

/// Two samples; channels 1 and 2 and, in the second sample, a third that is not flagged.
Bytes const element = hex(R"(
    81 0200 03
    00600A00 F1EFCDAB 02000000 03000000 04000000 05000000 06000000 07000000
    0800F0FF 01000008 F2FFFFFF 03000000 04000000 05000000 06000000 07000000
)");

/// The same bytes in slices of `size`.
DataIO::Chain cut(Bytes const& bytes, std::size_t size) {
    DataIO::Chain chain;
    for (std::size_t i = 0; i < bytes.size(); i += size)
        chain.append(DataIO::Slice::copyOf(bytes.data() + i, std::min(size, bytes.size() - i)));
    return chain;
}

Bytes samplesOf(Bytes const& bytes, unsigned channels, unsigned sampleBytes, std::size_t cutAt = 1000) {
    Bytes samples;
    EightChannelElement(cut(bytes, cutAt)).appendSamples(channels, sampleBytes, samples);
    return samples;
}

TEST(EightChannelElement, GivesSamplesAsInAWaveFile) {
    for (std::size_t const cutAt : {1u, 5u, 1000u}) {
        EXPECT_EQ(samplesOf(element, 3, 3, cutAt), hex("00A600 FFDEBC 000000  00 00FF 000080 000000"));
        EXPECT_EQ(samplesOf(element, 2, 2, cutAt), hex("A600 DEBC 00FF 0080"));
    }
    auto unflagged = element;
    unflagged[3] = 0; // then all are there
    EXPECT_EQ(samplesOf(unflagged, 3, 3), hex("00A600 FFDEBC 000000  0000FF 000080 FFFFFF"));
    EightChannelElement const read(cut(element, 7));
    EXPECT_EQ(read.sampleCount(), 2u);
    EXPECT_EQ(read.channelFlags(), 3u);
    EXPECT_EQ(read.sequenceCount(), 1u);
    EXPECT_TRUE(read.hasAuxiliaryBits());
}

TEST(EightChannelElement, HoldsWhatItSays) {
    for (std::size_t size = 0; size < element.size(); ++size)
        EXPECT_THROW(samplesOf(Bytes(element.begin(), element.begin() + static_cast<long>(size)), 8, 3),
                     Exceptions::InvalidLength);
    EXPECT_EQ(samplesOf(element + Bytes(40, 0xFF), 8, 3).size(), 48u); // more than that is passed over
    for (unsigned const channels : {0u, 9u})
        EXPECT_THROW(samplesOf(element, channels, 3), Exceptions::InvalidValue);
    for (unsigned const bytes : {1u, 4u})
        EXPECT_THROW(samplesOf(element, 8, bytes), Exceptions::InvalidValue);
}

TEST(SampleConverters, ClearAuxiliaryBits) {
    Bytes samples = hex("77");
    Converters::appendWithoutAuxiliaryBits(cut(hex("1F2233 4F5566 7F88"), 2), samples);
    EXPECT_EQ(samples, hex("77 102233 405566 7F88"));
}

TEST(Interleaver, PutsChannelsSideBySide) {
    Interleaver mix({2, 1, 3});
    Bytes mixed;
    mix.add(0, cut(hex("A1A2 B1B2 C1"), 1));
    mix.add(1, cut(hex("A3 B3 C3 D3"), 3));
    mix.takeInto(mixed);
    EXPECT_TRUE(mixed.empty());
    mix.add(2, cut(hex("A4A5A6 B4B5B6 C4C5C6"), 2));
    mix.takeInto(mixed);
    EXPECT_EQ(mixed, hex("A1A2 A3 A4A5A6  B1B2 B3 B4B5B6"));
    EXPECT_EQ(mix.waiting(), 1u + 2u + 3u);
    mix.add(0, cut(hex("C2"), 1));
    mix.fill(0x80);
    mix.takeInto(mixed);
    EXPECT_EQ(mixed, hex("A1A2 A3 A4A5A6  B1B2 B3 B4B5B6  C1C2 C3 C4C5C6  8080 D3 808080"));
    EXPECT_EQ(mix.waiting(), 0u);
    EXPECT_THROW(Interleaver({2, 0}), Exceptions::InvalidValue);
}

} // namespace

} // namespace MXF::Zelm::Test
