#include "Essence/Sound.h"
#include "MXF/Zelm/Essence/CodedSound/FrameCutter.h"

namespace MXF::Zelm::Test {

using namespace Essence::CodedSound;

namespace {

/// A frame with a header and content that holds no other one.
Bytes frame(std::string_view header, std::size_t size) {
    Bytes bytes = hex(header);
    bytes.resize(size, 0x55);
    return bytes;
}

// MPEG-1 layer II, 32 kbit/s: 96 bytes at 48 kHz, 104 at 44.1 kHz.
Bytes const mono = frame("FF FD 14 C0", 96), other = frame("FF FD 10 C0", 104);

struct Found {
    Bytes frames;
    FrameCutter::Passed passed;
};

Found framesIn(Bytes const& bytes, Format const& format = mpegAudio(), std::size_t piece = 50) {
    FrameCutter cutter(sourceOf(cut(bytes, piece, 3)), format);
    Found found;
    while (auto const next = cutter.next()) {
        EXPECT_EQ(bytesOf(DataIO::Chain(next->bytes)),
                  slice(bytes, static_cast<std::size_t>(next->offset), next->header.size));
        found.frames = found.frames + bytesOf(DataIO::Chain(next->bytes));
    }
    found.passed = cutter.passed();
    return found;
}

} // namespace

TEST(CodedSound, HeadersTellTheFrame) {
    struct {
        const char* bytes;
        FrameHeader header;
    } const rows[] = {
        {"FF FF 48 C0", {Coding::MPEG1Layer1, 192, 384, 32000, 1, 128000, 0}},
        {"FF FD E4 00", {Coding::MPEG1Layer2, 1152, 1152, 48000, 2, 384000, 0}},
        {"FF FC A0 40", {Coding::MPEG1Layer2, 626, 1152, 44100, 2, 192000, 0}}, // with a CRC
        {"FF FD A2 40", {Coding::MPEG1Layer2, 627, 1152, 44100, 2, 192000, 0}}, // padded
        {"FF FB 90 64", {Coding::MPEG1Layer3, 417, 1152, 44100, 2, 128000, 0}},
        {"FF F7 12 00", {Coding::MPEG2Layer1, 72, 384, 22050, 2, 32000, 0}},
        {"FF F5 84 00", {Coding::MPEG2Layer2, 384, 1152, 24000, 2, 64000, 0}},
        {"FF F3 80 C4", {Coding::MPEG2Layer3, 208, 576, 22050, 1, 64000, 0}},
        {"FF E3 18 C4", {Coding::MPEG2Layer3, 72, 576, 8000, 1, 8000, 0}},
        {"0B 77 00 00 14 40 43 E0 00 00", {Coding::AC3, 768, 1536, 48000, 2, 192000, -31}},
        {"0B 77 00 00 1C 40 E1 D8 00 00", {Coding::AC3, 1536, 1536, 48000, 6, 384000, -27}},
        {"0B 77 00 00 55 40 2F 80 00 00", {Coding::AC3, 836, 1536, 44100, 1, 192000, -31}},
        {"0B 77 00 00 80 40 00 80 00 00", {Coding::AC3, 192, 1536, 32000, 2, 32000, -1}},
        {"FF F1 4C 80 2B 5F FC", {Coding::MPEG4AAC, 346, 1024, 48000, 2, 0, 0}},
        {"FF F8 51 C0 02 40 02", {Coding::MPEG2AAC, 18, 3072, 44100, 8, 0, 0}},
    };
    for (auto const& row : rows) {
        auto const bytes = hex(row.bytes);
        auto const* const format = formatAt(bytes.data(), bytes.size());
        FrameHeader header;
        ASSERT_TRUE(format != nullptr && format->read(bytes.data(), header)) << row.bytes;
        EXPECT_TRUE(header == row.header)
            << row.bytes << ": " << header.size << " bytes, " << header.bitRate << " bits/s, "
            << header.channels << " channels, " << int{header.dialNorm} << " dB";
        EXPECT_EQ(formatAt(bytes.data(), bytes.size() - 1), nullptr) << row.bytes;
    }
}

TEST(CodedSound, NoFrameBeginsWithReservedNumbers) {
    for (auto const* const text : {"FF FD 04 00", "FF FD F4 00", "FF FD 1C 00", "FF FD 14 02", "FF ED 14 00",
                                   "FF DD 14 00", "FE FD 14 00", "0B 77 00 00 D4 40 43 E0 00 00",
                                   "0B 77 00 00 26 40 43 E0 00 00", "0B 77 00 00 14 80 43 E0 00 00",
                                   "FF F1 74 80 2B 5F FC", "FF F1 4C 80 00 FF FC", "FF F0 4C 80 01 3F FC"}) {
        auto const bytes = hex(text);
        EXPECT_EQ(formatAt(bytes.data(), bytes.size()), nullptr) << text;
    }
}

TEST(CodedSound, FramesFollowEachOther) {
    Bytes const two = mono + mono, tag = hex("49 44 33 04 00 00 00 00 01 02") + repeated(130, 0xFF);
    struct {
        Bytes bytes, frames;
        std::uint64_t passed, first;
        bool isAtEnd;
    } const rows[] = {
        {two, two, 0, 0, false},
        {mono, mono, 0, 0, false},
        {tag + tag + two, two, 0, 0, false},
        {slice(mono, 40, 56) + two, two, 56, 0, false},
        {hex("FF FD 14 C0") + two, two, 4, 0, false}, // a header by chance
        {two + hex("FF FD 00") + two, two + two, 3, 192, false},
        {two + slice(mono, 0, 95), two, 95, 192, true},
        {two + other + mono + two, two + mono + two, 104, 192, false},
        {mono + other, other, 96, 0, false}, // none of the two follows the first
        {repeated(300, 0xFF), {}, 300, 0, true},
        {{}, {}, 0, 0, false},
    };
    for (auto const& row : rows) {
        auto const found = framesIn(row.bytes);
        auto const line = &row - rows;
        EXPECT_EQ(found.frames, row.frames) << line;
        EXPECT_EQ(found.passed.count, row.passed) << line;
        EXPECT_EQ(found.passed.offset, row.first) << line;
        EXPECT_EQ(found.passed.isAtEnd, row.isAtEnd) << line;
    }
    FrameCutter strict(sourceOf(hex("00") + two), mpegAudio(), 0);
    EXPECT_FALSE(strict.next()) << "nothing may be passed over";
}

/// Each byte of a header set to each value, and each cut: what is given are frames of the bytes, in order.
TEST(CodedSound, HostileBytesGiveFramesOrNone) {
    Bytes const ac3Frame = frame("0B 77 00 00 00 40 43 E0 00 00", 128),
                aac = frame("FF F1 4C 80 03 1F FC", 24);
    std::pair<Bytes, Format const*> const sounds[] = {
        {mono, &mpegAudio()}, {ac3Frame, &ac3()}, {aac, &adts()}};
    for (auto const& [one, format] : sounds) {
        Bytes const whole = one + one + one;
        for (std::size_t at = 0; at < format->headerSize; ++at)
            for (unsigned value = 0; value < 256; ++value) {
                Bytes bytes = whole;
                bytes[one.size() + at] = static_cast<unsigned char>(value);
                auto const found = framesIn(bytes, *format);
                EXPECT_EQ(found.frames.size() + found.passed.count, bytes.size());
            }
        for (std::size_t size = 0; size < whole.size(); ++size)
            EXPECT_LE(framesIn(slice(whole, 0, size), *format, 7).frames.size(), size);
    }
}

} // namespace MXF::Zelm::Test
