/// Pictures as inputs of `zelm wrap`: MPEG-2, D-10, AVC and DV.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

bool isVideo(InputHead const& head, TrackMaking const& making); ///< MPEG-1 or MPEG-2
bool isD10(InputHead const& head, TrackMaking const& making);
bool isAvc(InputHead const& head, TrackMaking const& making);
bool isDv(InputHead const& head, TrackMaking const& making);

/// Append a track each. Throw CannotWrap for a stream without a picture or frame rate.
void addMpeg(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
void addD10(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
void addAvc(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
void addDv(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

} // namespace Zelm
