/// Frame counts as timecode and as time.
#pragma once

#include "FileInfo.h"

#include <string>

namespace Zelm {

/// "10:00:00:00", with ';' before the frames of drop-frame timecode. At bases that drop no frames the flag is
/// passed over; a start below 0 (unknown) is shown as its number.
std::string timecodeText(TimecodeInfo const& timecode);

/// "00:01:23.480": `editUnits` at `rate`. Empty when the rate is not known.
std::string durationText(std::int64_t editUnits, EditRate const& rate);

/// "25", "29.97", "23.976".
std::string rateText(EditRate const& rate);

} // namespace Zelm
