/// Frame counts as timecode and as time.
#pragma once

#include "FileInfo.h"

#include <string>

namespace Zelm {

/// "10:00:00:00", with ';' before the frames of drop-frame timecode (SMPTE 12M); `frame` counts from
/// midnight. At bases that drop no frames (other than multiples of 30) the flag is passed over.
std::string timecodeText(std::int64_t frame, std::uint16_t base, bool dropFrame);
inline std::string timecodeText(TimecodeInfo const& timecode) {
    return timecodeText(timecode.start, timecode.base, timecode.dropFrame);
}

/// "00:01:23.480": `editUnits` at `rate`. Empty when the rate is not known.
std::string durationText(std::int64_t editUnits, EditRate const& rate);

/// "25", "29.97", "23.976".
std::string rateText(EditRate const& rate);

} // namespace Zelm
