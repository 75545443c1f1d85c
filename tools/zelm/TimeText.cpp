#include "TimeText.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Utils/TimeCode.h>

#include <cmath>
#include <cstdio>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// More than any duration, and little enough to calculate with.
constexpr long double mostMilliseconds = 1e15L;

} // namespace

std::string timecodeText(TimecodeInfo const& timecode) {
    if (timecode.start < 0)
        return std::to_string(timecode.start);
    Utils::TimeBase const base(timecode.base, timecode.dropFrame && Utils::TimeBase::canDrop(timecode.base));
    return Platform::toUtf8(Utils::TimeCode(base, timecode.start).toString());
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
    std::int64_t const numerator = rate.numerator, denominator = rate.denominator;
    if (numerator % denominator == 0)
        return std::to_string(numerator / denominator);
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", rate.toDouble());
    std::string shortened(text);
    while (shortened.back() == '0')
        shortened.pop_back();
    return shortened;
}

} // namespace Zelm
