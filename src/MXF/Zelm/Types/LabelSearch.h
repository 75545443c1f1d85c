/// Searching maps of labels when the version (byte 7) does not count.
#pragma once

#include "MXF/Zelm/Types/UniversalLabel.h"

#include <algorithm>

namespace MXF::Zelm::Types {

/// The entry of `map` (by labels, in ascending order) with exactly `label`, else the one with the lowest
/// version that differs in its version alone; `map.end()` when there is none.
///
/// The version stands before the bytes that tell elements apart, so that each version has a range of its own:
/// the search takes a step for each version that the map holds.
template <class Map>
typename Map::const_iterator findOfAnyVersion(Map const& map, UniversalLabel const& label) {
    if (auto const exact = map.find(label); exact != map.end())
        return exact;
    constexpr int versionByte = 7;
    UniversalLabel wanted = label;
    wanted[versionByte] = 0;
    for (auto at = map.lower_bound(wanted); at != map.end(); at = map.lower_bound(wanted)) {
        if (!std::equal(wanted.rawBuffer(), wanted.rawBuffer() + versionByte, at->first.rawBuffer()))
            break;
        if (equalButForVersion(at->first, label))
            return at;
        if (at->first[versionByte] > wanted[versionByte])
            wanted[versionByte] = at->first[versionByte];
        else if (wanted[versionByte] == 0xFF)
            break;
        else
            ++wanted[versionByte];
    }
    return map.end();
}

} // namespace MXF::Zelm::Types
