#include "MXF/Zelm/Utils/TimeBase.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <limits>
#include <numeric>
#include <string>

namespace MXF::Zelm::Utils {

namespace {

using Limits = std::numeric_limits<std::int64_t>;

template <class Integer>
void requirePositive(Templates::Rational<Integer> const& value, bool positive, const char* what) {
    if (!positive)
        throw Exceptions::InvalidValue(std::string(what) + " of " + std::to_string(value.numerator) + "/" +
                                       std::to_string(value.denominator) + " counts no frames");
}

void requireRate(Templates::Rational<int> const& rate) {
    requirePositive(rate, rate.numerator > 0 && rate.denominator > 0, "An edit rate");
}

/// The greatest common divisor of any number and one that is above 0, which bounds it.
std::int64_t commonDivisor(std::int64_t any, std::int64_t positive) {
    auto const bits = static_cast<std::uint64_t>(any);
    return static_cast<std::int64_t>(
        std::gcd(any < 0 ? 0 - bits : bits, static_cast<std::uint64_t>(positive)));
}

/// `factor` above 0.
std::int64_t product(std::int64_t value, std::int64_t factor) {
    if (value > Limits::max() / factor || value < Limits::min() / factor)
        throw Exceptions::InvalidValue("A time of " + std::to_string(value) + " x " + std::to_string(factor) +
                                       " is beyond 64 bits");
    return value * factor;
}

} // namespace

TimeBase::TimeBase(unsigned framesPerSecond, bool dropFrame)
    : framesPerSecond_(static_cast<std::uint16_t>(framesPerSecond)), dropFrame_(dropFrame) {
    if (framesPerSecond == 0 || framesPerSecond > 0xFFFF)
        throw Exceptions::InvalidValue("Timecode counts 1 to 65535 frames a second, not " +
                                       std::to_string(framesPerSecond));
    if (dropFrame && !canDrop(framesPerSecond))
        throw Exceptions::InvalidValue("There is no drop-frame timecode of " +
                                       std::to_string(framesPerSecond) +
                                       " frames a second, only of multiples of 30");
}

TimeBase TimeBase::ofEditRate(Templates::Rational<int> const& editRate, bool dropFrame) {
    requireRate(editRate);
    auto const denominator = static_cast<unsigned>(editRate.denominator);
    return TimeBase((static_cast<unsigned>(editRate.numerator) + denominator / 2) / denominator, dropFrame);
}

TimeBase TimeBase::ofEditRate(Templates::Rational<int> const& editRate) {
    TimeBase const base = ofEditRate(editRate, false);
    bool const below = editRate.numerator < std::int64_t{base.framesPerSecond_} * editRate.denominator;
    return TimeBase(base.framesPerSecond_, below && canDrop(base.framesPerSecond_));
}

std::int64_t TimeBase::framesPerDay() const {
    constexpr std::int64_t secondsPerDay = 24 * 60 * 60;
    constexpr std::int64_t droppingMinutesPerDay = 24 * 6 * 9;
    return secondsPerDay * framesPerSecond_ - droppingMinutesPerDay * droppedPerMinute();
}

Templates::Rational<std::int64_t> framesToSeconds(std::int64_t frames,
                                                  Templates::Rational<int> const& editRate) {
    requireRate(editRate);
    std::int64_t const rateDivisor = commonDivisor(editRate.denominator, editRate.numerator);
    std::int64_t const numerator = editRate.numerator / rateDivisor;
    std::int64_t const denominator = editRate.denominator / rateDivisor;
    std::int64_t const divisor = commonDivisor(frames, numerator);
    return {product(frames / divisor, denominator), numerator / divisor};
}

std::int64_t secondsToFrames(Templates::Rational<std::int64_t> const& seconds,
                             Templates::Rational<int> const& editRate) {
    requireRate(editRate);
    requirePositive(seconds, seconds.denominator > 0, "A time");
    std::int64_t const across = commonDivisor(seconds.numerator, editRate.denominator);
    std::int64_t const down = commonDivisor(seconds.denominator, editRate.numerator);
    std::int64_t const numerator = product(seconds.numerator / across, editRate.numerator / down);
    std::int64_t const denominator = product(seconds.denominator / down, editRate.denominator / across);
    std::int64_t const towardsZero = numerator / denominator;
    return numerator % denominator < 0 ? towardsZero - 1 : towardsZero;
}

} // namespace MXF::Zelm::Utils
