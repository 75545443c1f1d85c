#include "MXF/Zelm/Essence/Wave/WaveReader.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "support/Bytes.h"
#include "support/WaveBytes.h"

namespace MXF::Zelm::Test {

using namespace Essence::Wave;

namespace {

struct Opened {
    explicit Opened(Bytes const& bytes)
        : reader(std::make_shared<DataIO::BufferSliceSource>(bytes.data(), bytes.size())) {}

    Bytes samples() {
        DataIO::Chain chain;
        reader.samples()->read(~0ull, chain);
        Bytes bytes(static_cast<std::size_t>(chain.size()));
        chain.copyTo(bytes.data(), bytes.size());
        return bytes;
    }

    WaveReader reader;
};

Bytes const stereo24 = waveFormat(2, 48000, 24);
Bytes const samples = hex("010203 040506 111213 141516");

} // namespace

TEST(WaveReader, ReadsFormatSamplesAndChunksAround) {
    auto const bext = repeated(256, 'd') + ascii("me") + repeated(30, 0) + repeated(32, 0) +
                      ascii("2024-11-0818:07:23") + hex("00 10 5E 5F 02 00 00 00 01 00") + repeated(64, 7) +
                      repeated(190, 0) + ascii("A=PCM\r\n");
    Opened file(riff("RIFF", chunk("JUNK", repeated(3, 0)) + chunk("bext", bext) + stereo24 +
                                 chunk("data", samples) + chunk("LIST", ascii("odd"))));
    EXPECT_EQ(file.reader.format(), (WaveFormat{2, 48000, 3, 24, 0}));
    ASSERT_TRUE(file.reader.broadcast());
    EXPECT_EQ(file.reader.broadcast()->description, std::string(256, 'd'));
    EXPECT_EQ(file.reader.broadcast()->originator, "me");
    EXPECT_EQ(file.reader.broadcast()->time, "18:07:23");
    EXPECT_EQ(file.reader.broadcast()->timeReference, 0x25F5E1000u);
    EXPECT_EQ(file.reader.broadcast()->codingHistory, "A=PCM\r\n");
    EXPECT_EQ(file.reader.sampleCount(), 2u);
    EXPECT_TRUE(sameBytes(file.samples(), samples));
    file.reader.readRest();
    ASSERT_EQ(file.reader.chunks().size(), 4u);
    EXPECT_EQ(file.reader.chunks()[0].size, 3u);
    EXPECT_EQ(file.reader.chunks()[3].id, "LIST");
    EXPECT_EQ(file.reader.chunks()[3].content.size(), 3u);
}

TEST(WaveReader, ReadsExtensibleFormatsAnd64BitSizes) {
    Bytes const extensible = chunk("fmt ", hex(R"(
        FE FF  06 00  80 BB 00 00  00 94 11 00  18 00  20 00    # 6 channels of 32 bits
        16 00  14 00  3F 00 00 00                               # 20 bits of them, 5.1
        01 00 00 00 00 00 10 00 80 00 00 AA 00 38 9B 71)"));
    auto const large = [](std::uint64_t dataSize) {
        return chunk("ds64", little<std::uint64_t>(0) + little(dataSize) + repeated(12, 0));
    };
    auto const unsized = ascii("data") + repeated(4, 0xFF) + repeated(24, 1);
    for (auto const* const id : {"RF64", "BW64"}) {
        Opened file(riff(id, large(24) + extensible + unsized + chunk("axml", ascii("<a/>"))));
        EXPECT_EQ(file.reader.format(), (WaveFormat{6, 48000, 4, 20, 0x3F}));
        EXPECT_EQ(file.samples().size(), 24u);
        file.reader.readRest();
        EXPECT_EQ(file.reader.chunks().back().id, "axml");
    }
    Opened open(riff("RF64", large(0) + extensible + unsized + repeated(24, 2)));
    EXPECT_FALSE(open.reader.dataSize());
    EXPECT_EQ(open.samples().size(), 48u);
}

TEST(WaveReader, ReadsFilesThatWereNotClosed) {
    auto const file = [](std::uint32_t riffSize, std::uint32_t dataSize, Bytes const& data) {
        return ascii("RIFF") + little(riffSize) + ascii("WAVE") + stereo24 + ascii("data") +
               little(dataSize) + data;
    };
    EXPECT_EQ(Opened(file(0xFFFFFFFF, 0xFFFFFFFF, samples)).samples(), samples);
    EXPECT_EQ(Opened(file(0, 0, samples)).samples(), samples);
    EXPECT_EQ(Opened(file(36, 0, samples)).samples(), samples) << "the head was written once";
    EXPECT_EQ(Opened(file(36, 0, {})).samples(), Bytes());
    EXPECT_EQ(Opened(file(60, 0, chunk("LIST", samples))).samples(), Bytes()) << "closed, without samples";
    EXPECT_EQ(Opened(file(999, 900, samples)).samples(), samples) << "cut off";
    Opened piped(file(0x7FFFF020, 0x7FFFEFFC, samples));
    EXPECT_FALSE(piped.reader.dataSize());
    EXPECT_EQ(piped.samples(), samples);
    EXPECT_TRUE(Opened(file(0x7FFFF120, 0x7FFFEFFC, samples)).reader.dataSize()) << "chunks are behind it";
}

TEST(WaveReader, RefusesWhatItCannotGive) {
    auto const refusal = [](Bytes const& content) {
        return thrownBy<Exceptions::InvalidFormat>([&] { Opened open(riff("RIFF", content)); });
    };
    EXPECT_NE(refusal(chunk("data", samples) + stereo24).find("before their format"), std::string::npos);
    EXPECT_NE(refusal(stereo24).find("no samples"), std::string::npos);
    EXPECT_NE(refusal(chunk("fmt ", hex("03 00 01 00 80BB0000 00EE0200 0400 2000")) + chunk("data", samples))
                  .find("format 3, not PCM"),
              std::string::npos);
    EXPECT_NE(refusal(chunk("fmt ", hex("FEFF 01 00 80BB0000 00EE0200 0400 2000 1600 2000 00000000 0300") +
                                        hex("000000001000800000AA00389B71")) +
                      chunk("data", samples))
                  .find("format 3, not PCM"),
              std::string::npos);
    EXPECT_NE(refusal(chunk("fmt ", hex("01 00 02 00 80BB0000 00EE0200 0500 1800")) + chunk("data", samples))
                  .find("makes no sense"),
              std::string::npos);
    EXPECT_NE(refusal(concatenatedChunks(2000) + stereo24).find("too many"), std::string::npos);
}

TEST(WaveReader, SurvivesEveryFault) {
    auto const file = riff("RF64", chunk("ds64", little<std::uint64_t>(100) + little<std::uint64_t>(12) +
                                                     little<std::uint64_t>(2) + little<std::uint32_t>(1) +
                                                     ascii("LIST") + little<std::uint64_t>(4)) +
                                       stereo24 + chunk("LIST", ascii("note")) + chunk("data", samples));
    survivesEveryFault(file, [](Bytes const& bytes) {
        Opened open(bytes);
        open.samples();
        open.reader.readRest();
    });
}

} // namespace MXF::Zelm::Test
