#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"

namespace MXF::Zelm::Essence::AES3 {

namespace {

/// Bits of byte 0: bit 0 professional, bits 2 to 4 no emphasis.
constexpr unsigned char professional = 0x01, noEmphasis = 0x04;

/// Sampling frequency in bits 6 and 7 of byte 0; others are said elsewhere, or not.
unsigned char frequencyBits(std::uint32_t samplingRate) {
    switch (samplingRate) {
    case 48000:
        return 2 << 6;
    case 44100:
        return 1 << 6;
    case 32000:
        return 3 << 6;
    default:
        return 0;
    }
}

/// Byte 2: bits 0 to 2 up to 24 bits (4) or 20 (0), bits 3 to 5 how many of them: all (5), one less (4), two
/// (2), three (6), four (1).
unsigned char lengthBits(unsigned bits) {
    constexpr unsigned char codes[] = {5, 4, 2, 6, 1};
    if (bits > 24 || bits < 16)
        return 0;
    unsigned const most = bits > 20 ? 24 : 20;
    return static_cast<unsigned char>((most == 24 ? 4 : 0) | codes[most - bits] << 3);
}

} // namespace

ChannelStatus channelStatusOfPCM(std::uint32_t samplingRate, unsigned bits) {
    ChannelStatus status = {};
    status[0] = static_cast<unsigned char>(professional | noEmphasis | frequencyBits(samplingRate));
    status[2] = lengthBits(bits);
    status.back() = channelStatusCRC(status);
    return status;
}

/// x^8 + x^4 + x^3 + x^2 + 1, the register at first all ones, the lowest bit of each byte first.
unsigned char channelStatusCRC(ChannelStatus const& status) {
    constexpr unsigned polynomial = 0xB8;
    unsigned crc = 0xFF;
    for (std::size_t i = 0; i + 1 < status.size(); ++i)
        for (unsigned bit = 0; bit < 8; ++bit)
            crc = ((crc ^ status[i] >> bit) & 1) != 0 ? crc >> 1 ^ polynomial : crc >> 1;
    return static_cast<unsigned char>(crc);
}

} // namespace MXF::Zelm::Essence::AES3
