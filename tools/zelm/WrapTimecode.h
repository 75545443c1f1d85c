/// Where the timecode of what `zelm wrap` writes begins.
#pragma once

#include "WrapTracks.h"

namespace Zelm {

struct StartTimecode {
    MXF::Zelm::Utils::TimeCode value;
    std::string from = {}; ///< the input that tells it, or the option; empty when nothing does
};

/// The start of tracks that play at once, at a rate in content packages a second: what --start-timecode says,
/// else the timecode of the first picture that tells one, else that of the first sound. 00:00:00:00 is what
/// encoders write that know none, so that another one is preferred. Throws Exceptions::InvalidValue for
/// options that are no timecode at that rate.
StartTimecode startTimecode(Layout const& layout, EditRate const& rate, std::vector<WrapTrack*> const& item);

} // namespace Zelm
