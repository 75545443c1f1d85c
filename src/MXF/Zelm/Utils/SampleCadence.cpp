#include "MXF/Zelm/Utils/SampleCadence.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <limits>
#include <numeric>
#include <string>
#include <utility>

namespace MXF::Zelm::Utils {

namespace {

using Rate = Templates::Rational<int>;

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

/// Samples of an edit unit and the denominator stay below this, so that nothing overflows.
constexpr std::uint64_t largestTerm = std::uint64_t{1} << 31;

std::uint64_t term(int value) {
    if (value <= 0)
        throw Exceptions::InvalidValue("Samples cannot be shared out: a rate is not positive");
    return static_cast<std::uint64_t>(value);
}

Rate perSecond(std::uint32_t samplingRate) {
    if (!std::in_range<int>(samplingRate))
        throw Exceptions::InvalidValue("There is no sampling rate of " + std::to_string(samplingRate));
    return {static_cast<int>(samplingRate), 1};
}

std::string text(Rate const& rate) {
    return std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
}

} // namespace

SampleCadence::SampleCadence(Rate const& samplingRate, Rate const& editRate)
    : numerator_(term(samplingRate.numerator) * term(editRate.denominator)),
      denominator_(term(samplingRate.denominator) * term(editRate.numerator)) {
    std::uint64_t const common = std::gcd(numerator_, denominator_);
    numerator_ /= common;
    denominator_ /= common;
    if (numerator_ < denominator_ || numerator_ / denominator_ >= largestTerm || denominator_ >= largestTerm)
        throw Exceptions::InvalidValue(text(samplingRate) + " samples a second cannot be shared out to " +
                                       text(editRate) + " edit units");
}

SampleCadence::SampleCadence(std::uint32_t samplingRate, Rate const& editRate)
    : SampleCadence(perSecond(samplingRate), editRate) {}

std::uint64_t SampleCadence::samplesBefore(std::uint64_t unit) const {
    std::uint64_t const whole = numerator_ / denominator_, part = numerator_ % denominator_;
    std::uint64_t const cycles = unit / denominator_, units = unit % denominator_;
    std::uint64_t const rest = units * whole + (units * part * 2 + denominator_) / (denominator_ * 2);
    return cycles > (largest - rest) / numerator_ ? largest : cycles * numerator_ + rest;
}

} // namespace MXF::Zelm::Utils
