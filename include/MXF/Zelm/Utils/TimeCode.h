/// Timecode of a day (SMPTE 12M): a frame count since midnight that shows as hours, minutes, seconds and
/// frames. TimeCodeExtended adds what a recorded timecode carries beside the time.
#pragma once

#include "MXF/Zelm/Utils/TimeBase.h"

#include <array>
#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace MXF::Zelm::Utils {

/// The number of a frame as timecode shows it.
struct TimeAddress {
    unsigned hours = 0;   ///< 0 to 23
    unsigned minutes = 0; ///< 0 to 59
    unsigned seconds = 0; ///< 0 to 59
    unsigned frames = 0;  ///< 0 to one less than the frames of a second

    friend bool operator==(TimeAddress const&, TimeAddress const&) = default;
};

/// The bytes of a timecode as SMPTE 331M and 385M pack it; the first four are the 32-bit form.
using PackedTimeCode = std::array<unsigned char, 8>;

/// A timecode, or none: an undefined one has neither time nor base. A value; what takes one by reference may
/// be given a TimeCodeExtended, and a copy as a TimeCode keeps the time alone.
class MXFZELM_EXPORT TimeCode : public Platform::Allocated {
public:
    /// An undefined timecode.
    TimeCode() = default;

    /// The timecode of a frame: `frameCount` frames after midnight, dropped numbers not counted (the
    /// StartTimecode of a timecode component). The count wraps at 24 hours; below 0 it goes back from
    /// midnight.
    TimeCode(TimeBase const& base, std::int64_t frameCount);

    /// Throws Exceptions::InvalidValue for a field out of range and for a dropped number, which no frame has.
    TimeCode(TimeBase const& base, TimeAddress const& address);

    TimeCode(TimeCode const&) = default;
    TimeCode& operator=(TimeCode const&) = default;
    virtual ~TimeCode();

    /// Reads "10:00:00:00", or "10:00:00;00" for drop frame, or "--:--:--:--" for an undefined timecode: two
    /// digits each, frames two to five. Throws Exceptions::InvalidFormat for any other form,
    /// Exceptions::InvalidValue as the constructors do.
    static TimeCode fromText(std::u16string_view text, unsigned framesPerSecond);

    /// Whether a frame has this number.
    static bool isValid(TimeBase const& base, TimeAddress const& address);

    bool isDefined() const { return value_.has_value(); }

    /// These throw Exceptions::InvalidValue when the timecode is undefined. `frameCount` counts from
    /// midnight.
    TimeBase const& base() const { return value().base; }
    std::int64_t frameCount() const { return value().frame; }
    TimeAddress address() const;

    /// The text that `fromText` reads; frames have at least two digits.
    std::u16string toString() const;

    /// The packed form, with the drop-frame flag and, at bases above 30, the field mark; all else is 0. See
    /// TimeCodeExtended for the layout. Throws Exceptions::InvalidValue when the timecode is undefined.
    virtual PackedTimeCode packed() const;

    /// Moves by frames, wrapping at 24 hours. An undefined timecode stays so.
    TimeCode& operator+=(std::int64_t frames);
    TimeCode& operator-=(std::int64_t frames);
    TimeCode& operator++() { return *this += 1; }
    TimeCode& operator--() { return *this -= 1; }

    /// Moves by the frame count of another timecode, such as a duration, wrapping at 24 hours: what stands
    /// between two timecodes is `end - start`, also across midnight. Undefined when one of them is. Throws
    /// Exceptions::InvalidValue when their bases differ.
    TimeCode& operator+=(TimeCode const& other);
    TimeCode& operator-=(TimeCode const& other);

    friend TimeCode operator+(TimeCode a, std::int64_t frames) { return a += frames; }
    friend TimeCode operator-(TimeCode a, std::int64_t frames) { return a -= frames; }
    friend TimeCode operator+(TimeCode a, TimeCode const& b) { return a += b; }
    friend TimeCode operator-(TimeCode a, TimeCode const& b) { return a -= b; }

    /// Timecodes of one base compare by their frames. Those of different bases, and a defined one and an
    /// undefined one, are unordered and not equal; undefined ones are equal.
    MXFZELM_EXPORT friend bool operator==(TimeCode const& a, TimeCode const& b);
    MXFZELM_EXPORT friend std::partial_ordering operator<=>(TimeCode const& a, TimeCode const& b);

private:
    struct Value {
        TimeBase base;
        std::int64_t frame; ///< 0 to one less than the frames of a day

        friend bool operator==(Value const&, Value const&) = default;
    };

    Value const& value() const;
    bool makeCommon(TimeCode const& other);

    std::optional<Value> value_;
};

} // namespace MXF::Zelm::Utils
