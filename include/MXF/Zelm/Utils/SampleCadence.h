/// How many samples each edit unit has where the edit rate does not divide the sampling rate (SMPTE 302M,
/// SMPTE 382M).
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <cstdint>

namespace MXF::Zelm::Utils {

/// Each edit unit begins at the sample next to its ideal time, so that they never drift. At 48000 Hz:
///
///     25              1920
///     30000/1001      1602 1601 1602 1601 1602, again and again
///     60000/1001      801 801 800 801 801
///
/// A small value.
class MXFZELM_EXPORT SampleCadence {
public:
    /// Of samples a second, such as 48000/1. Throws Exceptions::InvalidValue for rates that are not positive,
    /// fewer than one sample an edit unit, 2^31 of them or more, or numbers that do not come again within
    /// 2^31 edit units.
    SampleCadence(Templates::Rational<int> const& samplingRate, Templates::Rational<int> const& editRate);
    SampleCadence(std::uint32_t samplingRate, Templates::Rational<int> const& editRate);

    /// Samples of the edit units before `unit`; the largest number where that is beyond 64 bits.
    std::uint64_t samplesBefore(std::uint64_t unit) const;

    /// Samples of edit unit `unit`, counted from 0.
    std::uint64_t samplesOf(std::uint64_t unit) const {
        return samplesBefore(unit + 1) - samplesBefore(unit);
    }

    /// The most that any edit unit has.
    std::uint64_t mostSamples() const { return (numerator_ + denominator_ - 1) / denominator_; }

    /// All edit units have as many.
    bool isConstant() const { return denominator_ == 1; }

    /// Edit units after which the numbers come again.
    std::uint64_t cycle() const { return denominator_; }

private:
    std::uint64_t numerator_; // samples of an edit unit, in lowest terms
    std::uint64_t denominator_;
};

} // namespace MXF::Zelm::Utils
