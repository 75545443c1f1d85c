/// What presets of `zelm wrap` ask for of the tracks.
#pragma once

#include "WrapPlan.h"

namespace Zelm {

/// D-10 has all sounds in one element: makes one track of them. Throws CannotWrap without D-10 pictures.
void joinD10Sounds(std::vector<std::vector<WrapTrack>>& opened, TrackOptionsOfWrap const& options);

/// Throws CannotWrap when the preset's document does not allow the tracks.
void checkPreset(Layout const& layout, WrapPlan const& plan);

/// Afterwards: groups of pictures that are longer than the preset's document allows are a fault of the track.
void checkGroups(Layout const& layout, WrapTrack const& track);

} // namespace Zelm
