/// Which members of two lists stand for each other.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace Zelm {

struct AlignedPair {
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::size_t a = none; ///< place in the first list; `none` when only the second has the member
    std::size_t b = none;

    bool isWhole() const { return a != none && b != none; }
};

/// True when member `a` of the first list and member `b` of the second belong together.
using Together = std::function<bool(std::size_t a, std::size_t b)>;

/// The longest common subsequence, with the members between in their order. Where the lists are so long that
/// it would take too much time, the members of what their common ends leave are compared place by place.
std::vector<AlignedPair> align(std::size_t sizeA, std::size_t sizeB, Together const& same);

/// Members that are the same first, then, between those, the ones that are alike.
std::vector<AlignedPair> align(std::size_t sizeA, std::size_t sizeB, Together const& same,
                               Together const& alike);

} // namespace Zelm
