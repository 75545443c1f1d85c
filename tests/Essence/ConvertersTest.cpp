#include "Essence/Sound.h"
#include "MXF/Zelm/Essence/Converters/AES3Source.h"
#include "MXF/Zelm/Essence/Converters/ChannelMerger.h"
#include "MXF/Zelm/Essence/Converters/ChannelSplitter.h"
#include "MXF/Zelm/Essence/Converters/FrameSources.h"
#include "MXF/Zelm/Essence/Converters/PCMConverter.h"
#include "MXF/Zelm/Essence/Converters/PCMToAES3.h"

#include <bit>

namespace MXF::Zelm::Test {

using namespace Essence;
using namespace Essence::Converters;
using AES3::EightChannelWriter;

namespace {

constexpr auto little = PCMFormat::ByteOrder::Little, big = PCMFormat::ByteOrder::Big;

Bytes converted(Bytes const& bytes, PCMFormat const& from, PCMFormat const& to) {
    PCMConverter converter(sourceOf(cut(bytes, 7, 5)), from, to);
    return readAll(converter);
}

Bytes chosen(Bytes const& bytes, PCMFormat const& from, PCMFormat const& to,
             std::vector<unsigned> const& channels) {
    PCMConverter converter(sourceOf(bytes), from, to, channels);
    return readAll(converter);
}

} // namespace

TEST(PCMConverter, KeepsTheUpperBits) {
    struct {
        unsigned bits;
        PCMFormat::ByteOrder order;
        const char* bytes;
    } const formats[] = {{16, little, "BB AA 22 81"},          {16, big, "AA BB 81 22"},
                         {20, little, "C0 BB AA 30 22 81"},    {20, big, "AA BB C0 81 22 30"},
                         {24, little, "CF BB AA 34 22 81"},    {24, big, "AA BB CF 81 22 34"},
                         {32, big, "AA BB CF DE 81 22 34 45"}, {32, little, "DE CF BB AA 45 34 22 81"}};
    for (auto const& from : formats)
        for (auto const& to : formats) {
            auto const found = converted(hex(from.bytes), {2, from.bits, from.order}, {2, to.bits, to.order});
            // Widened samples end in zeros; narrowing them again shows the original.
            EXPECT_TRUE(
                sameBytes(converted(found, {2, to.bits, to.order}, {2, std::min(from.bits, to.bits), big}),
                          converted(hex(from.bytes), {2, from.bits, from.order},
                                    {2, std::min(from.bits, to.bits), big})));
            if (from.bits >= to.bits) {
                EXPECT_TRUE(sameBytes(found, hex(to.bytes))) << from.bits << " to " << to.bits;
            }
        }
    EXPECT_TRUE(sameBytes(converted(hex("BB AA"), {1, 16}, {1, 32}), hex("00 00 BB AA")));
    EXPECT_TRUE(
        sameBytes(converted(hex("FF BB AA"), {1, 20}, {1, 24}), hex("F0 BB AA"))); // no auxiliary bits
}

TEST(PCMConverter, ChoosesChannels) {
    auto const three = hex("01 00 02 00 03 00   11 00 12 00 13 00");
    EXPECT_TRUE(sameBytes(chosen(three, {3, 16}, {2, 16, big}, {2, 0}), hex("00 03 00 01  00 13 00 11")));
    EXPECT_TRUE(sameBytes(chosen(three, {3, 16}, {3, 24}, {1, PCMConverter::silence, 1}),
                          hex("00 02 00 00 00 00 00 02 00   00 12 00 00 00 00 00 12 00")));
    EXPECT_THROW(chosen(three, {3, 16}, {1, 16}, {3}), Exceptions::InvalidValue);
    EXPECT_THROW(chosen(three, {3, 16}, {2, 16}, {0}), Exceptions::InvalidValue);
    for (PCMFormat const& bad : {PCMFormat{0, 16}, PCMFormat{3, 8}, PCMFormat{3, 40}, PCMFormat{2, 16}})
        EXPECT_THROW(converted(three, {3, 16}, bad), Exceptions::InvalidValue);
    PCMConverter converter(sourceOf(Bytes(16)), {3, 16}, {3, 16});
    EXPECT_EQ(readAll(converter).size(), 12u);
    EXPECT_EQ(converter.leftOver(), 4u);
}

TEST(PCMConverter, SkipsAndTellsWhereItIs) {
    auto const bytes = samples(100'000, 24);
    PCMConverter converter(sourceOf(bytes), {2, 24}, {2, 16});
    EXPECT_EQ(converter.skip(100'001), 100'001u);
    EXPECT_EQ(converter.absoluteOffset(), 100'001u);
    EXPECT_EQ(readAll(converter), slice(converted(bytes, {2, 24}, {2, 16}), 100'001, ~0ull));
    EXPECT_EQ(converter.skip(1), 0u);
}

TEST(ChannelSplitter, WhatIsSplitAndMergedIsTheSame) {
    PCMFormat const format = {5, 24};
    auto const bytes = samples(5 * 20'000, 24);
    ChannelSplitter splitter(sourceOf(cut(bytes + Bytes(7), 999, 1)), 5, 3);
    ChannelMerger merger({{splitter.group({3, 0, 1}), {3, 24}},
                          {splitter.range(2, 1), {1, 24}},
                          {splitter.range(4, 1), {1, 24}}},
                         24);
    EXPECT_EQ(merger.format(), format);
    EXPECT_TRUE(chosen(readAll(merger), format, format, {1, 2, 3, 0, 4}) == bytes);
    for (auto const& [channels, size] : {std::pair{0u, 2u}, {1u, 0u}, {1u, 9u}, {65536u, 1u}})
        EXPECT_THROW(ChannelSplitter(sourceOf(bytes), channels, size), Exceptions::InvalidValue);
    EXPECT_THROW(splitter.group({0, 5}), Exceptions::InvalidValue);
    EXPECT_THROW(splitter.group({}), Exceptions::InvalidValue);
    EXPECT_THROW(splitter.range(4, 2), Exceptions::InvalidValue);
    EXPECT_THROW(splitter.range(2, ~0u), Exceptions::InvalidValue);
}

TEST(ChannelSplitter, KeepsNoMoreThanAllowed) {
    auto const bytes = samples(2 * 200'000, 16);
    ChannelSplitter splitter(sourceOf(bytes), 2, 2, 100'000);
    auto const first = splitter.range(0, 1);
    auto second = splitter.range(1, 1);
    EXPECT_THROW(first->skip(300'000), Exceptions::InvalidStructure);
    EXPECT_EQ(second->skip(50'000), 50'000u); // they wait for it
    second.reset();                           // now nothing does
    auto const before = first->absoluteOffset();
    EXPECT_EQ(first->skip(~0ull), 400'000u - before);
}

TEST(ChannelMerger, IsSilentBehindTheEndOfAPart) {
    ChannelMerger merger(
        {{sourceOf(hex("11 11 22 22 33 33")), {1, 16}}, {sourceOf(hex("AA BB CC DD EE FF")), {2, 24, big}}},
        16);
    EXPECT_TRUE(sameBytes(readAll(merger), hex("11 11 BB AA EE DD  22 22 00 00 00 00  33 33 00 00 00 00")));
    EXPECT_THROW(ChannelMerger({}, 16), Exceptions::InvalidValue);
}

// The first words as they stand in a file of another writer.
TEST(EightChannelElement, WordsStandWhereTheStandardHasThem) {
    EightChannelWriter writer({2, 16}, {25, 1});
    auto const element = writer.element(cut(hex("A6 00 FF FF"), 4, 0));
    EXPECT_TRUE(sameBytes({element.begin(), element.end()}, hex(R"(
        00  01 00  03                    # no flags, one sample, two channels
        00 60 0A 00  01 F0 FF 0F  02 00 00 00  03 00 00 00
        04 00 00 00  05 00 00 00  06 00 00 00  07 00 00 00
    )")));
    writer.channelStatus(AES3::AES3Info{2, 16, {48000, 1}}.channelStatus());
    auto const flagged = writer.element(cut(hex("A6 00 FF FF"), 4, 0));
    // Start of a block, first status bit 1, even parity over bits 4 to 31.
    EXPECT_TRUE(
        sameBytes({flagged.begin(), flagged.begin() + 12}, hex("80 01 00 03  08 60 0A C0  09 F0 FF CF")));

    std::vector<std::size_t> sizes;
    Bytes sequence;
    EightChannelWriter cadence({1, 24}, {30000, 1001});
    for (int i = 0; i < 6; ++i) {
        auto const next = cadence.element(cut(Bytes(cadence.nextSampleCount() * 3), 5000, 0));
        sizes.push_back(next.size());
        sequence.push_back(*next.begin());
    }
    EXPECT_EQ(sizes, (std::vector<std::size_t>{51268, 51236, 51268, 51236, 51268, 51268}));
    EXPECT_EQ(sequence, hex("01 02 03 04 05 01"));
}

TEST(EightChannelElement, SamplesComeBack) {
    for (unsigned const bits : {16u, 20u, 24u})
        for (unsigned channels = 1; channels <= 8; ++channels) {
            PCMFormat const format = {channels, bits};
            auto const pcm = samples(5000 * channels, bits);
            EightChannelWriter writer(format, {60000, 1001});
            if (channels % 2 == 0)
                writer.channelStatus(AES3::ChannelStatus());
            auto const elements = std::make_shared<PCMToS331M>(sourceOf(cut(pcm, 500, 1)), std::move(writer));
            S331MToPCM back(elements, format);
            EXPECT_TRUE(readAll(back) == pcm) << bits << " bits, " << channels << " channels";
        }
    // Channels without a flag are silent, unless none has one.
    auto const words = hex("10 32 54 06 21 43 65 07") + Bytes(24);
    S331MToPCM second(sourceOf(hex("00 01 00 02") + words), {2, 24});
    EXPECT_TRUE(sameBytes(readAll(second), hex("00 00 00 32 54 76")));
    S331MToPCM both(sourceOf(hex("00 01 00 00") + words), {2, 16});
    EXPECT_TRUE(sameBytes(readAll(both), hex("43 65 54 76")));
}

TEST(EightChannelElement, IsRefusedWhenCutOff) {
    auto const element = hex("00 01 00 FF") + pattern(32);
    survivesEveryFault(element + element, [](Bytes const& bytes) {
        S331MToPCM source(sourceOf(bytes), {8, 16});
        readAll(source);
    });
    S331MToPCM source(sourceOf(element + Bytes(element.begin(), element.end() - 1)), {8, 24});
    try {
        readAll(source);
        ADD_FAILURE() << "nothing was thrown";
    } catch (Exceptions::InvalidLength const& failure) {
        EXPECT_EQ(failure.offset(), 36u);
    }
    EXPECT_EQ(source.absoluteOffset(), 24u);
    EXPECT_THROW(EightChannelWriter({9, 16}, {25, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(EightChannelWriter({2, 32}, {25, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(EightChannelWriter({2, 16}, {1, 2}), Exceptions::InvalidValue);
    EXPECT_THROW(S331MToPCM(sourceOf(element), {8, 24, big}), Exceptions::InvalidValue);
    EXPECT_THROW(EightChannelWriter({2, 16}, {25, 1}).element(cut(Bytes(5), 5, 0)),
                 Exceptions::InvalidLength);
}

TEST(AES3Source, SubframesComeBack) {
    auto const status = AES3::AES3Info{3, 24, {48000, 1}}.channelStatus();
    for (unsigned const bits : {16u, 24u})
        for (unsigned const size : {3u, 4u}) {
            auto const pcm = samples(3 * 10'000, bits);
            auto const subframes =
                std::make_shared<PCMToAES3>(sourceOf(cut(pcm, 40, 1)), PCMFormat{3, bits}, size, status);
            AES3Source source(subframes, {3, bits, {48000, 1}}, size);
            EXPECT_TRUE(readAll(source) == pcm);
        }
    PCMToAES3 words(sourceOf(samples(3 * 400, 24)), {3, 24}, 4, status);
    auto const bytes = readAll(words);
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        std::uint32_t const word = bytes[i] | std::uint32_t{bytes[i + 1]} << 8 |
                                   std::uint32_t{bytes[i + 2]} << 16 | std::uint32_t{bytes[i + 3]} << 24;
        EXPECT_EQ(std::popcount(word >> 4) % 2, 0);
        unsigned const frame = static_cast<unsigned>(i / 12) % 192;
        EXPECT_EQ(word & 15, i / 4 % 3 | (frame == 0 ? 8u : 0u));
        EXPECT_EQ((word >> 30 & 1) != 0, status.bit(frame));
    }
}

TEST(AES3Source, RefusesOtherSizes) {
    auto const make = [](unsigned bits, unsigned size) {
        AES3Source(sourceOf(Bytes{}), {2, bits, {48000, 1}}, size);
    };
    make(16, 2);
    for (auto const& [bits, size] : {std::pair{16u, 1u}, {16u, 5u}, {24u, 2u}, {24u, 0u}})
        EXPECT_EQ(thrownBy<Exceptions::InvalidFormat>([&, b = bits, s = size] { make(b, s); }),
                  "AES3 has invalid bytes per Sample");
    EXPECT_EQ(thrownBy<Exceptions::InvalidFormat>([&] { make(20, 3); }),
              "AES3 source still does not support 20 bit per sample. Contact the maintainers of MXF::Zelm.");
    EXPECT_THROW(make(32, 4), Exceptions::InvalidValue);
    EXPECT_THROW(PCMToAES3(sourceOf(Bytes{}), {2, 24}, 5), Exceptions::InvalidFormat);
    EXPECT_THROW(PCMToAES3(sourceOf(Bytes{}), {2, 32}, 4), Exceptions::InvalidValue);
}

} // namespace MXF::Zelm::Test
