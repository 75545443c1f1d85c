/// When and how a picture of AVC is shown (ISO/IEC 14496-10, D.1.3).
#pragma once

#include "MXF/Zelm/Essence/AVC/ParameterSets.h"

namespace MXF::Zelm::Essence::AVC {

/// A time of day; parts that are not told are those of the picture before, and 0 here.
struct MXFZELM_EXPORT ClockTimestamp {
    std::uint8_t hours = 0, minutes = 0, seconds = 0, frames = 0;

    /// Hours to seconds are told.
    bool isFull = false;

    /// The first two frames of each minute but every tenth are not counted.
    bool dropFrame = false;
};

struct MXFZELM_EXPORT PictureTiming {
    /// 0 a frame; 1 a top, 2 a bottom field; 3 top before bottom, 4 bottom before top, 5 and 6 with the first
    /// one once more; 7 and 8 a frame two and three times. Absent when it is not told.
    std::optional<std::uint8_t> structure = std::nullopt;

    /// The first one of the picture.
    std::optional<ClockTimestamp> clock = std::nullopt;

    bool isFrame() const { return structure && (*structure == 0 || *structure >= 7); }

    /// A message of supplemental information, without its type and size. What is cut off is left out.
    static PictureTiming read(DataIO::Chain const& message, VideoUsability const& usability);
};

} // namespace MXF::Zelm::Essence::AVC
