/// VBI and ANC as inputs of `zelm wrap`, as `zelm ancillary --dump --json` prints them.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

/// An object with an array of packets among its first members.
bool isAncillary(InputHead const& head, TrackMaking const& making);

/// A track of each kind of which there are packets. Throws CannotWrap, with the number of the packet that
/// cannot be read.
void addAncillary(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

} // namespace Zelm
