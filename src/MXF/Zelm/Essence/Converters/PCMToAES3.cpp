#include "MXF/Zelm/Essence/Converters/PCMToAES3.h"

#include "MXF/Zelm/Essence/AES3/SubframeWords.h"
#include "MXF/Zelm/Essence/Converters/SampleMover.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

PCMToAES3::PCMToAES3(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format,
                     unsigned bytesPerSample, std::optional<AES3::ChannelStatus> const& status)
    : BlockConverter(std::move(source), format.instantSize(), std::size_t{format.channels} * bytesPerSample),
      format_(format),
      bytesPerSample_(bytesPerSample) {
    requireValid(format);
    if (format.bitsPerSample > 24 || format.byteOrder != PCMFormat::ByteOrder::Little)
        throw Exceptions::InvalidValue("AES3 is made of little-endian samples of up to 24 bits");
    if (bytesPerSample != 3 && bytesPerSample != AES3::subframeSize)
        throw Exceptions::InvalidFormat("AES3 has invalid bytes per Sample");
    if (status)
        statuses_.assign(format.channels, *status);
}

void PCMToAES3::channelStatus(unsigned channel, AES3::ChannelStatus const& status) {
    if (channel >= format_.channels)
        throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " of " +
                                       std::to_string(format_.channels));
    statuses_.resize(format_.channels);
    statuses_[channel] = status;
}

void PCMToAES3::convert(const unsigned char* in, std::size_t units, unsigned char* out) {
    if (bytesPerSample_ != AES3::subframeSize)
        return SampleMover(format_, {format_.channels, 24}).moveAll(in, units, out);
    AES3::packSubframes(format_, in, units, format_.channels, out);
    if (!statuses_.empty())
        blockPosition_ = AES3::setSubframeFlags(statuses_, blockPosition_, out, units);
}

} // namespace MXF::Zelm::Essence::Converters
