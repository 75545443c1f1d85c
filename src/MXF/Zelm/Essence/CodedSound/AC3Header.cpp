// The header of AC-3 (ATSC A/52, 5.3):
//
//     00001011 01110111    CRC (16)    sampling rate (2) frame size (6)    version (5) mode (3)
//     channels (3) mix levels (0 to 4)    low frequency effects    dialogue level (5)
#include "MXF/Zelm/Essence/CodedSound/FrameHeader.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

namespace MXF::Zelm::Essence::CodedSound {

namespace {

constexpr std::uint16_t syncWord = 0x0B77;
constexpr unsigned latestVersion = 8; // later ones are other codings

// Thousands of bits a second, for each two numbers of a frame size.
constexpr std::uint16_t bitRates[] = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                      192, 224, 256, 320, 384, 448, 512, 576, 640};
constexpr std::uint32_t samplingRates[] = {48000, 44100, 32000};

// Without the channel of low frequencies; 0 is two channels of their own.
constexpr std::uint8_t channelCounts[] = {2, 1, 2, 3, 3, 4, 4, 5};

/// Bits of the mix levels, which depend on the channels.
unsigned mixBits(unsigned mode) {
    constexpr unsigned single = 1, stereo = 2, center = 1, surround = 4;
    unsigned bits = mode == stereo ? 2 : 0; // of surround sound in stereo
    bits += (mode & center) != 0 && mode != single ? 2 : 0;
    return bits + ((mode & surround) != 0 ? 2 : 0);
}

/// Frames have whole words of 2 bytes; at 44.1 kHz every other size has one more.
std::uint32_t sizeOf(FrameHeader const& header, unsigned number) {
    std::uint32_t const words = header.bitRate * (header.samples / 16) / header.samplingRate;
    return 2 * (words + (header.samplingRate == 44100 ? number & 1u : 0));
}

bool read(const unsigned char* bytes, FrameHeader& header) {
    unsigned const rate = bytes[4] >> 6, number = bytes[4] & 0x3Fu, version = bytes[5] >> 3;
    if (ByteCoders::decodeInteger<std::uint16_t>(bytes) != syncWord || rate >= std::size(samplingRates) ||
        number / 2 >= std::size(bitRates) || version > latestVersion)
        return false;
    unsigned const mode = bytes[6] >> 5;
    // What is behind the mode of the channels, from the uppermost bit on.
    std::uint32_t const rest = ByteCoders::decodeInteger<std::uint32_t>(bytes + 6) << (3 + mixBits(mode));
    header = {};
    header.coding = Coding::AC3;
    header.samplingRate = samplingRates[rate];
    header.samples = 1536;
    header.channels = channelCounts[mode] + (rest >> 31);
    header.bitRate = bitRates[number / 2] * 1000u;
    header.size = sizeOf(header, number);
    header.dialNorm = static_cast<std::int8_t>(-static_cast<int>(rest >> 26 & 31u));
    return true;
}

constexpr Format format{"AC-3", 10, read};

} // namespace

Format const& ac3() { return format; }

} // namespace MXF::Zelm::Essence::CodedSound
