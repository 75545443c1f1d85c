/// Arithmetic on offsets that come from a file.
#pragma once

#include <cstdint>
#include <limits>

namespace MXF::Zelm::MXFIO {

/// `a + b`, or the largest offset when that overflows: no source reaches it, so that a seek ends at the
/// source's end.
constexpr std::uint64_t addOffsets(std::uint64_t a, std::uint64_t b) {
    return b > std::numeric_limits<std::uint64_t>::max() - a ? std::numeric_limits<std::uint64_t>::max()
                                                             : a + b;
}

} // namespace MXF::Zelm::MXFIO
