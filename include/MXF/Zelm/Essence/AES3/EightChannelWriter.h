/// Makes the sound element of eight AES3 channels (SMPTE 331M) out of PCM. `EightChannelElement` tells the
/// layout.
#pragma once

#include "MXF/Zelm/DataIO/Slice.h"

#include <cstdint>

namespace MXF::Zelm::Essence::AES3 {

/// One element, all channels of which are silent and absent at first. V, U, C, P and Z bits are 0, and said
/// to be without meaning.
class MXFZELM_EXPORT EightChannelWriter : public Platform::Allocated {
public:
    static constexpr unsigned channelCount = 8;

    /// Samples of a channel that an element can say it has.
    static constexpr std::size_t mostSamples = 0xFFFF;

    static constexpr std::size_t size(std::size_t samples) { return 4 + samples * channelCount * 4; }

    /// `sequenceCount` as in the element. Throws Exceptions::InvalidValue above `mostSamples`.
    EightChannelWriter(std::size_t samples, unsigned sequenceCount);

    /// Writes one channel, 0 to 7, from `count` samples, at most those of the element: little-endian, of 2 to
    /// 4 bytes each, `step` bytes apart, of which the highest 24 bits are taken. The channel is marked as
    /// present; samples that are missing at its end are silent. Throws Exceptions::InvalidValue for another
    /// channel, size or count.
    void write(unsigned channel, const unsigned char* samples, std::size_t count, unsigned sampleBytes,
               std::size_t step);

    /// The element. Call it last.
    DataIO::Slice take() { return DataIO::Slice::adopt(std::move(block_)); }

private:
    Templates::SharedPtr<DataIO::Block> block_;
    std::size_t samples_;
};

} // namespace MXF::Zelm::Essence::AES3
