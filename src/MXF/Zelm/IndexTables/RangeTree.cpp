#include "MXF/Zelm/IndexTables/RangeTree.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace MXF::Zelm::IndexTables {

std::int64_t endOfRange(std::int64_t start, std::int64_t length) {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    if (length <= 0)
        return start;
    return start > largest - length ? largest : start + length;
}

RangeTree::RangeTree(std::vector<Range> const& ranges) : leaves_(std::bit_ceil(ranges.size() + 1)) {
    starts_.reserve(ranges.size());
    ends_.assign(2 * leaves_, std::numeric_limits<std::int64_t>::min());
    for (auto const& range : ranges) {
        ends_[leaves_ + starts_.size()] = range.end;
        starts_.push_back(range.start);
    }
    for (std::size_t node = leaves_ - 1; node != 0; --node)
        ends_[node] = std::max(ends_[2 * node], ends_[2 * node + 1]);
}

std::optional<std::size_t> RangeTree::find(std::int64_t position) const {
    auto const after = std::upper_bound(starts_.begin(), starts_.end(), position);
    if (after == starts_.begin())
        return std::nullopt;
    std::size_t node = leaves_ + static_cast<std::size_t>(after - starts_.begin()) - 1;
    if (ends_[node] > position)
        return node - leaves_;
    for (; node > 1; node /= 2)
        if (node % 2 == 1 && ends_[node - 1] > position) // the neighbour to the left
            return lastLeafBeyond(node - 1, position);
    return std::nullopt;
}

/// The last leaf under `node` with an end beyond `position`; there is one.
std::size_t RangeTree::lastLeafBeyond(std::size_t node, std::int64_t position) const {
    while (node < leaves_)
        node = 2 * node + (ends_[2 * node + 1] > position ? 1 : 0);
    return node - leaves_;
}

} // namespace MXF::Zelm::IndexTables
