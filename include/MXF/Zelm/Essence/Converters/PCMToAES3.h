/// AES3 subframes out of PCM.
#pragma once

#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"
#include "MXF/Zelm/Essence/Converters/BlockConverter.h"
#include "MXF/Zelm/Essence/PCMFormat.h"

#include <optional>
#include <vector>

namespace MXF::Zelm::Essence::Converters {

/// Gives subframes of 4 bytes, the words of SMPTE 331M with channel numbers 0 to 7, again and again, or of 3
/// bytes, the sample alone in 24 bits (SMPTE 382M).
class MXFZELM_EXPORT PCMToAES3 : public BlockConverter {
public:
    /// Reads PCM of 16, 20 or 24 bits, little-endian. Words carry `status` in every channel, with block start
    /// and parity; without it these bits are 0. Throws Exceptions::InvalidValue for another format, and
    /// Exceptions::InvalidFormat with "AES3 has invalid bytes per Sample" for other than 3 and 4 bytes.
    PCMToAES3(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format,
              unsigned bytesPerSample, std::optional<AES3::ChannelStatus> const& status = std::nullopt);

    /// The status of one channel in what is read from now on; the others keep theirs. Throws
    /// Exceptions::InvalidValue when there is no such channel.
    void channelStatus(unsigned channel, AES3::ChannelStatus const& status);

private:
    void convert(const unsigned char* in, std::size_t units, unsigned char* out) override;

    PCMFormat format_;
    unsigned bytesPerSample_;
    std::vector<AES3::ChannelStatus> statuses_;
    unsigned blockPosition_ = 0;
};

} // namespace MXF::Zelm::Essence::Converters
