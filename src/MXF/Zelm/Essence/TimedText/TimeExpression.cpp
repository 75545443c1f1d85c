#include "MXF/Zelm/Essence/TimedText/TimeExpression.h"

#include <charconv>

namespace MXF::Zelm::Essence::TimedText {

namespace {

/// Digits, with a fraction where it is allowed, from the front of `text`, which loses them. Not by
/// std::from_chars, which some standard libraries lack for floating point.
std::optional<double> takeNumber(std::string_view& text, bool mayHaveFraction) {
    constexpr std::size_t mostDigits = 12;
    std::size_t digits = 0;
    double value = 0, scale = 0;
    for (; !text.empty() && digits < mostDigits; text.remove_prefix(1)) {
        char const letter = text.front();
        if (letter == '.' && mayHaveFraction && scale == 0 && digits != 0) {
            scale = 1;
            continue;
        }
        if (letter < '0' || letter > '9')
            break;
        value = value * 10 + (letter - '0');
        scale *= 10;
        ++digits;
    }
    return digits != 0 ? std::optional(scale != 0 ? value / scale : value) : std::nullopt;
}

bool takeColon(std::string_view& text) {
    bool const isThere = text.substr(0, 1) == ":";
    text.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

/// Behind the hours: minutes, seconds, and a fourth number.
std::optional<double> parseClock(double hours, std::string_view text, TimeUnits const& units) {
    auto const minutes = takeNumber(text, false);
    if (!minutes || !takeColon(text))
        return std::nullopt;
    auto const seconds = takeNumber(text, true);
    double time = (hours * 60 + *minutes) * 60 + seconds.value_or(0);
    if (!seconds)
        return std::nullopt;
    if (takeColon(text)) {
        auto const fourth = takeNumber(text, true); // frames may have a fraction, of sub-frames
        if (!fourth)
            return std::nullopt;
        time += *fourth / units.fourthPerSecond;
    }
    return text.empty() ? std::optional(time) : std::nullopt;
}

/// Seconds that a metric stands for; 0 for none.
double secondsOf(std::string_view metric, TimeUnits const& units) {
    return metric == "h"    ? 3600
           : metric == "m"  ? 60
           : metric == "s"  ? 1
           : metric == "ms" ? 0.001
           : metric == "f"  ? 1 / units.framesPerSecond
           : metric == "t"  ? 1 / units.ticksPerSecond
                            : 0;
}

int takeInteger(std::string_view& text) {
    int value = 0;
    auto const [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return error == std::errc() && value > 0 ? value : 0;
}

} // namespace

std::optional<double> parseTime(std::string_view text, TimeUnits const& units) {
    auto const number = takeNumber(text, true);
    if (!number)
        return std::nullopt;
    double const seconds = secondsOf(text, units);
    auto const time = takeColon(text) ? parseClock(*number, text, units)
                      : seconds > 0   ? std::optional(*number * seconds)
                                      : std::nullopt;
    return time && *time <= longestTime ? time : std::nullopt;
}

Templates::Rational<int> parseRatio(std::string_view text) {
    int const numerator = takeInteger(text);
    if (text.empty())
        return numerator != 0 ? Templates::Rational<int>{numerator, 1} : Templates::Rational<int>{};
    text.remove_prefix(text.front() == ' ' || text.front() == ':' ? 1 : 0);
    int const denominator = takeInteger(text);
    bool const isRatio = numerator != 0 && denominator != 0 && text.empty();
    return isRatio ? Templates::Rational<int>{numerator, denominator} : Templates::Rational<int>{};
}

} // namespace MXF::Zelm::Essence::TimedText
