// The header of MPEG audio (ISO/IEC 11172-3, 2.4.1.3):
//
//     11111111    111 version (2) layer (2) no CRC    bit rate (4) sampling rate (2) padding, private
//     mode (2) extension (2) copyright, original, emphasis (2)
#include "MXF/Zelm/Essence/CodedSound/FrameHeader.h"

namespace MXF::Zelm::Essence::CodedSound {

namespace {

constexpr unsigned mpeg1 = 3, mpeg2Point5 = 0, noVersion = 1;
constexpr unsigned mono = 3, noEmphasis = 2, noRate = 3;

// Thousands of bits a second, by the number of the bit rate; 0 is the free format.
constexpr std::uint16_t bitRates[2][3][15] = {
    {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
     {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
     {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
    {{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}}};

constexpr std::uint32_t samplingRates[] = {44100, 48000, 32000};

/// The number of the layer, 1 to 3; 4 is none.
unsigned layerOf(const unsigned char* bytes) { return 4 - (bytes[1] >> 1 & 3u); }
unsigned versionOf(const unsigned char* bytes) { return bytes[1] >> 3 & 3u; }

bool isHeader(const unsigned char* bytes) {
    constexpr unsigned noBitRate = 15;
    return bytes[0] == 0xFF && bytes[1] >> 5 == 7 && versionOf(bytes) != noVersion && layerOf(bytes) <= 3 &&
           bytes[2] >> 4 != noBitRate && (bytes[2] >> 2 & 3u) != noRate && (bytes[3] & 3u) != noEmphasis;
}

std::uint32_t samplesOf(unsigned layer, bool isLow) {
    return layer == 1 ? 384 : layer == 3 && isLow ? 576 : 1152;
}

bool read(const unsigned char* bytes, FrameHeader& header) {
    if (!isHeader(bytes))
        return false;
    unsigned const version = versionOf(bytes), layer = layerOf(bytes);
    bool const isLow = version != mpeg1;
    header = {};
    header.coding = static_cast<Coding>((isLow ? 3 : 0) + layer - 1);
    header.samplingRate = samplingRates[bytes[2] >> 2 & 3] / (version == mpeg2Point5 ? 4 : isLow ? 2 : 1);
    header.samples = samplesOf(layer, isLow);
    header.channels = bytes[3] >> 6 == mono ? 1 : 2;
    header.bitRate = bitRates[isLow][layer - 1][bytes[2] >> 4] * 1000u;
    std::uint32_t const slot = layer == 1 ? 4 : 1, slots = header.samples / 8 / slot;
    header.size = (slots * header.bitRate / header.samplingRate + (bytes[2] >> 1 & 1u)) * slot;
    return header.bitRate != 0;
}

constexpr Format format{"MPEG audio", 4, read};

} // namespace

Format const& mpegAudio() { return format; }

} // namespace MXF::Zelm::Essence::CodedSound
