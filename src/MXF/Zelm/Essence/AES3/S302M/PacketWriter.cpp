#include "MXF/Zelm/Essence/AES3/S302M/PacketWriter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>

namespace MXF::Zelm::Essence::AES3::S302M {

namespace {

constexpr std::uint64_t largestPayload = 0xFFFF;

} // namespace

PacketWriter::PacketWriter(AES3Info const& info, Templates::Rational<int> const& packetRate,
                           unsigned char channelIdentification)
    : info_(info),
      packing_(info.bitsPerSample, info.channels),
      cadence_(info.samplingRate, packetRate),
      statuses_(info.channels),
      nextStatuses_(info.channels) {
    if (!(info.samplingRate == Templates::Rational<int>{48000, 1}))
        throw Exceptions::InvalidValue("SMPTE 302M carries 48000 samples a second, not " +
                                       std::to_string(info.samplingRate.numerator) + "/" +
                                       std::to_string(info.samplingRate.denominator));
    if (cadence_.mostSamples() > largestPayload / packing_.packedSize())
        throw Exceptions::InvalidValue(std::to_string(cadence_.mostSamples()) +
                                       " samples do not fit in a packet of SMPTE 302M");
    header_.numberOfChannels(static_cast<unsigned char>(info.channels));
    header_.bitsPerSample(static_cast<unsigned char>(info.bitsPerSample));
    header_.channelIdentification(channelIdentification);
}

PacketWriter::~PacketWriter() = default;

void PacketWriter::channelStatus(unsigned channel, ChannelStatus const& status) {
    if (channel >= info_.channels)
        throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " of " +
                                       std::to_string(info_.channels));
    nextStatuses_[channel] = status;
}

DataIO::Slice PacketWriter::packet(DataIO::Chain const& pcm) {
    std::uint64_t const most = largestPayload / packing_.packedSize();
    if (pcm.size() % packing_.pcmSize() != 0 || pcm.size() / packing_.pcmSize() > most)
        throw Exceptions::InvalidLength("A packet of SMPTE 302M has up to " + std::to_string(most) +
                                        " samples of " + std::to_string(packing_.pcmSize()) + " bytes, not " +
                                        std::to_string(pcm.size()) + " bytes");
    auto const samples = pcm.contiguous();
    std::size_t const instants = samples.size() / packing_.pcmSize();
    std::size_t const payload = instants * packing_.packedSize();
    auto block = blocks_.block(Header::size() + payload);
    unsigned char* const packed = block->bytes() + Header::size();
    packing_.pack(samples.data(), instants, packed);
    setFlags(packed, instants);
    header_.audioPacketSize(static_cast<std::uint16_t>(payload));
    header_.serialize(block->bytes());
    ++packets_;
    return {std::move(block), 0, Header::size() + payload};
}

/// Most bits of channel status are 0: only those that are not are set.
void PacketWriter::setFlags(unsigned char* packed, std::size_t instants) {
    for (std::size_t i = 0; i < instants; ++i) {
        if (blockPosition_ == 0)
            statuses_ = nextStatuses_;
        for (unsigned channel = 0; channel < info_.channels; ++channel) {
            if (blockPosition_ == 0 && channel % 2 == 0)
                packing_.setFlag(packed, i, channel, SamplePacking::BlockStart);
            if (statuses_[channel].bit(blockPosition_))
                packing_.setFlag(packed, i, channel, SamplePacking::ChannelStatusBit);
        }
        blockPosition_ = (blockPosition_ + 1) % ChannelStatus::blockBits;
    }
}

} // namespace MXF::Zelm::Essence::AES3::S302M
