/// Sound elements of eight AES3 channels (SMPTE 331M) out of PCM, as D-10 content packages have them.
///
///     byte 0      bit 7: V, U, C, P and Z bits are valid; bits 2 to 0: place in the sequence of five frames
///     byte 1, 2   samples of each channel, little-endian
///     byte 3      bit n: channel n + 1 is there
///     byte 4 …    for each sample eight words of 4 bytes, channel 1 to 8, little-endian
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"
#include "MXF/Zelm/Essence/PCMFormat.h"
#include "MXF/Zelm/Utils/SampleCadence.h"

#include <vector>

namespace MXF::Zelm::Essence::AES3 {

/// Makes one element a picture. Frames that all have as many samples have the sequence count 0, others 1 to
/// 5; there are writers that count these from 0 to 4. Channels that the sound does not have are silent and
/// not flagged.
class MXFZELM_EXPORT EightChannelWriter : public Platform::Allocated {
public:
    static constexpr unsigned channelCount = 8;

    /// Samples of a channel that an element can say it has.
    static constexpr std::size_t mostSamples = 0xFFFF;

    /// Bytes of an element of `samples` samples of each channel.
    static constexpr std::size_t size(std::size_t samples) { return 4 + samples * channelCount * 4; }

    /// From PCM of 1 to 8 channels of 16, 20 or 24 bits, little-endian, for `frameRate` pictures a second.
    /// Throws Exceptions::InvalidValue for others, or a rate at which a frame has more than `mostSamples`.
    EightChannelWriter(PCMFormat const& format, Templates::Rational<int> const& frameRate,
                       Templates::Rational<int> const& samplingRate = {48000, 1});
    ~EightChannelWriter();

    PCMFormat const& format() const { return format_; }

    /// Samples of each channel that make the next element.
    std::uint32_t nextSampleCount() const {
        return static_cast<std::uint32_t>(cadence_.samplesOf(elements_));
    }

    /// Bytes of the largest element that the rate asks for.
    std::size_t largestElement() const { return size(static_cast<std::size_t>(cadence_.mostSamples())); }

    /// From the next element on, gives channel status, block start and parity with every word, and marks them
    /// valid. All channels have the same block. Without it these bits are 0 and not valid.
    void channelStatus(ChannelStatus const& status);

    /// The same of one channel, 0 to 7; those that get none have blocks of zeros. Throws
    /// Exceptions::InvalidValue for another channel.
    void channelStatus(unsigned channel, ChannelStatus const& status);

    /// An element of all samples in `pcm`: `nextSampleCount()` of them, or fewer, as at the end, or more.
    /// Throws Exceptions::InvalidLength when they are not whole, or more than `mostSamples`.
    DataIO::Slice element(DataIO::Chain const& pcm);

private:
    PCMFormat format_;
    Utils::SampleCadence cadence_;
    DataIO::Memory::MemoryBlockFactory blocks_;
    std::vector<ChannelStatus> statuses_; // empty for none
    std::uint64_t elements_ = 0;
    unsigned blockPosition_ = 0;
};

} // namespace MXF::Zelm::Essence::AES3
