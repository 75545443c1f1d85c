/// What presets of `zelm wrap` ask for of the tracks.
#pragma once

#include "WrapPlan.h"

namespace Zelm {

/// D-10 has all sounds in one element: makes one track of them. Throws CannotWrap without D-10 pictures.
void joinD10Sounds(std::vector<std::vector<WrapTrack>>& opened);

/// Throws CannotWrap when the preset's document does not allow the tracks.
void checkPreset(Layout const& layout, WrapPlan const& plan);

} // namespace Zelm
