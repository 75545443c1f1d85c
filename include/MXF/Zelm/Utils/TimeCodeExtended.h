/// Timecode with what SMPTE 12M carries beside the time, and its packed form (SMPTE 331M, 385M):
///
///     byte 0    7 colour frame   6 drop frame           5-4 frame tens    3-0 frame units
///          1    7 field mark     [25-frame: BGF0]       6-4 second tens   3-0 second units
///          2    7 BGF0           [25-frame: BGF2]       6-4 minute tens   3-0 minute units
///          3    7 BGF2           [25-frame: field mark] 6 BGF1   5-4 hour tens   3-0 hour units
///          4-7  binary groups 1 and 2, 3 and 4, 5 and 6, 7 and 8
///
/// The time is in BCD. The first binary group of each pair stands in the HIGH nibble. Bases 25, 50, 75 and
/// 100 are of the 25-frame system, all others have the places of the 30-frame system.
///
/// The frame field counts at most 30 a second. Up to base 60 two frames share a number, and the field mark is
/// set on the second: frame = 2 x number + mark. Above 60 three or more share one, the mark being set on the
/// later half; reading then gives the first of the frames that look alike.
#pragma once

#include "MXF/Zelm/Utils/TimeCode.h"

#include <span>

namespace MXF::Zelm::Utils {

/// A TimeCode with flags and user bits. Moving it (`+=`, `++`) keeps them; `a + 1` is a plain TimeCode.
class MXFZELM_EXPORT TimeCodeExtended : public TimeCode {
public:
    static constexpr std::size_t binaryGroupCount = 8;

    using TimeCode::TimeCode;
    TimeCodeExtended() = default;
    explicit TimeCodeExtended(TimeCode const& time) : TimeCode(time) {}

    /// Reads the 8 packed bytes, or the first 4 of them alone. Undefined when the time has digits that are
    /// none, a field out of range or a dropped number (recorders write such bytes where they have no
    /// timecode); flags and groups are read all the same. The drop-frame flag is passed over at bases that
    /// drop nothing. Throws Exceptions::InvalidLength for another number of bytes, Exceptions::InvalidValue
    /// for a base that is none.
    static TimeCodeExtended fromPacked(std::span<unsigned char const> bytes, unsigned framesPerSecond);

    /// The packed form with flags and groups. Throws Exceptions::InvalidValue when the time is undefined.
    PackedTimeCode packed() const override;

    /// The number identifies the place in the colour frame sequence.
    bool colourFrame() const { return colourFrame_; }
    void colourFrame(bool value) { colourFrame_ = value; }

    /// Field mark (phase, polarity): set on the second field. At bases above 30 it says which frame of a pair
    /// this is: the packed form takes it from the time, and what is set here is passed over.
    bool fieldMark() const;
    void fieldMark(bool value) { fieldMark_ = value; }

    /// What the binary groups hold: BGF0 in bit 0, BGF1 in bit 1, BGF2 in bit 2. 0: not specified, 1: 8-bit
    /// characters, 4: date and time zone (SMPTE 309M). The setter throws Exceptions::InvalidValue above 7.
    unsigned binaryGroupFlags() const { return binaryGroupFlags_; }
    void binaryGroupFlags(unsigned flags);

    /// One of the binary groups (user bits): `group` 1 to 8, a value of 0 to 15. Throws
    /// Exceptions::InvalidValue for anything else.
    unsigned binaryGroup(unsigned group) const;
    void binaryGroup(unsigned group, unsigned value);

    /// Equal times, flags and groups. Order is that of the times alone.
    friend bool operator==(TimeCodeExtended const& a, TimeCodeExtended const& b) {
        return static_cast<TimeCode const&>(a) == b && a.colourFrame_ == b.colourFrame_ &&
               a.fieldMark() == b.fieldMark() && a.binaryGroupFlags_ == b.binaryGroupFlags_ &&
               a.binaryGroups_ == b.binaryGroups_;
    }

private:
    bool colourFrame_ = false;
    bool fieldMark_ = false;
    unsigned char binaryGroupFlags_ = 0;
    std::array<unsigned char, binaryGroupCount> binaryGroups_{};
};

} // namespace MXF::Zelm::Utils
