#include "MXF/Zelm/Utils/SampleCadence.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <numeric>
#include <string>

namespace MXF::Zelm::Utils {

namespace {

/// A positive term of a rate.
std::uint64_t term(int value) {
    if (value <= 0)
        throw Exceptions::InvalidValue("A rate has the term " + std::to_string(value));
    return static_cast<std::uint64_t>(value);
}

} // namespace

SampleCadence::SampleCadence(Templates::Rational<int> const& samplingRate,
                             Templates::Rational<int> const& frameRate)
    : numerator_(term(samplingRate.numerator) * term(frameRate.denominator)),
      denominator_(term(samplingRate.denominator) * term(frameRate.numerator)) {
    auto const divisor = std::gcd(numerator_, denominator_);
    numerator_ /= divisor;
    denominator_ /= divisor;
    if (numerator_ < denominator_ || numerator_ / denominator_ >= 0x7FFFFFFF || denominator_ > 0x7FFFFFFF)
        throw Exceptions::InvalidValue("A frame of " + std::to_string(numerator_) + "/" +
                                       std::to_string(denominator_) + " samples");
}

std::uint64_t SampleCadence::samplesBefore(std::uint64_t frame) const {
    std::uint64_t const whole = numerator_ / denominator_, rest = numerator_ % denominator_;
    return frame * whole + frame / denominator_ * rest +
           (frame % denominator_ * rest * 2 + denominator_) / (denominator_ * 2);
}

std::uint32_t SampleCadence::samples(std::uint64_t frame) const {
    return static_cast<std::uint32_t>(samplesBefore(frame + 1) - samplesBefore(frame));
}

std::uint32_t SampleCadence::largest() const {
    return static_cast<std::uint32_t>(numerator_ / denominator_ + (numerator_ % denominator_ != 0 ? 1 : 0));
}

} // namespace MXF::Zelm::Utils
