/// How SMPTE 302M packs samples.
///
/// The two subframes of a pair stand bit behind bit in the order in which AES3 sends them, samples with their
/// least significant bit first, the first bit of a byte its most significant one:
///
///     | s0 … sN | V U C F | t0 … tN | V U C F |       5, 6 or 7 bytes for samples of 16, 20 or 24 bits
///
/// With the bits of each byte reversed this is one little-endian number. F is set in the first subframe of a
/// pair where a block of 192 channel status bits begins.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <cstddef>
#include <cstdint>

namespace MXF::Zelm::Essence::AES3::S302M {

/// Packs and unpacks samples of one format. PCM stands little-endian, channels in turn: samples of 16 bits in
/// 2 bytes, those of 24 and 20 in 3, of 20 in their upper bits. An instant is one sample of each channel.
class MXFZELM_EXPORT SamplePacking : public Platform::Allocated {
public:
    /// The bits behind a sample: not valid as PCM, user data, channel status, start of a block.
    enum Flag : unsigned { Validity = 0, User = 1, ChannelStatusBit = 2, BlockStart = 3 };

    /// Throws Exceptions::InvalidValue for other than 16, 20 or 24 bits, or 2, 4, 6 or 8 channels.
    SamplePacking(unsigned bitsPerSample, unsigned channels);

    /// Bytes of an instant in a packet: 5 to 28.
    std::size_t packedSize() const { return pairSize() * pairs_; }

    /// Bytes of an instant as PCM: 4 to 24.
    std::size_t pcmSize() const { return std::size_t{bits_ == 16 ? 4u : 6u} * pairs_; }

    /// Packs `instants` instants with all flags 0.
    void pack(const unsigned char* pcm, std::size_t instants, unsigned char* packed) const;

    /// Unpacks `instants` instants, whatever their flags.
    void unpack(const unsigned char* packed, std::size_t instants, unsigned char* pcm) const;

    /// A flag of a channel in instant `instant` of `packed`.
    bool flag(const unsigned char* packed, std::size_t instant, unsigned channel, Flag flag) const;
    void setFlag(unsigned char* packed, std::size_t instant, unsigned channel, Flag flag) const;

private:
    std::size_t pairSize() const { return (2 * bits_ + 8) / 8; }
    std::size_t bitIndex(std::size_t instant, unsigned channel, Flag flag) const;

    unsigned bits_;
    unsigned pairs_;
};

} // namespace MXF::Zelm::Essence::AES3::S302M
