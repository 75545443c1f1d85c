/// Tracks of uncompressed sound, for `zelm wrap`.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

/// Of a Wave file.
void addWave(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

/// Of samples in the format that the options tell.
void addSamples(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

/// "16,2,48000": bits of a sample, channels, instants a second. Throws CannotWrap.
MXF::Zelm::Essence::Wave::WaveFormat parsePcm(std::string const& text);

} // namespace Zelm
