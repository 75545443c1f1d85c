#include "MXF/Zelm/Essence/AES3/S302M/Header.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::Essence::AES3::S302M {

namespace {

/// The bits of `byte` outside `mask`, and `value` inside it.
unsigned char masked(unsigned char byte, unsigned mask, unsigned value) {
    return static_cast<unsigned char>((byte & ~mask) | (value & mask));
}

} // namespace

Header::Header(const unsigned char* bytes) { std::copy_n(bytes, size(), bytes_.begin()); }

void Header::serialize(unsigned char* buffer) const { std::copy(bytes_.begin(), bytes_.end(), buffer); }

void Header::serialize(DataIO::DataSink& sink) const { sink.write(bytes_.data(), size()); }

std::uint16_t Header::audioPacketSize() const {
    return ByteCoders::decodeInteger<std::uint16_t>(bytes_.data());
}

void Header::audioPacketSize(std::uint16_t size) { ByteCoders::codeInteger(size, bytes_.data()); }

unsigned char Header::numberOfChannels() const {
    return static_cast<unsigned char>(((bytes_[2] >> 6) + 1) * 2);
}

void Header::numberOfChannels(unsigned char channels) {
    if (channels >= 2 && channels <= 8 && channels % 2 == 0)
        bytes_[2] = masked(bytes_[2], 0xC0, (channels / 2u - 1u) << 6);
}

unsigned char Header::channelIdentification() const {
    return static_cast<unsigned char>((bytes_[2] << 2 | bytes_[3] >> 6) & 0xFF);
}

void Header::channelIdentification(unsigned char identification) {
    unsigned const bits = identification;
    bytes_[2] = masked(bytes_[2], 0x3F, bits >> 2u);
    bytes_[3] = masked(bytes_[3], 0xC0, bits << 6u);
}

unsigned char Header::bitsPerSample() const {
    unsigned const code = bytes_[3] >> 4 & 3u;
    if (code == 3)
        throw Exceptions::InvalidFormat("AES3 S302M stream contains an invalid number of bits per sample");
    return static_cast<unsigned char>(16 + 4 * code);
}

void Header::bitsPerSample(unsigned char bits) {
    if (bits == 16 || bits == 20 || bits == 24)
        bytes_[3] = masked(bytes_[3], 0x30, (bits - 16u) / 4 << 4);
}

} // namespace MXF::Zelm::Essence::AES3::S302M
