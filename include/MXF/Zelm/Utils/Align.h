/// How far data is from the next multiple of the KLV alignment grid (KAG, SMPTE 377M).
#pragma once

#include "MXF/Zelm/Templates/SafeCast.h"

#include <cstdint>
#include <numeric>

namespace MXF::Zelm::Utils {

/// The next multiple of `unit` (0 counts as 1) that is not below `value`; both far enough below 2^64.
constexpr std::uint64_t roundUp(std::uint64_t value, std::uint32_t unit) {
    std::uint64_t const rest = unit == 0 ? 0 : value % unit;
    return rest == 0 ? value : value + (unit - rest);
}

/// Bytes of fill that bring `position` to a multiple of `kag` (0 counts as 1): 0 where it is one. A gap
/// smaller than `minimum`, the bytes that a fill item has at least, is enlarged by the minimum, rounded up to
/// whole grid steps:
///
///     kag 512, minimum 20    position 1000    gap 24    fill 24
///                            position 1010    gap 14    fill 14 + 512
///                            position 1024              fill 0
constexpr std::uint64_t alignBytes(std::uint32_t kag, std::uint64_t position, std::uint32_t minimum) {
    std::uint64_t const grid = kag == 0 ? 1 : kag;
    if (position % grid == 0)
        return 0;
    std::uint64_t const gap = grid - position % grid;
    return gap < minimum ? gap + roundUp(minimum, kag) : gap;
}

/// The grid whose steps stand on two grids: the least common multiple; 0, which is no grid, when either is 0.
/// Throws Exceptions::BaseException with "Type size exceeded" beyond 32 bits.
constexpr std::uint32_t commonGrid(std::uint32_t a, std::uint32_t b) {
    if (a == 0 || b == 0)
        return 0;
    return Templates::safeCast<std::uint32_t>(std::lcm(std::uint64_t{a}, std::uint64_t{b}));
}

} // namespace MXF::Zelm::Utils
