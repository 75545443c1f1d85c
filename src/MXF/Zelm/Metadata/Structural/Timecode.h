/// The timecode component of a timecode track.
#pragma once

#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"
#include "MXF/Zelm/Utils/TimeBase.h"

#include <optional>

namespace MXF::Zelm::Metadata::Structural {

/// The first component of the track. Throws Exceptions::InvalidStructure as `isDropFrame` does.
TimecodeComponent const& timecodeComponentOf(TimelineTrack const& track);

/// Throws Exceptions::InvalidStructure with "Timecode component does not have the 'dropFrame' element".
bool isDropFrame(TimecodeComponent const& component);

/// What the component counts; absent when it has no base. A drop-frame flag at a base that cannot drop is
/// passed over. Throws as `isDropFrame`.
std::optional<Utils::TimeBase> timeBaseOf(TimecodeComponent const& component);

} // namespace MXF::Zelm::Metadata::Structural
