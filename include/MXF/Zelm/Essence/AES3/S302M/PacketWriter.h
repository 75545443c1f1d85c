/// SMPTE 302M packets out of PCM.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/AES3/AES3Info.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"
#include "MXF/Zelm/Essence/AES3/S302M/Header.h"
#include "MXF/Zelm/Essence/AES3/S302M/SamplePacking.h"
#include "MXF/Zelm/Utils/SampleCadence.h"

#include <vector>

namespace MXF::Zelm::Essence::AES3::S302M {

/// Makes one packet a picture. Blocks of 192 channel status bits run on from packet to packet; validity and
/// user bits are 0. Channel status bits are 0 until blocks are given.
class MXFZELM_EXPORT PacketWriter : public Platform::Allocated {
public:
    /// Packets of `info`'s channels and bits, `packetRate` a second, such as 30000/1001. Throws
    /// Exceptions::InvalidValue for other than 2, 4, 6 or 8 channels of 16, 20 or 24 bits at 48000 Hz, or a
    /// rate at which the samples do not fit in a packet.
    PacketWriter(AES3Info const& info, Templates::Rational<int> const& packetRate,
                 unsigned char channelIdentification = 0);
    ~PacketWriter();

    AES3Info const& info() const { return info_; }
    SamplePacking const& packing() const { return packing_; }

    /// Sets the channel status of a channel, from the next start of a block on if one is under way. Throws
    /// Exceptions::InvalidValue for a channel that is not there.
    void channelStatus(unsigned channel, ChannelStatus const& status);

    /// Samples of each channel that make the next packet at the packet rate.
    std::uint32_t nextSampleCount() const { return static_cast<std::uint32_t>(cadence_.samplesOf(packets_)); }

    /// A packet of all samples in `pcm`, little-endian as SamplePacking has them: `nextSampleCount()` of
    /// them, or fewer, as at the end, or more. Throws Exceptions::InvalidLength when they are not whole, or
    /// too many for a packet.
    DataIO::Slice packet(DataIO::Chain const& pcm);

private:
    void setFlags(unsigned char* packed, std::size_t instants);

    AES3Info info_;
    SamplePacking packing_;
    Utils::SampleCadence cadence_;
    Header header_;
    DataIO::Memory::MemoryBlockFactory blocks_;
    std::vector<ChannelStatus> statuses_, nextStatuses_;
    std::uint64_t packets_ = 0;
    unsigned blockPosition_ = 0; // of the next instant in its block
};

} // namespace MXF::Zelm::Essence::AES3::S302M
