#include "MXF/Zelm/Essence/AES3/S302M/SamplePacking.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <bit>
#include <cstring>
#include <string>

namespace MXF::Zelm::Essence::AES3::S302M {

namespace {

/// The number in `size` bytes, least significant first; a constant size makes it one load.
template <std::size_t size>
std::uint64_t load(const unsigned char* bytes) {
    std::uint64_t value = 0;
    if constexpr (std::endian::native == std::endian::little)
        std::memcpy(&value, bytes, size);
    else
        for (std::size_t i = size; i-- > 0;)
            value = value << 8 | bytes[i];
    return value;
}

template <std::size_t size>
void store(std::uint64_t value, unsigned char* bytes) {
    if constexpr (std::endian::native == std::endian::little)
        std::memcpy(bytes, &value, size);
    else
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<unsigned char>(value >> (8 * i) & 0xFF);
}

/// Turns the bits of every byte round.
constexpr std::uint64_t reverseBits(std::uint64_t value) {
    value = (value >> 1 & 0x5555555555555555u) | (value & 0x5555555555555555u) << 1;
    value = (value >> 2 & 0x3333333333333333u) | (value & 0x3333333333333333u) << 2;
    return (value >> 4 & 0x0F0F0F0F0F0F0F0Fu) | (value & 0x0F0F0F0F0F0F0F0Fu) << 4;
}

/// The sizes of a pair of samples of `bits` bits.
template <unsigned bits>
struct Pair {
    static constexpr unsigned wordBits = bits == 16 ? 16 : 24; ///< of a PCM word
    static constexpr unsigned unused = wordBits - bits;        ///< its lowest bits
    static constexpr std::size_t pcmSize = wordBits / 4;
    static constexpr std::size_t packedSize = (2 * bits + 8) / 8;
    static constexpr std::uint64_t mask = (std::uint64_t{1} << bits) - 1;

    static std::uint64_t pack(std::uint64_t pcm) {
        return reverseBits((pcm >> unused & mask) | (pcm >> (wordBits + unused) & mask) << (bits + 4));
    }
    static std::uint64_t unpack(std::uint64_t packed) {
        packed = reverseBits(packed);
        return (packed & mask) << unused | (packed >> (bits + 4) & mask) << (wordBits + unused);
    }
};

/// Changes `pairs` pairs of `inSize` bytes into ones of `outSize`. All but the last are moved eight bytes at
/// a time: what is too much of them is overwritten by the next pairs.
template <std::size_t inSize, std::size_t outSize, class Change>
void changePairs(const unsigned char* in, std::size_t pairs, unsigned char* out, Change change) {
    constexpr std::size_t atOnce = sizeof(std::uint64_t);
    for (; pairs > 1; --pairs, in += inSize, out += outSize)
        store<atOnce>(change(load<atOnce>(in)), out);
    for (; pairs > 0; --pairs, in += inSize, out += outSize)
        store<outSize>(change(load<inSize>(in)), out);
}

template <unsigned bits>
void packPairs(const unsigned char* pcm, std::size_t pairs, unsigned char* packed) {
    changePairs<Pair<bits>::pcmSize, Pair<bits>::packedSize>(pcm, pairs, packed, Pair<bits>::pack);
}

template <unsigned bits>
void unpackPairs(const unsigned char* packed, std::size_t pairs, unsigned char* pcm) {
    changePairs<Pair<bits>::packedSize, Pair<bits>::pcmSize>(packed, pairs, pcm, Pair<bits>::unpack);
}

} // namespace

SamplePacking::SamplePacking(unsigned bitsPerSample, unsigned channels)
    : bits_(bitsPerSample), pairs_(channels / 2) {
    bool const fits =
        (bits_ == 16 || bits_ == 20 || bits_ == 24) && channels % 2 == 0 && channels >= 2 && channels <= 8;
    if (!fits)
        throw Exceptions::InvalidValue("SMPTE 302M has no packets of " + std::to_string(channels) +
                                       " channels with samples of " + std::to_string(bitsPerSample) +
                                       " bits");
}

void SamplePacking::pack(const unsigned char* pcm, std::size_t instants, unsigned char* packed) const {
    auto const function = bits_ == 16 ? packPairs<16> : bits_ == 20 ? packPairs<20> : packPairs<24>;
    function(pcm, instants * pairs_, packed);
}

void SamplePacking::unpack(const unsigned char* packed, std::size_t instants, unsigned char* pcm) const {
    auto const function = bits_ == 16 ? unpackPairs<16> : bits_ == 20 ? unpackPairs<20> : unpackPairs<24>;
    function(packed, instants * pairs_, pcm);
}

/// Bits of the packet before a flag.
std::size_t SamplePacking::bitIndex(std::size_t instant, unsigned channel, Flag flag) const {
    std::size_t const subframes = instant * pairs_ * 2 + channel;
    return subframes * (bits_ + 4) + bits_ + flag;
}

bool SamplePacking::flag(const unsigned char* packed, std::size_t instant, unsigned channel,
                         Flag flag) const {
    std::size_t const index = bitIndex(instant, channel, flag);
    return (packed[index / 8] >> (7 - index % 8) & 1u) != 0;
}

void SamplePacking::setFlag(unsigned char* packed, std::size_t instant, unsigned channel, Flag flag) const {
    std::size_t const index = bitIndex(instant, channel, flag);
    packed[index / 8] = static_cast<unsigned char>(packed[index / 8] | 0x80u >> index % 8);
}

} // namespace MXF::Zelm::Essence::AES3::S302M
