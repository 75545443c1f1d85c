#include "Timecode.h"

#include <cmath>
#include <cstdio>

namespace Zelm {

namespace {

/// More than any timecode counts, and little enough to calculate with.
constexpr std::int64_t mostFrames = 1'000'000'000'000;
constexpr long double mostMilliseconds = 1e15L;

/// Frame numbers skipped: two of each thirty at the start of every minute but the tenth ones.
std::int64_t withDroppedNumbers(std::int64_t frame, std::int64_t base) {
    std::int64_t const dropped = base / 30 * 2;
    std::int64_t const perMinute = base * 60 - dropped;
    std::int64_t const perTenMinutes = perMinute * 10 + dropped;
    std::int64_t const tens = frame / perTenMinutes;
    std::int64_t const rest = frame % perTenMinutes;
    std::int64_t const minutes = rest < base * 60 ? 0 : (rest - base * 60) / perMinute + 1;
    return frame + dropped * (tens * 9 + minutes);
}

} // namespace

std::string timecodeText(std::int64_t frame, std::uint16_t base, bool dropFrame) {
    if (base == 0 || frame < 0 || frame > mostFrames)
        return std::to_string(frame);
    bool const drop = dropFrame && base % 30 == 0;
    std::int64_t const number = drop ? withDroppedNumbers(frame, base) : frame;
    std::int64_t const seconds = number / base;
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld%c%02lld",
                  static_cast<long long>(seconds / 3600 % 24), static_cast<long long>(seconds / 60 % 60),
                  static_cast<long long>(seconds % 60), drop ? ';' : ':',
                  static_cast<long long>(number % base));
    return text;
}

std::string durationText(std::int64_t editUnits, EditRate const& rate) {
    if (rate.numerator <= 0 || rate.denominator <= 0 || editUnits < 0)
        return {};
    long double const exact = static_cast<long double>(editUnits) * rate.denominator * 1000 / rate.numerator;
    if (exact > mostMilliseconds)
        return {};
    auto const milliseconds = std::llround(exact);
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld.%03lld", milliseconds / 3600000,
                  milliseconds / 60000 % 60, milliseconds / 1000 % 60, milliseconds % 1000);
    return text;
}

std::string rateText(EditRate const& rate) {
    if (rate.denominator == 0)
        return "unknown";
    if (rate.numerator % rate.denominator == 0)
        return std::to_string(rate.numerator / rate.denominator);
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", rate.toDouble());
    std::string shortened(text);
    while (shortened.back() == '0')
        shortened.pop_back();
    return shortened;
}

} // namespace Zelm
