/// What timecode counts: whole frames a second, with or without dropped numbers (SMPTE 12M); and frame counts
/// as exact times in seconds.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <cstdint>

namespace MXF::Zelm::Utils {

/// A frame count base, as a timecode component has it. A small value.
class MXFZELM_EXPORT TimeBase : public Platform::Allocated {
public:
    /// `framesPerSecond` 1 to 65535: 30 stands for 29.97 as well. With `dropFrame`, two numbers of each
    /// thirty are left out at the start of every minute but each tenth: 0 and 1 at base 30, 0 to 3 at
    /// base 60. Throws Exceptions::InvalidValue for a base out of range, and for dropped numbers at a base
    /// that is not a multiple of 30, since there is no rule for them.
    explicit TimeBase(unsigned framesPerSecond, bool dropFrame = false);

    /// The base of an edit rate, rounded to whole frames a second. Throws Exceptions::InvalidValue for a rate
    /// that is not positive, and as above.
    static TimeBase ofEditRate(Templates::Rational<int> const& editRate, bool dropFrame);

    /// The same, dropping numbers where that keeps timecode to the clock: at bases that can, when the rate is
    /// below the base (30000/1001, 60000/1001).
    static TimeBase ofEditRate(Templates::Rational<int> const& editRate);

    /// Whether there is drop-frame timecode at this base: multiples of 30.
    static constexpr bool canDrop(unsigned framesPerSecond) {
        return framesPerSecond != 0 && framesPerSecond % 30 == 0;
    }

    unsigned framesPerSecond() const { return framesPerSecond_; }
    bool dropFrame() const { return dropFrame_; }

    /// Numbers left out at the start of a minute, 0 without drop frame.
    unsigned droppedPerMinute() const { return dropFrame_ ? framesPerSecond_ / 30 * 2u : 0u; }

    /// Frames that timecode counts from midnight to midnight.
    std::int64_t framesPerDay() const;

    friend bool operator==(TimeBase const& a, TimeBase const& b) {
        return a.framesPerSecond_ == b.framesPerSecond_ && a.dropFrame_ == b.dropFrame_;
    }

private:
    std::uint16_t framesPerSecond_;
    bool dropFrame_;
};

/// How long `frames` frames last at `editRate` frames a second: seconds, exact and in lowest terms. Throws
/// Exceptions::InvalidValue for a rate that is not positive or a result beyond 64 bits.
MXFZELM_EXPORT Templates::Rational<std::int64_t> framesToSeconds(std::int64_t frames,
                                                                 Templates::Rational<int> const& editRate);

/// The frame that is current after `seconds` at `editRate` frames a second (rounded down, also below 0).
/// Throws Exceptions::InvalidValue for a rate or denominator that is not positive or a result beyond 64 bits.
MXFZELM_EXPORT std::int64_t secondsToFrames(Templates::Rational<std::int64_t> const& seconds,
                                            Templates::Rational<int> const& editRate);

} // namespace MXF::Zelm::Utils
