/// Edit units as people name them: by number, or by timecode of the material package.
#pragma once

#include "FileInfo.h"

#include <MXF/Zelm/Utils/TimeCode.h>

#include <limits>
#include <string_view>

namespace Zelm {

/// Edit units from `first` to before `last`.
struct UnitRange {
    std::int64_t first = 0;
    std::int64_t last = 0;

    std::uint64_t count() const {
        return static_cast<std::uint64_t>(last) - static_cast<std::uint64_t>(first);
    }
    bool contains(std::int64_t position) const { return position >= first && position < last; }
};

/// All that there can be.
inline constexpr UnitRange everyUnit{std::numeric_limits<std::int64_t>::min(),
                                     std::numeric_limits<std::int64_t>::max()};

/// The number that the whole of `text` is.
std::optional<std::int64_t> parseUnit(std::string_view text);

/// "A:B", of which either may be left out; none when it is no range.
std::optional<UnitRange> parseUnits(std::string_view text);

/// What an option names: edit units, or what is shown from one timecode to before another.
struct RangeChoice {
    UnitRange units = everyUnit;
    bool isTimecode = false;
    std::string from, to; ///< timecodes; empty for the start and the end
};

/// "A:B" or "10:00:00:00-10:00:05:00", of which either side may be left out; none when it is neither.
std::optional<RangeChoice> parseRange(std::string_view text);

/// The timecode of the material package, laid over the edit units of an essence container.
class UnitTimecodes {
public:
    /// `editRate` is that of the edit units, `origin` how many of them stand before the zero point of the
    /// track; not given, that of the first essence track of the file package.
    UnitTimecodes(FileInfo const& info, EditRate const& editRate,
                  std::optional<std::int64_t> origin = std::nullopt);

    bool isKnown() const { return start_.isDefined(); }

    /// The edit unit at a timecode. Throws Exceptions::InvalidValue and InvalidFormat when that cannot be
    /// told.
    std::int64_t unitAt(std::string const& timecode) const;

    /// The same for both ends of a range; the numbers of one that names none.
    UnitRange units(RangeChoice const& choice) const;

    /// The timecode of an edit unit, undefined when it cannot be told.
    MXF::Zelm::Utils::TimeCode at(std::int64_t unit) const;

private:
    MXF::Zelm::Utils::TimeCode start_;
    EditRate rate_;     // of the timecode track
    EditRate editRate_; // of the edit units
    bool hasOwnRate_ = false;
    std::int64_t origin_ = 0;
};

} // namespace Zelm
