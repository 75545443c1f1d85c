// Wave files: heads byte for byte, sizes that are known late or never, files beyond 4 GiB.
#include "MXF/Zelm/Essence/Wave/WaveWriter.h"
#include "MXF/Zelm/DataIO/Slice.h"

#include "support/Bytes.h"

#include <algorithm>

namespace MXF::Zelm::Test {

namespace {

using namespace Essence::Wave;

constexpr WaveFormat stereo16{2, 48000, 2, 16, 0};
constexpr std::uint64_t headLength = 12 + 36 + 24 + 8;

/// Keeps the first bytes only, and counts the others.
class HeadSink : public DataIO::RandomAccessDataSink {
public:
    void write(const unsigned char* buffer, std::uint64_t size) override {
        for (std::uint64_t i = 0; i < size && position + i < head.size(); ++i)
            head[static_cast<std::size_t>(position + i)] = buffer[i];
        position += size;
        end = std::max(end, position);
    }
    std::uint64_t absoluteOffset() const override { return position; }
    std::uint64_t seek(std::uint64_t to) override { return position = std::min(to, end); }

    Bytes head = Bytes(2048);
    std::uint64_t position = 0, end = 0;
};

Bytes bytesOf(DataIO::Memory::MemoryDataSink const& sink) {
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

TEST(WaveWriter, WritesTheBytesOfASmallFile) {
    DataIO::Memory::MemoryDataSink sink;
    WaveWriter writer(sink, WaveFormat{1, 11025, 1, 8, 0}, std::nullopt, 3);
    DataIO::Chain samples(DataIO::Slice::adopt(Bytes{0x7F, 0x80}));
    writer.write(samples);
    writer.write(samples.slices()[0].data(), 1);
    writer.finish();
    EXPECT_EQ(bytesOf(sink), hex(R"(
        52494646 4C000000 57415645                # RIFF, 76 bytes behind, WAVE
        4A554E4B 1C000000                         # JUNK, 28
          0000000000000000 0000000000000000 0000000000000000 00000000
        666D7420 10000000                         # fmt, 16
          0100 0100 112B0000 112B0000 0100 0800   # PCM, mono, 11025 Hz
        64617461 03000000 7F807F 00               # data, 3, a byte to an even number
    )"));
}

TEST(WaveWriter, TellsMoreOfManyChannelsAndWhereTheyComeFrom) {
    BroadcastExtension broadcast;
    broadcast.description = std::string(300, 'd'); // is cut
    broadcast.originator = "zelm";
    broadcast.date = "2024-11-08";
    broadcast.time = "18:07:23";
    broadcast.timeReference = 0x0000000123456789;
    broadcast.umid[0] = 0x06;
    broadcast.codingHistory = "A=PCM\r\n";
    HeadSink sink;
    WaveWriter(sink, WaveFormat{6, 48000, 3, 20, 0x60F}, broadcast).finish();
    auto const at = [&](std::size_t offset, Bytes const& expected) {
        Bytes const found(sink.head.begin() + static_cast<long>(offset),
                          sink.head.begin() + static_cast<long>(offset + expected.size()));
        EXPECT_EQ(found, expected) << "at " << offset;
    };
    constexpr std::size_t broadcastAt = 48, formatAt = broadcastAt + 8 + 610;
    at(broadcastAt, hex("62657874 62020000")); // bext, 602 and the coding history, even
    at(broadcastAt + 8 + 255, hex("64 7A656C6D 00"));
    at(broadcastAt + 8 + 320, hex("323032342D31312D3038 31383A30373A3233 89674523 01000000 0100 06"));
    at(broadcastAt + 8 + 602, hex("413D50434D0D0A 00"));
    at(formatAt, hex(R"(
        666D7420 28000000
          FEFF 0600 80BB0000 002F0D00 1200 1800        # extensible, 864000 bytes a second
          1600 1400 0F060000                           # 20 of 24 bits, loudspeakers
          0100 0000 0000 1000 8000 00AA00389B71        # PCM
        64617461 00000000)"));
    EXPECT_EQ(sink.end, formatAt + 48 + 8);
}

TEST(WaveWriter, SaysSizesWhenItKnowsThem) {
    Bytes const samples(6, 1);
    HeadSink seekable;
    WaveWriter late(seekable, stereo16);
    EXPECT_EQ(Bytes(seekable.head.begin() + 4, seekable.head.begin() + 8), Bytes(4, 0xFF));
    late.write(samples.data(), samples.size());
    late.finish();
    EXPECT_EQ(Bytes(seekable.head.begin() + 4, seekable.head.begin() + 8), hex("4E000000"));
    EXPECT_EQ(seekable.head[headLength - 4], 6);
    EXPECT_EQ(seekable.position, headLength + 6);

    DataIO::Memory::MemoryDataSink pipe;
    WaveWriter never(pipe, stereo16);
    never.finish();
    EXPECT_EQ(Bytes(pipe.rawBuffer() + headLength - 4, pipe.rawBuffer() + headLength), Bytes(4, 0xFF));

    DataIO::Memory::MemoryDataSink broken;
    WaveWriter wrong(broken, stereo16, std::nullopt, 8);
    wrong.write(samples.data(), samples.size());
    EXPECT_THROW(wrong.finish(), Exceptions::InvalidLength);
}

TEST(WaveWriter, BecomesRF64BeyondFourGigabytes) {
    DataIO::Chain chunk;
    auto const block = DataIO::Slice::adopt(Bytes(std::size_t{1} << 20));
    for (int i = 0; i < 1024; ++i)
        chunk.append(block);
    HeadSink sink;
    WaveWriter writer(sink, stereo16);
    for (int i = 0; i < 4; ++i)
        writer.write(chunk);
    writer.finish();
    EXPECT_EQ(Bytes(sink.head.begin(), sink.head.begin() + headLength), hex(R"(
        52463634 FFFFFFFF 57415645                # RF64
        64733634 1C000000                         # ds64
          4800000001000000 0000000001000000 0000004000000000 00000000
        666D7420 10000000 0100 0200 80BB0000 00EE0200 0400 1000
        64617461 FFFFFFFF)"));

    // The largest that RIFF can say, and the next one.
    for (std::uint64_t const size : {0xFFFFFFFEu - (headLength - 8), 0xFFFFFFFFu - (headLength - 8)}) {
        HeadSink known;
        WaveWriter const announced(known, stereo16, std::nullopt, size);
        EXPECT_EQ(known.head[1], size % 2 == 0 ? 'I' : 'F') << size;
    }
}

TEST(WaveWriter, RefusesFormatsThatAreNone) {
    DataIO::Memory::MemoryDataSink sink;
    for (WaveFormat const format : {WaveFormat{0, 48000, 2, 16, 0}, WaveFormat{2, 48000, 0, 16, 0},
                                    WaveFormat{2, 48000, 5, 16, 0}, WaveFormat{0x8000, 48000, 4, 32, 0}})
        EXPECT_THROW(WaveWriter(sink, format), Exceptions::InvalidValue);
    EXPECT_EQ(sink.serializedSize(), 0u);
}

} // namespace

} // namespace MXF::Zelm::Test
