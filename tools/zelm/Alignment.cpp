#include "Alignment.h"

#include <algorithm>
#include <cstdint>

namespace Zelm {

namespace {

/// Most cells of the table of lengths.
constexpr std::size_t mostCells = std::size_t{1} << 20;

constexpr std::size_t none = AlignedPair::none;

/// A stretch of both lists.
struct Stretch {
    std::size_t firstA, sizeA, firstB, sizeB;
};

/// Lengths of the longest common subsequences of the stretch's ends.
class LengthTable {
public:
    LengthTable(Stretch const& stretch, Together const& same)
        : width_(stretch.sizeB + 1), cells_((stretch.sizeA + 1) * width_) {
        for (std::size_t i = stretch.sizeA; i-- > 0;)
            for (std::size_t j = stretch.sizeB; j-- > 0;)
                cells_[i * width_ + j] = same(stretch.firstA + i, stretch.firstB + j)
                                             ? at(i + 1, j + 1) + 1
                                             : std::max(at(i + 1, j), at(i, j + 1));
    }

    std::uint32_t at(std::size_t i, std::size_t j) const { return cells_[i * width_ + j]; }

private:
    std::size_t width_;
    std::vector<std::uint32_t> cells_;
};

void alignByTable(Stretch const& stretch, Together const& same, std::vector<AlignedPair>& pairs) {
    LengthTable const lengths(stretch, same);
    std::size_t i = 0, j = 0;
    while (i < stretch.sizeA || j < stretch.sizeB) {
        std::size_t const a = stretch.firstA + i, b = stretch.firstB + j;
        if (i < stretch.sizeA && j < stretch.sizeB && same(a, b)) {
            pairs.push_back({a, b});
            ++i;
            ++j;
        } else if (j == stretch.sizeB ||
                   (i < stretch.sizeA && lengths.at(i + 1, j) >= lengths.at(i, j + 1))) {
            pairs.push_back({a, none});
            ++i;
        } else {
            pairs.push_back({none, b});
            ++j;
        }
    }
}

void alignByPlace(Stretch const& stretch, Together const& same, std::vector<AlignedPair>& pairs) {
    for (std::size_t i = 0; i < std::max(stretch.sizeA, stretch.sizeB); ++i) {
        std::size_t const a = i < stretch.sizeA ? stretch.firstA + i : none;
        std::size_t const b = i < stretch.sizeB ? stretch.firstB + i : none;
        if (a != none && b != none && !same(a, b)) {
            pairs.push_back({a, none});
            pairs.push_back({none, b});
        } else {
            pairs.push_back({a, b});
        }
    }
}

void alignStretch(Stretch stretch, Together const& same, std::vector<AlignedPair>& pairs) {
    while (stretch.sizeA != 0 && stretch.sizeB != 0 && same(stretch.firstA, stretch.firstB)) {
        pairs.push_back({stretch.firstA++, stretch.firstB++});
        --stretch.sizeA;
        --stretch.sizeB;
    }
    std::vector<AlignedPair> ends;
    while (stretch.sizeA != 0 && stretch.sizeB != 0 &&
           same(stretch.firstA + stretch.sizeA - 1, stretch.firstB + stretch.sizeB - 1))
        ends.push_back({stretch.firstA + --stretch.sizeA, stretch.firstB + --stretch.sizeB});
    if (stretch.sizeA < mostCells / (stretch.sizeB + 1))
        alignByTable(stretch, same, pairs);
    else
        alignByPlace(stretch, same, pairs);
    pairs.insert(pairs.end(), ends.rbegin(), ends.rend());
}

} // namespace

std::vector<AlignedPair> align(std::size_t sizeA, std::size_t sizeB, Together const& same) {
    std::vector<AlignedPair> pairs;
    alignStretch({0, sizeA, 0, sizeB}, same, pairs);
    return pairs;
}

std::vector<AlignedPair> align(std::size_t sizeA, std::size_t sizeB, Together const& same,
                               Together const& alike) {
    std::vector<AlignedPair> pairs;
    Stretch gap{0, 0, 0, 0};
    for (auto const& pair : align(sizeA, sizeB, same)) {
        if (!pair.isWhole()) {
            gap.sizeA += pair.a != none;
            gap.sizeB += pair.b != none;
            continue;
        }
        alignStretch(gap, alike, pairs);
        pairs.push_back(pair);
        gap = {pair.a + 1, 0, pair.b + 1, 0};
    }
    alignStretch(gap, alike, pairs);
    return pairs;
}

} // namespace Zelm
