/// Pictures as inputs of `zelm wrap`: AVC and DV.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

bool isAvc(InputHead const& head, TrackMaking const& making);
bool isDv(InputHead const& head, TrackMaking const& making);

/// Append a track each. Throw CannotWrap for a stream without a picture or frame rate.
void addAvc(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
void addDv(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

} // namespace Zelm
