/// The channel status of AES3: what a professional interface says of one channel, 24 bytes in a block of 192
/// frames.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <array>
#include <cstdint>

namespace MXF::Zelm::Essence::AES3 {

using ChannelStatus = std::array<unsigned char, 24>;

/// Of linear PCM without emphasis at a locked sampling rate, in samples of `bits` bits (16 to 24; a length
/// that the status cannot say is left out). Channel mode, origin and times are not indicated.
MXFZELM_EXPORT ChannelStatus channelStatusOfPCM(std::uint32_t samplingRate, unsigned bits);

/// What the last byte is to be: the CRC of the 23 before it.
MXFZELM_EXPORT unsigned char channelStatusCRC(ChannelStatus const& status);

} // namespace MXF::Zelm::Essence::AES3
