/// Tracks of timed text with its fonts and pictures, for `zelm wrap`.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

bool isTimedText(InputHead const& head, TrackMaking const& making);

/// The resources of the options belong to the document; there can be but one then.
void addTimedText(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

} // namespace Zelm
