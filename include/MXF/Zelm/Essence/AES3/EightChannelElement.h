/// The sound element of eight AES3 channels (SMPTE 331M), as D-10 content packages have it (SMPTE 386M).
///
///     byte 0      bit 7: V, U, C, P and Z bits are valid; bits 2 to 0: place in the sequence of five frames
///     byte 1, 2   samples of each channel, little-endian
///     byte 3      bit n: channel n + 1 is there
///     byte 4 …    for each sample eight words of 4 bytes, channel 1 to 8, little-endian:
///                 bits 0 to 2 channel, 3 block start, 4 to 27 sample, 28 V, 29 U, 30 C, 31 P
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"

#include <vector>

namespace MXF::Zelm::Essence::AES3 {

class MXFZELM_EXPORT EightChannelElement : public Platform::Allocated {
public:
    static constexpr unsigned channelCount = 8;

    /// Takes the value of an element. Throws Exceptions::InvalidLength when it does not hold the samples that
    /// it says it has.
    explicit EightChannelElement(DataIO::Chain const& value);

    /// Samples of each channel.
    unsigned sampleCount() const { return sampleCount_; }

    /// Bit n stands for channel n + 1. Zero where the writer left the flags out.
    unsigned channelFlags() const { return bytes_.data()[3]; }

    /// Where in the sequence of five frames this one stands, as the writer counts them; 0 for frames that all
    /// have as many samples.
    unsigned sequenceCount() const { return bytes_.data()[0] & 7u; }

    /// True when the V, U, C, P and Z bits mean something.
    bool hasAuxiliaryBits() const { return (bytes_.data()[0] & 0x80u) != 0; }

    /// Appends the samples of the first `channels` channels, 1 to 8, as they stand in a Wave file: in turn,
    /// in `sampleBytes` bytes each, 2 (the upper 16 bits) or 3. A channel that is not flagged among others
    /// that are is silent. Throws Exceptions::InvalidValue for other numbers.
    void appendSamples(unsigned channels, unsigned sampleBytes, std::vector<unsigned char>& samples) const;

private:
    DataIO::Slice bytes_;
    unsigned sampleCount_;
};

} // namespace MXF::Zelm::Essence::AES3
