#include "MXF/Zelm/Essence/AES3/EightChannelWriter.h"

#include "MXF/Zelm/Essence/AES3/SubframeWords.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>

namespace MXF::Zelm::Essence::AES3 {

namespace {

constexpr std::size_t headSize = 4;
constexpr unsigned flagsAreValid = 0x80;
constexpr unsigned sequenceLength = 5;

} // namespace

EightChannelWriter::EightChannelWriter(PCMFormat const& format, Templates::Rational<int> const& frameRate,
                                       Templates::Rational<int> const& samplingRate)
    : format_(format), cadence_(samplingRate, frameRate) {
    requireValid(format);
    if (format.channels > channelCount || format.bitsPerSample > 24 ||
        format.byteOrder != PCMFormat::ByteOrder::Little || cadence_.mostSamples() > mostSamples)
        throw Exceptions::InvalidValue("An AES3 element of eight channels cannot hold " +
                                       std::to_string(format.channels) + " channels of " +
                                       std::to_string(format.bitsPerSample) + " bits in this order and rate");
}

EightChannelWriter::~EightChannelWriter() = default;

void EightChannelWriter::channelStatus(ChannelStatus const& status) {
    statuses_.assign(channelCount, status);
}

void EightChannelWriter::channelStatus(unsigned channel, ChannelStatus const& status) {
    if (channel >= channelCount)
        throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " of 8");
    statuses_.resize(channelCount);
    statuses_[channel] = status;
}

DataIO::Slice EightChannelWriter::element(DataIO::Chain const& pcm) {
    if (pcm.size() % format_.instantSize() != 0 || pcm.size() / format_.instantSize() > mostSamples)
        throw Exceptions::InvalidLength(
            "An AES3 element of eight channels has up to " + std::to_string(mostSamples) + " samples of " +
            std::to_string(format_.instantSize()) + " bytes, not " + std::to_string(pcm.size()) + " bytes");
    auto const samples = pcm.contiguous();
    std::size_t const instants = samples.size() / format_.instantSize();
    auto block = blocks_.block(size(instants));
    unsigned char* const head = block->bytes();
    std::uint64_t const sequence = cadence_.isConstant() ? 0 : 1 + elements_ % sequenceLength;
    head[0] = static_cast<unsigned char>((statuses_.empty() ? 0 : flagsAreValid) | sequence);
    head[1] = static_cast<unsigned char>(instants & 0xFF);
    head[2] = static_cast<unsigned char>(instants >> 8);
    head[3] = static_cast<unsigned char>((1u << format_.channels) - 1);
    packSubframes(format_, samples.data(), instants, channelCount, head + headSize);
    if (!statuses_.empty())
        blockPosition_ = setSubframeFlags(statuses_, blockPosition_, head + headSize, instants);
    ++elements_;
    return {std::move(block), 0, size(instants)};
}

} // namespace MXF::Zelm::Essence::AES3
