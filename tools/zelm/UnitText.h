/// Edit units as a person names them: numbers, ranges, timecodes.
#pragma once

#include "FileInfo.h"

#include <cstdint>
#include <optional>
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

/// False when the text is no number.
bool parseNumber(std::string_view text, std::int64_t& number);

/// "A:B", of which either may be left out; none when it is no range.
std::optional<UnitRange> parseUnits(std::string_view text);

/// The edit unit of the essence container at a timecode of the material package, at the container's edit
/// rate. Throws Exceptions::InvalidValue and Exceptions::InvalidFormat when that cannot be told.
std::int64_t unitAtTimecode(FileInfo const& info, std::string const& text, EditRate const& rate);

} // namespace Zelm
