/// Which edit units `zelm extract --range` wants.
#pragma once

#include "UnitRange.h"

#include <MXF/Zelm/DataIO/Chain.h>
#include <MXF/Zelm/MXFIO/EssenceReader.h>

#include <algorithm>
#include <limits>
#include <string>

namespace Zelm {

inline constexpr UnitRange allUnits{0, std::numeric_limits<std::int64_t>::max()};

/// What a container gives for a range, in stored order.
struct WantedUnits {
    UnitRange pictures = allUnits; ///< with those that must be decoded before the first
    UnitRange others = allUnits;

    /// Edit units of the pictures that stand before the first wanted one.
    std::int64_t preCharge = 0;

    std::int64_t first() const { return std::min(pictures.first, others.first); }
    std::int64_t last() const { return std::max(pictures.last, others.last); }
    UnitRange const& of(char kind) const { return kind == 'v' ? pictures : others; }
};

class ExtractRange {
public:
    /// All edit units.
    ExtractRange() = default;

    /// "A:B" of edit units, or "A-B" of timecodes; either side may be left out. With `display` edit units are
    /// counted in the order in which they are shown, as timecodes are in any case. Throws
    /// Exceptions::InvalidFormat when it is neither.
    ExtractRange(std::string const& text, bool display);

    bool isAll() const { return isAll_; }

    /// The edit units of a container at `rate`, as they are counted. Throws Exceptions::InvalidValue and
    /// Exceptions::InvalidFormat when a timecode does not fit the file.
    UnitRange units(FileInfo const& info, EditRate const& rate) const;

    /// The same in stored order, with the pictures that decoding needs before. `suffix` is that of the
    /// pictures: where there is no index, their first bytes tell with which of them decoding can begin.
    WantedUnits wanted(FileInfo const& info, MXF::Zelm::MXFIO::EssenceReader& reader,
                       std::string const& suffix) const;

private:
    bool isAll_ = true;
    bool display_ = false;
    UnitRange units_ = allUnits;
    std::string firstTimecode_, lastTimecode_;
};

} // namespace Zelm
