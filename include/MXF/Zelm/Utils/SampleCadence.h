/// How many sound samples stand beside each picture.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <cstdint>

namespace MXF::Zelm::Utils {

/// Samples of the frames of a picture rate that does not divide the sampling rate: each frame ends at the
/// sample nearest to its time, so that the numbers repeat and never drift (SMPTE 382M, SMPTE 302M).
///
///     48000 Hz beside 25           1920
///     48000 Hz beside 30000/1001   1602 1601 1602 1601 1602
///     48000 Hz beside 60000/1001   801 801 800 801 801
class MXFZELM_EXPORT SampleCadence {
public:
    /// Throws Exceptions::InvalidValue for rates that are not positive, or a frame of less than one sample.
    SampleCadence(Templates::Rational<int> const& samplingRate, Templates::Rational<int> const& frameRate);

    /// Samples of frame `frame`, counted from 0.
    std::uint32_t samples(std::uint64_t frame) const;

    /// Samples of the frames before `frame`.
    std::uint64_t samplesBefore(std::uint64_t frame) const;

    /// Frames after which the numbers repeat; 1 when all are the same.
    std::uint64_t length() const { return denominator_; }

    /// Samples of the largest frame.
    std::uint32_t largest() const;

private:
    std::uint64_t numerator_; // samples of `denominator_` frames, reduced
    std::uint64_t denominator_;
};

} // namespace MXF::Zelm::Utils
