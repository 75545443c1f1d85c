#include "MXF/Zelm/Essence/MPEG/Demultiplexer.h"
#include "Essence/Sound.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/Essence/MPEG/TransportWriter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <optional>

namespace MXF::Zelm::Test {

using namespace Essence::MPEG;

namespace {

Bytes be16(std::size_t value) { return number(static_cast<std::uint16_t>(value)); }

/// A packet of MPEG-2 with a presentation time of 90000, or none.
Bytes pes(unsigned char streamId, Bytes const& payload, bool hasTime = false) {
    Bytes const header = hex(hasTime ? "80 80 06 21 00 05 BF 21 FF" : "80 00 02 FF FF");
    return hex("00 00 01") + Bytes{streamId} + be16(header.size() + payload.size()) + header + payload;
}

/// A section behind its pointer, with its CRC.
Bytes section(Bytes const& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (unsigned char const byte : bytes)
        for (int bit = 7; bit >= 0; --bit)
            crc = crc << 1 ^ ((crc >> 31 ^ (byte >> bit & 1u)) != 0 ? 0x04C11DB7u : 0u);
    return hex("00") + bytes + number(crc);
}

/// Makes transport packets.
struct Transport {
    Bytes bytes = {};
    Bytes before = {}, behind = {}; // each packet
    unsigned counters[0x2000] = {};

    void packet(std::uint16_t id, Bytes payload, bool begins) {
        std::size_t const stuffing = 184 - payload.size();
        unsigned const counter = counters[id]++ % 16;
        Bytes head = hex("47") + be16(id | (begins ? 0x4000u : 0u));
        head.push_back(static_cast<unsigned char>((stuffing > 0 ? 0x30 : 0x10) | counter));
        if (stuffing > 0)
            head.push_back(static_cast<unsigned char>(stuffing - 1));
        if (stuffing > 1)
            head = head + hex("00") + repeated(stuffing - 2, 0xFF);
        bytes = bytes + before + head + payload + behind;
    }
    void unit(std::uint16_t id, Bytes const& unit) {
        for (std::size_t at = 0; at < unit.size(); at += 184)
            packet(id, slice(unit, at, 184), at == 0);
    }
    /// Programs 1, without a map here, and 2, of MPEG-2 video at 100 and SMPTE 302M sound at 101.
    void tables() {
        unit(0, section(hex("00 B0 11 00 01 C1 00 00  00 01 E0 20  00 02 E0 30")));
        unit(0x30, section(hex("02 B0 1D 00 02 C1 00 00 E1 00 F0 00"
                               "02 E1 00 F0 00    06 E1 01 F0 06  05 04 42 53 53 44")));
    }
};

Transport twoStreams(Bytes const& video, Bytes const& sound, Bytes before = {}, Bytes behind = {}) {
    Transport transport;
    transport.before = std::move(before);
    transport.behind = std::move(behind);
    transport.tables();
    transport.unit(0x100, pes(0xE0, slice(video, 0, 1000), true));
    transport.unit(0x101, pes(0xBD, slice(sound, 0, 300), true));
    transport.unit(0x1FFF, Bytes(184)); // stuffing
    transport.unit(0x100, hex("00 00 01 E0 00 00 80 00 00") + slice(video, 1000, ~0ull));
    transport.unit(0x101, pes(0xBD, slice(sound, 300, ~0ull)));
    return transport;
}

std::vector<std::string> messages(Demultiplexer const& demultiplexer) {
    std::vector<std::string> result;
    for (auto const& fault : demultiplexer.faults())
        result.push_back(std::to_string(fault.offset) + ": " + fault.message);
    return result;
}

template <class Kind>
void readStreams(Bytes const& bytes) {
    Kind demultiplexer(sourceOf(cut(bytes, 50, 3)));
    auto const video = demultiplexer.takeVideo(), sound = demultiplexer.takeSound();
    PESPacket packet;
    while (sound && sound->nextPacket(packet))
        continue;
    if (video)
        readAll(*video);
}

} // namespace

TEST(PESHeader, TimesStandWhereTheStandardHasThem) {
    struct {
        const char* bytes;
        std::optional<std::uint64_t> presentation, decoding;
        std::size_t payload;
    } const rows[] = {
        {"00 00 01 E0 00 0A  84 80 05 21 00 05 BF 21  AA BB", 90000, {}, 2},
        {"00 00 01 E0 00 0F  80 C0 0B 31 00 05 BF 21 1F FF FF FF FF FF  AA", 90000, 0x1FFFFFFFF, 1},
        {"00 00 01 C0 00 04  80 00 00  AA", {}, {}, 1},
        {"00 00 01 C0 00 0A  FF FF 40 20 21 00 05 BF 21  AA", 90000, {}, 1},
        {"00 00 01 E0 00 0C  31 00 05 BF 21 11 00 01 00 01  AA BB", 90000, 0, 2},
        {"00 00 01 E0 00 03  FF 0F  AA", {}, {}, 1},
        {"00 00 01 BE 00 02  FF FF", {}, {}, 2},
    };
    for (auto const& row : rows) {
        auto const bytes = hex(row.bytes);
        auto const header = PESHeader::read(bytes.data(), bytes.size());
        ASSERT_TRUE(header) << row.bytes;
        EXPECT_EQ(header->timestamps, (Timestamps{row.presentation, row.decoding})) << row.bytes;
        EXPECT_EQ(header->size, bytes.size() - row.payload);
        EXPECT_EQ(header->payloadSize(), row.payload);
        for (std::size_t size = 0; size < header->size; ++size)
            EXPECT_FALSE(PESHeader::read(bytes.data(), size)) << row.bytes << " " << size;
    }
    for (auto const* const bad :
         {"00 00 02 E0 00 04 80 00 00 AA", "00 00 01 B3 00 04 80 00 00 AA", "00 00 01 E0 00 04 80 80 04 AA",
          "00 00 01 E0 00 04 80 00 05 01 02 03 04 05", "00 00 01 E0 00 04 77 00 00 00"})
        EXPECT_THROW(PESHeader::read(hex(bad).data(), hex(bad).size()), Exceptions::InvalidFormat) << bad;
}

TEST(ProgramStream, GivesItsStreams) {
    auto const video = pattern(5000), sound = pattern(700);
    Bytes const pack = hex("00 00 01 BA 44 00 04 00 04 01 00 00 03 FA FF FF");
    auto const bytes = pack + hex("00 00 01 BB 00 06 80 00 01 00 00 00") +
                       hex("00 00 01 BC 00 12 E1 FF 00 00 00 08 1B E0 00 00 0F C1 00 00 00 00 00 00") +
                       pes(0xE0, slice(video, 0, 2000), true) + pes(0xBE, repeated(9, 0xFF)) +
                       pes(0xC1, slice(sound, 0, 650), true) + pack + pes(0xE0, slice(video, 2000, ~0ull)) +
                       pes(0xC1, slice(sound, 650, ~0ull)) + pes(0xC0, sound) + hex("00 00 01 B9");
    for (auto const& chain : {cut(bytes, bytes.size(), 0), cut(bytes, 1, 0)}) {
        ProgramStreamDemultiplexer stream(sourceOf(chain));
        ASSERT_EQ(stream.streams().size(), 3u);
        EXPECT_EQ(stream.streams()[0].coding, Coding::AVC);
        EXPECT_EQ(stream.streams()[1].coding, Coding::AAC);
        EXPECT_EQ(stream.streams()[2].coding, Coding::MPEGAudio); // the map does not have it
        auto const first = stream.takeVideo();
        auto const second = stream.take(1);
        EXPECT_EQ(stream.takeSound(), nullptr);
        EXPECT_THROW(stream.take(0), Exceptions::InvalidPosition);
        EXPECT_THROW(stream.take(3), Exceptions::InvalidPosition);
        PESPacket packet;
        ASSERT_TRUE(second->nextPacket(packet));
        EXPECT_EQ(bytesOf(packet.payload), slice(sound, 0, 650));
        EXPECT_EQ(packet.timestamps.presentation, 90000u);
        ASSERT_TRUE(second->nextPacket(packet));
        EXPECT_EQ(packet.timestamps, Timestamps());
        EXPECT_FALSE(second->nextPacket(packet));
        EXPECT_EQ(readAll(*first), video);
        EXPECT_EQ(first->firstTimestamps().presentation, 90000u);
        EXPECT_EQ(messages(stream), std::vector<std::string>());
    }
    survivesEveryFault(bytes.size() > 400 ? slice(bytes, 0, 120) + pes(0xC1, hex("AA")) : bytes,
                       readStreams<ProgramStreamDemultiplexer>);
    EXPECT_THROW(ProgramStreamDemultiplexer(sourceOf(pack)), Exceptions::InvalidFormat);
    EXPECT_THROW(ProgramStreamDemultiplexer(sourceOf(Bytes{})), Exceptions::InvalidFormat);
}

TEST(ProgramStream, PassesOverWhatIsNoPartOfIt) {
    Bytes const picture = hex("00 00 01 B3 11 22 00 00 01 00 33");
    auto const mpeg1 = hex("00 00 01 BA 21 00 01 00 01 80 00 01"), head = hex("00 00 01 E0 00 00 80 00 00");
    ProgramStreamDemultiplexer stream(sourceOf(hex("AA BB") + mpeg1 + pes(0xE0, picture) + hex("CC") + head +
                                               picture + mpeg1 + pes(0xE0, hex("01 02")) +
                                               slice(pes(0xE0, picture), 0, 14)));
    EXPECT_EQ(stream.streams()[0].coding, Coding::MPEG1Video);
    auto const video = stream.takeVideo();
    EXPECT_EQ(readAll(*video), picture + picture + hex("01 02") + slice(picture, 0, 3));
    EXPECT_EQ(messages(stream), (std::vector<std::string>{"0: 2 bytes are no part of a program stream",
                                                          "36: 1 bytes are no part of a program stream",
                                                          "82: A unit of the program stream is cut off",
                                                          "82: A PES packet ends 8 bytes before its end"}));
}

TEST(TransportStream, GivesTheStreamsOfAProgram) {
    auto const video = pattern(200'000), sound = pattern(1000);
    for (auto const& [before, behind] :
         {std::pair{Bytes{}, Bytes{}}, {hex("11 22 33 47"), Bytes{}}, {Bytes{}, repeated(16, 0x47)}}) {
        auto const bytes = twoStreams(video, sound, before, behind).bytes;
        TransportStreamDemultiplexer stream(sourceOf(cut(bytes, 1000, 11)));
        EXPECT_EQ(stream.program(), 2);
        EXPECT_EQ(stream.programs(), (std::vector<std::uint16_t>{1, 2}));
        ASSERT_EQ(stream.streams().size(), 2u);
        EXPECT_EQ(stream.streams()[0].coding, Coding::MPEG2Video);
        EXPECT_EQ(stream.streams()[1].coding, Coding::S302M);
        EXPECT_EQ(stream.streams()[1].id, 0x101);
        auto const first = stream.takeVideo(), second = stream.takeSound();
        PESPacket packet;
        ASSERT_TRUE(first->nextPacket(packet));
        EXPECT_EQ(packet.timestamps.presentation, 90000u);
        EXPECT_EQ(bytesOf(packet.payload), slice(video, 0, 1000));
        ASSERT_TRUE(first->nextPacket(packet)); // without a length, in several pieces
        EXPECT_EQ(bytesOf(packet.payload), slice(video, 1000, ~0ull));
        EXPECT_EQ(readAll(*second), sound);
        EXPECT_EQ(messages(stream), std::vector<std::string>());
    }
    auto const bytes = twoStreams(video, sound).bytes;
    EXPECT_THROW(TransportStreamDemultiplexer(sourceOf(bytes), 1), Exceptions::InvalidFormat);
    EXPECT_THROW(TransportStreamDemultiplexer(sourceOf(pattern(5000))), Exceptions::InvalidFormat);
    TransportStreamDemultiplexer bounded(sourceOf(bytes), 2, 4096, 10'000);
    auto const second = bounded.takeSound(), first = bounded.takeVideo();
    EXPECT_THROW(readAll(*second), Exceptions::InvalidChange);
    survivesEveryFault(twoStreams(pattern(20), pattern(20)).bytes, readStreams<TransportStreamDemultiplexer>);
}

TEST(TransportStream, NamesWhatIsWrong) {
    Transport transport;
    transport.tables();
    transport.packet(0x100, pes(0xE0, pattern(170)), true);
    auto const once = slice(transport.bytes, 376, 188);
    transport.bytes = transport.bytes + once; // repeated, as is allowed
    ++transport.counters[0x100];
    transport.packet(0x100, hex("00 00 01 E0 00 09 80 00 00 AA"), true); // at 752, one is missing before
    transport.bytes = transport.bytes + hex("00 47 00");                 // at 940
    transport.packet(0x100, pes(0xE0, hex("BB")), true);                 // at 943, cuts the one before short
    transport.packet(0x100, hex("CC"), false);                           // at 1131, too long by one
    transport.packet(0x100, hex("00 00 01 B3 00 00"), true);             // at 1319
    auto bad = once;
    bad[1] |= 0x80;
    bad[3] = static_cast<unsigned char>((bad[3] & 0xF0) | transport.counters[0x100] % 16);
    transport.bytes = transport.bytes + bad + hex("47 00"); // at 1507
    TransportStreamDemultiplexer stream(sourceOf(transport.bytes));
    auto const video = stream.takeVideo();
    EXPECT_EQ(readAll(*video), pattern(170) + hex("AA BB"));
    EXPECT_EQ(
        messages(stream),
        (std::vector<std::string>{
            "752: Continuity counter of stream 100 is 2, 1 was expected", "940: Sync lost for 3 bytes",
            "752: A PES packet ends 5 bytes before its end",
            "943: A PES packet goes on for 1 bytes behind its end", "1319: A PES packet begins with 000001B3",
            "1507: Packet of stream 100 has a transport error", "1695: A transport packet is cut off"}));
}

TEST(TransportStream, TellsWhereTimesLeap) {
    constexpr std::uint64_t second = 90000, turn = std::uint64_t{1} << 33;
    struct {
        std::vector<std::uint64_t> times;
        std::uint64_t leaps;
        double first;
    } const rows[] = {
        {{0, second / 25, 2 * second, 3 * second / 2}, 0, 0},
        {{turn - 2 * second, turn - second - 1, turn - second / 2, turn + second}, 0, 0}, // the clock turns
        {{0, 5 * second, 5 * second + 1, 0}, 2, 5},
        {{turn - 3 * second, turn - 5 * second}, 1, -2},
    };
    for (auto const& row : rows) {
        DataIO::Memory::MemoryDataSink sink;
        TransportWriter writer(sink);
        for (auto const time : row.times)
            writer.write(DataIO::Slice::adopt(pattern(20)), time);
        TransportStreamDemultiplexer demultiplexer(
            sourceOf(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize())));
        auto const stream = demultiplexer.take(0);
        readAll(*stream);
        EXPECT_EQ(stream->leapCount(), row.leaps) << &row - rows;
        EXPECT_EQ(stream->firstLeap(), row.first) << &row - rows;
    }
}

TEST(TransportWriterTest, ComesBackFromTheDemultiplexer) {
    DataIO::Memory::MemoryDataSink sink;
    TransportWriter writer(sink);
    std::vector<std::size_t> const sizes = {1, 154, 155, 156, 157, 161, 162, 163, 340, 5000, 65527};
    for (std::size_t i = 0; i < sizes.size(); ++i) // about what one, two and more transport packets hold
        writer.write(DataIO::Slice::adopt(pattern(sizes[i])), i * 3600);
    Bytes const bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    EXPECT_EQ(bytes.size() % 188, 0u);
    TransportStreamDemultiplexer demultiplexer(sourceOf(bytes));
    ASSERT_EQ(demultiplexer.streams().size(), 1u);
    EXPECT_EQ(demultiplexer.streams()[0].coding, Coding::S302M);
    auto const stream = demultiplexer.take(0);
    PESPacket packet;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        ASSERT_TRUE(stream->nextPacket(packet));
        EXPECT_TRUE(packet.payload == DataIO::Chain(DataIO::Slice::adopt(pattern(sizes[i])))) << sizes[i];
        EXPECT_EQ(packet.timestamps.presentation, 90000 + i * 3600);
    }
    EXPECT_FALSE(stream->nextPacket(packet));
    EXPECT_EQ(demultiplexer.faultCount(), 0u);
    EXPECT_THROW(writer.write(DataIO::Slice::adopt(Bytes(65528)), 0), Exceptions::InvalidLength);
}

/// Packets of private stream 1 as discs have them: two sounds, and pictures that are neither.
TEST(ProgramStreamDemultiplexer, TakesSoundOutOfSubStreams) {
    Bytes const pack = hex("00 00 01 BA 44 00 04 00 04 01 01 89 C3 F8"), one = hex("0B 77 11 11 11"),
                two = hex("0B 77 22 22");
    Bytes const program = pack + pes(0xBD, hex("20 00 00") + repeated(9, 3)) +
                          pes(0xBD, hex("80 01 00 01") + one, true) +
                          pes(0xBD, hex("81 01 00 03 EE EE") + two) + pes(0xBD, hex("80 00 00 00 44")) +
                          pes(0xBD, hex("80 01"));
    ProgramStreamDemultiplexer demultiplexer(sourceOf(cut(program, 50, 3)));
    ASSERT_EQ(demultiplexer.streams().size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(demultiplexer.streams()[i].coding, Coding::AC3);
        EXPECT_EQ(demultiplexer.streams()[i].subStream, 0x80 + i);
    }
    auto const first = demultiplexer.take(0), second = demultiplexer.take(1);
    PESPacket packet;
    ASSERT_TRUE(first->nextPacket(packet));
    EXPECT_EQ(packet.timestamps.presentation, 90000u);
    EXPECT_EQ(bytesOf(packet.payload), one);
    EXPECT_EQ(readAll(*first), hex("44"));
    EXPECT_EQ(readAll(*second), hex("EE EE") + two);
    EXPECT_EQ(demultiplexer.faultCount(), 1u) << "a packet without a head";
    EXPECT_EQ(ProgramStreamDemultiplexer(sourceOf(cut(pack + pes(0xBD, hex("80 01 00 02") + one), 50, 3)))
                  .streams()[0]
                  .subStream,
              0)
        << "no frame is where the head says";
}

} // namespace MXF::Zelm::Test
