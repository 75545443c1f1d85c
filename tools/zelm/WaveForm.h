/// Sound tracks as Wave files describe them.
#pragma once

#include "FileInfo.h"

#include <MXF/Zelm/Essence/AES3/ChannelStatus.h>
#include <MXF/Zelm/Essence/Wave/WaveFormat.h>
#include <MXF/Zelm/MXFIO/EssenceContainer.h>

#include <optional>
#include <string>
#include <vector>

namespace Zelm {

/// The samples of a sound track by its descriptor; none when that does not say enough. With `eightChannels`
/// those that come out of AES3 elements of eight channels.
std::optional<MXF::Zelm::Essence::Wave::WaveFormat> waveFormat(MXF::Zelm::MXFIO::EssenceTrack const& track,
                                                               bool eightChannels);

/// True for AES3 sound whose lowest four bits of 24 are no part of the samples.
bool hasOtherAuxiliaryBits(MXF::Zelm::MXFIO::EssenceTrack const& track);

/// The channel status that the descriptor of an AES3 sound has for its first channels, or for all.
std::vector<MXF::Zelm::Essence::AES3::ChannelStatus>
channelStatuses(MXF::Zelm::MXFIO::EssenceTrack const& track);

/// What a broadcast Wave file says of edit unit `position` and what follows. `info` has the packages of the
/// file.
MXF::Zelm::Essence::Wave::BroadcastExtension
broadcastExtension(FileInfo const& info, MXF::Zelm::MXFIO::EssenceContainer const& container,
                   MXF::Zelm::MXFIO::EssenceTrack const& track, std::int64_t position,
                   std::uint32_t samplingRate);

} // namespace Zelm
