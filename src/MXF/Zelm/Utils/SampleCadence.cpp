#include "MXF/Zelm/Utils/SampleCadence.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <limits>
#include <numeric>
#include <string>

namespace MXF::Zelm::Utils {

namespace {

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

/// Both terms stay below this, so that nothing overflows.
constexpr std::uint64_t largestTerm = std::uint64_t{1} << 31;

} // namespace

SampleCadence::SampleCadence(std::uint32_t samplingRate, Templates::Rational<int> const& editRate) {
    if (samplingRate == 0 || editRate.numerator <= 0 || editRate.denominator <= 0)
        throw Exceptions::InvalidValue("Samples cannot be shared out: a rate is not positive");
    numerator_ = std::uint64_t{samplingRate} * static_cast<std::uint64_t>(editRate.denominator);
    denominator_ = static_cast<std::uint64_t>(editRate.numerator);
    std::uint64_t const common = std::gcd(numerator_, denominator_);
    numerator_ /= common;
    denominator_ /= common;
    if (numerator_ >= largestTerm || denominator_ > numerator_)
        throw Exceptions::InvalidValue(std::to_string(samplingRate) +
                                       " samples a second cannot be shared out to " +
                                       std::to_string(editRate.numerator) + "/" +
                                       std::to_string(editRate.denominator) + " edit units");
}

std::uint64_t SampleCadence::samplesBefore(std::uint64_t unit) const {
    std::uint64_t const cycles = unit / denominator_;
    std::uint64_t const rest = (unit % denominator_ * numerator_ * 2 + denominator_) / (denominator_ * 2);
    return cycles > (largest - rest) / numerator_ ? largest : cycles * numerator_ + rest;
}

} // namespace MXF::Zelm::Utils
