/// The AES3 data header that opens each packet of SMPTE 302M sound.
///
///     byte 0    byte 1    byte 2                byte 3
///     pppppppp  pppppppp  nn iiiiii             ii bb aaaa
///     p bytes of the payload, n channels (0: 2 … 3: 8), i first channel's index, b bits of a sample (0: 16,
///     1: 20, 2: 24), a zero
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"

#include <array>
#include <cstddef>

namespace MXF::Zelm::Essence::AES3::S302M {

/// A value.
class MXFZELM_EXPORT Header : public Platform::Allocated {
public:
    /// Bytes of a header.
    static constexpr std::size_t size() { return 4; }

    /// All zero: no payload, 2 channels of 16 bits.
    Header() = default;

    /// Takes the 4 bytes at `bytes`.
    explicit Header(const unsigned char* bytes);

    /// Copies the header into the 4 bytes at `buffer`.
    void serialize(unsigned char* buffer) const;
    void serialize(DataIO::DataSink& sink) const;
    const unsigned char* rawBuffer() const { return bytes_.data(); }

    /// Bytes behind the header.
    std::uint16_t audioPacketSize() const;
    void audioPacketSize(std::uint16_t size);

    /// 2, 4, 6 or 8. Other numbers change nothing.
    unsigned char numberOfChannels() const;
    void numberOfChannels(unsigned char channels);

    /// Index of the first channel.
    unsigned char channelIdentification() const;
    void channelIdentification(unsigned char identification);

    /// 16, 20 or 24. Throws Exceptions::InvalidFormat when the header says none of them.
    unsigned char bitsPerSample() const;

    /// Numbers other than 16, 20 and 24 change nothing.
    void bitsPerSample(unsigned char bits);

private:
    std::array<unsigned char, 4> bytes_ = {};
};

} // namespace MXF::Zelm::Essence::AES3::S302M
