/// Times as documents of timed text write them.
#pragma once

#include "MXF/Zelm/Templates/Rational.h"

#include <optional>
#include <string_view>

namespace MXF::Zelm::Essence::TimedText {

/// What frames and ticks are.
struct TimeUnits {
    double framesPerSecond = 30;
    double ticksPerSecond = 1;

    /// What the fourth number of "00:00:01:12" counts, in a second.
    double fourthPerSecond = 30;
};

/// Times are not taken for more than this, in seconds: a year.
inline constexpr double longestTime = 366.0 * 24 * 3600;

/// "00:01:02.345", "00:01:02:12", "62.3s", "1500ms", "240f", "255255t", "1.5h", "2m": in seconds. None for
/// what is no such time.
std::optional<double> parseTime(std::string_view text, TimeUnits const& units);

/// "24 1" or "24000 1001", or one number: 0/0 for what is neither.
Templates::Rational<int> parseRatio(std::string_view text);

} // namespace MXF::Zelm::Essence::TimedText
