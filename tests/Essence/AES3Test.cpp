#include "Essence/Sound.h"
#include "MXF/Zelm/Essence/AES3/AES3Info.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatusDumper.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatusLoader.h"
#include "MXF/Zelm/Essence/AES3/S302M/PacketWriter.h"
#include "MXF/Zelm/Essence/AES3/S302M/Source.h"

#include <cstring>

namespace MXF::Zelm::Test {

using namespace Essence::AES3;
using Rate = Templates::Rational<int>;
using S302M::SamplePacking;

namespace {

constexpr auto in24Bits = S302M::Source::TwentyBits::In24Bits;

/// A channel status block with one byte set.
ChannelStatus statusWith(std::size_t index, unsigned char value) {
    unsigned char bytes[ChannelStatus::blockSize] = {};
    bytes[index] = value;
    return ChannelStatus(bytes);
}

/// All packets of some samples.
Bytes packets(S302M::PacketWriter& writer, Bytes const& pcm) {
    DataIO::Chain rest = cut(pcm, 1000, 7), result;
    while (!rest.empty())
        result.append(
            writer.packet(rest.splitFrontUpTo(writer.nextSampleCount() * writer.packing().pcmSize())));
    return bytesOf(result);
}

} // namespace

TEST(AES3Header, FieldsStandWhereTheStandardHasThem) {
    S302M::Header header(hex("00 10 40 20").data());
    EXPECT_EQ(header.audioPacketSize(), 16);
    EXPECT_EQ(header.numberOfChannels(), 4);
    EXPECT_EQ(header.bitsPerSample(), 24);
    EXPECT_EQ(header.channelIdentification(), 0);

    header = S302M::Header(hex("12 34 FF CA").data());
    EXPECT_EQ(header.channelIdentification(), 0xFF);
    header.numberOfChannels(6);
    for (unsigned char const other : hex("00 01 03 0A"))
        header.numberOfChannels(other);
    header.bitsPerSample(20);
    header.bitsPerSample(18);
    EXPECT_TRUE(sameBytes(written(header), hex("12 34 BF DA")));
    header.channelIdentification(0x81);
    header.audioPacketSize(0xFFFE);
    EXPECT_TRUE(sameBytes(written(header), hex("FF FE A0 5A")));
    EXPECT_EQ(header.channelIdentification(), 0x81);
    EXPECT_EQ(
        thrownBy<Exceptions::InvalidFormat>([] { S302M::Header(hex("00 00 00 30").data()).bitsPerSample(); }),
        "AES3 S302M stream contains an invalid number of bits per sample");
}

TEST(AES3ChannelStatus, FieldsStandWhereTheStandardHasThem) {
    AES3Info const info = {2, 24, {48000, 1}};
    auto status = info.channelStatus();
    Bytes const expected = hex("85 08 2C") + repeated(20, 0) + hex("42");
    EXPECT_TRUE(sameBytes({status.rawBuffer(), status.rawBuffer() + status.serializedSize()}, expected));
    EXPECT_EQ(statusWith(0, 1).crc(), 0x32);
    EXPECT_TRUE(status.hasValidCRC());
    status.lockIndication(true);
    status.audioSignalEmphasis(ChannelStatus::EmphasisJ17);
    status.channelMode(ChannelStatus::Multichannel);
    status.useOfAuxiliarySampleBits(ChannelStatus::Coordination20Bits);
    EXPECT_FALSE(status.hasValidCRC());
    DataIO::Memory::MemoryDataSink sink;
    status.serializeData(sink);
    EXPECT_TRUE(sameBytes(writtenTo(sink), hex("BD 0F 2A") + repeated(20, 0) + hex("42")));
    EXPECT_TRUE(status.lockIndication());
    EXPECT_EQ(status.audioSignalEmphasis(), 7);
    EXPECT_EQ(status.channelMode(), 15);
    EXPECT_EQ(status.useOfAuxiliarySampleBits(), 2);
    status.reset();
    EXPECT_EQ(status, ChannelStatus());
}

TEST(AES3ChannelStatus, WordLengthDependsOnTheAuxiliaryBits) {
    struct {
        unsigned char use;
        unsigned char lengths[8];
    } const rows[] = {{4, {16, 20, 22, 16, 23, 24, 21, 16}},
                      {0, {16, 16, 18, 16, 19, 20, 17, 16}},
                      {2, {16, 16, 18, 16, 19, 20, 17, 16}},
                      {6, {0, 0, 0, 0, 0, 0, 0, 0}}};
    for (auto const& row : rows)
        for (unsigned code = 0; code < 8; ++code)
            EXPECT_EQ(statusWith(2, static_cast<unsigned char>(row.use | code << 3)).sourceWordLength(),
                      row.lengths[code])
                << int(row.use) << " " << code;
    for (unsigned char const use : hex("00 02 04 06"))
        for (unsigned char bits = 16; bits <= 24; ++bits) {
            auto status = statusWith(2, use);
            status.sourceWordLength(bits);
            EXPECT_EQ(status.sourceWordLength(), bits);
        }
    EXPECT_THROW(ChannelStatus().sourceWordLength(25), Exceptions::InvalidValue);
}

TEST(AES3ChannelStatus, RatesComeFromEitherByte) {
    int const byte0[] = {0, 44100, 48000, 32000};
    for (unsigned code = 0; code < 4; ++code)
        EXPECT_EQ(statusWith(0, static_cast<unsigned char>(code << 6)).samplingFrequencyFromByte0(),
                  (code == 0 ? Rate{} : Rate{byte0[code], 1}));
    EXPECT_EQ(statusWith(4, 0x90).samplingFrequencyFromByte4(), (Rate{96000, 1}));
    EXPECT_EQ(statusWith(4, 0x90).samplingFrequency(), (Rate{96000000, 1001}));
    EXPECT_FALSE(statusWith(4, 0x78).samplingFrequency().isKnown());
    ChannelStatus status;
    for (Rate const& rate : {Rate{48000, 1}, Rate{192000, 1}, Rate{44100000, 1001}, Rate{22050, 1}, Rate{}}) {
        status.samplingFrequency(rate);
        EXPECT_EQ(status.samplingFrequency(), rate);
    }
    EXPECT_THROW(status.samplingFrequency({47999, 1}), Exceptions::InvalidValue);
}

TEST(AES3ChannelStatus, TravelsBitByBit) {
    auto const status = AES3Info{2, 20, {32000, 1}}.channelStatus();
    ChannelStatusDumper dumper(status);
    ChannelStatusLoader loader;
    dumper.pop(); // begins within a block
    for (unsigned i = 1; i < 2 * ChannelStatus::blockBits; ++i) {
        EXPECT_FALSE(loader.isComplete()) << i;
        auto const [bit, start] = dumper.pop();
        loader.push(bit, start);
    }
    EXPECT_TRUE(loader.isComplete());
    EXPECT_EQ(loader.channelStatus(), status);
    loader.push(true, false); // a block that is too long
    EXPECT_EQ(loader.channelStatus(), status);
    loader.push(true, true);
    EXPECT_FALSE(loader.isComplete());
    EXPECT_EQ(loader.channelStatus(), statusWith(0, 1));
}

TEST(AES3Info, OrdersByChannelsBitsAndRate) {
    AES3Info const rising[] = {{2, 16, {}},         {2, 16, {44100, 1}}, {2, 16, {48000, 1}},
                               {2, 16, {96000, 1}}, {2, 20, {44100, 1}}, {4, 16, {}}};
    for (auto const& a : rising)
        for (auto const& b : rising)
            EXPECT_TRUE((&a < &b) == (a < b) && (&a == &b) == (a == b));
    EXPECT_EQ((AES3Info{2, 16, {48000, 1}}), (AES3Info{2, 16, {96000, 2}}));
    AES3Info read = {2, 0, {48000, 1}};
    read.read(ChannelStatus()); // says no rate
    EXPECT_EQ(read, (AES3Info{2, 16, {48000, 1}}));
}

// Bytes as an independent encoder wrote them for the same samples.
TEST(S302M, PacksAsTheStandardHasIt) {
    struct {
        unsigned bits;
        const char *pcm, *packed, *later;
    } const rows[] = {{16, "66 26 66 A6", "66 64 16 66 50", "66 64 06 66 50"},
                      {20, "60 66 26 60 66 A6", "66 66 41 66 66 50", "66 66 40 66 66 50"},
                      {24, "66 66 26 66 66 A6", "66 66 64 16 66 66 50", "66 66 64 06 66 66 50"}};
    for (auto const& row : rows) {
        S302M::PacketWriter writer({2, row.bits, {48000, 1}}, {25, 1});
        auto const packet = writer.packet(cut(hex(row.pcm) + hex(row.pcm), 3, 0));
        Bytes const bytes(packet.begin() + S302M::Header::size(), packet.end());
        EXPECT_TRUE(sameBytes(bytes, hex(row.packed) + hex(row.later)));
        S302M::Header const header(packet.data());
        EXPECT_EQ(header.audioPacketSize(), bytes.size());
        EXPECT_EQ(header.bitsPerSample(), row.bits);
    }
}

TEST(S302M, SamplesAndChannelStatusComeBack) {
    Rate const rates[] = {{24, 1}, {24000, 1001}, {25, 1}, {30000, 1001}, {50, 1}, {60000, 1001}, {60, 1}};
    for (unsigned const bits : {16u, 20u, 24u})
        for (unsigned channels = 2; channels <= 8; channels += 2) {
            Rate const& rate = rates[(bits / 4 + channels / 2) % 7];
            AES3Info const info = {channels, bits, {48000, 1}};
            S302M::PacketWriter writer(info, rate, 7);
            auto second = info.channelStatus();
            second.channelMode(ChannelStatus::SingleChannel);
            writer.channelStatus(1, second);
            auto const pcm = samples(5000 * channels, bits);
            auto const bytes = packets(writer, pcm);
            for (auto const& chain : {cut(bytes, bytes.size(), 0), cut(bytes, 3, 2)}) {
                S302M::Source source(sourceOf(chain), in24Bits);
                ASSERT_TRUE(source.preload());
                EXPECT_EQ(source.info(), info);
                DataIO::Chain front;
                EXPECT_EQ(source.readSamples(100, front), 100u);
                EXPECT_EQ(source.skip(source.sampleSize() * 2000), source.sampleSize() * 2000);
                EXPECT_EQ(source.absoluteOffset(), source.sampleSize() * 2100);
                EXPECT_TRUE(bytesOf(front) + readAll(source) ==
                            slice(pcm, 0, source.sampleSize() * 100) +
                                slice(pcm, source.sampleSize() * 2100, ~0ull));
                ASSERT_TRUE(source.channelStatus(0) && source.channelStatus(1));
                EXPECT_EQ(*source.channelStatus(0), ChannelStatus());
                EXPECT_EQ(*source.channelStatus(1), second);
                EXPECT_EQ(source.channelStatus(channels), nullptr);
            }
        }
}

TEST(S302M, PacketsFollowTheCadence) {
    struct {
        Rate rate;
        std::vector<std::uint32_t> counts;
    } const rows[] = {{{24, 1}, {2000, 2000}},
                      {{24000, 1001}, {2002, 2002}},
                      {{25, 1}, {1920}},
                      {{30000, 1001}, {1602, 1601, 1602, 1601, 1602, 1602}},
                      {{60000, 1001}, {801, 801, 800, 801, 801, 801}}};
    for (auto const& row : rows) {
        S302M::PacketWriter writer({8, 24, {48000, 1}}, row.rate);
        for (std::uint32_t const count : row.counts) {
            EXPECT_EQ(writer.nextSampleCount(), count);
            writer.packet(cut(Bytes(count * writer.packing().pcmSize()), 5000, 0));
        }
    }
}

TEST(S302M, RefusesWhatItCannotCarry) {
    AES3Info const good = {2, 16, {48000, 1}};
    for (AES3Info const& info :
         {AES3Info{3, 16, {48000, 1}}, AES3Info{10, 16, {48000, 1}}, AES3Info{2, 18, {48000, 1}},
          AES3Info{2, 16, {44100, 1}}, AES3Info{2, 16, {}}})
        EXPECT_THROW(S302M::PacketWriter(info, {25, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(S302M::PacketWriter(good, {0, 1}), Exceptions::InvalidValue);
    EXPECT_THROW(S302M::PacketWriter(good, {3, 1}), Exceptions::InvalidValue);
    S302M::PacketWriter writer(good, {25, 1});
    EXPECT_THROW(writer.packet(cut(Bytes(7), 7, 0)), Exceptions::InvalidLength);
    EXPECT_THROW(writer.packet(cut(Bytes(13108 * 4), 5000, 0)), Exceptions::InvalidLength);
}

TEST(S302MSource, TellsWhatIsWrongAndWhere) {
    struct {
        const char *bytes, *message;
        std::uint64_t offset;
    } const rows[] = {
        {"00 05 00 00 66 64 16 66 50  00 04 00 00 66 64 16 66",
         "A AES packet contains a number of bytes that is not a multiple of the sample size.", 9},
        {"00 05 00 00 66 64 16 66 50  00 00 00 30",
         "AES3 S302M stream contains an invalid number of bits per sample", 9},
        {"00 05 00 00 66 64 16 66 50  00 0A 40 00",
         "An AES3 packet of 4 channels of 16 bits, the first had 2 of 16", 9},
        {"00 00 00 00 00 0A 00 00 66 64 16 66 50", "An AES3 packet of 10 bytes, 5 left", 4},
        {"00 00 00 00 00 05 00", "An AES3 data header of 3 bytes", 4},
        {"00 06 00 10 66 66 41 66 66 50",
         "AES3 source still does not support 20 bit per sample. Contact the maintainers of MXF::Zelm.", 0}};
    for (auto const& row : rows) {
        S302M::Source source(sourceOf(hex(row.bytes)));
        try {
            readAll(source);
            ADD_FAILURE() << row.message;
        } catch (Exceptions::BaseException const& failure) {
            EXPECT_EQ(failure.message(), row.message);
            EXPECT_EQ(failure.offset(), row.offset);
        }
    }
    S302M::Source empty(sourceOf(Bytes{}));
    EXPECT_FALSE(empty.preload());
    EXPECT_TRUE(empty.endOfStream());
    survivesEveryFault(hex("00 0A 00 00 66 64 16 66 50 66 64 06 66 50 00 05 00 00 66 64 06 66 50"),
                       [](Bytes const& bytes) {
                           S302M::Source source(sourceOf(bytes), in24Bits);
                           readAll(source);
                       });
}

} // namespace MXF::Zelm::Test
