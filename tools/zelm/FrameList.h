/// Lists edit units as `zelm frames` is asked to.
#pragma once

#include "Frames.h"
#include "UnitRange.h"

#include <vector>

namespace Zelm {

struct FrameRequest {
    std::string file;
    std::string track; ///< as of TrackChoice.h; empty for whole edit units
    RangeChoice range;
    bool display = false; ///< list, and count the range, in display order
    std::vector<std::string> dictionaries;
};

/// Lists container after container. Faults of the file end the listing of their container and end up in what
/// is returned. Throws Exceptions::InvalidValue and InvalidFormat for a track or a range that the file does
/// not have, Exceptions::SystemError.
FrameListEnd listFrames(FrameRequest const& request, FramePrinter& printer);

/// The same of standard input, in the order in which edit units end there.
FrameListEnd listPipedFrames(FrameRequest const& request, FramePrinter& printer);

} // namespace Zelm
