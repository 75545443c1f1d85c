/// Ranges of edit units in the order of their starts, and the answer to: which is the last of them that
/// covers a position? A tree of the largest ends finds it in logarithmic time, however the ranges overlap.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace MXF::Zelm::IndexTables {

/// `start + length`, at most the largest position; `start` for a negative length.
std::int64_t endOfRange(std::int64_t start, std::int64_t length);

class RangeTree {
public:
    /// A range from `start` to before `end`; empty when that is not greater.
    struct Range {
        std::int64_t start;
        std::int64_t end;
    };

    RangeTree() = default;

    /// `ranges` in ascending order of their starts.
    explicit RangeTree(std::vector<Range> const& ranges);

    /// The last range that covers `position`.
    std::optional<std::size_t> find(std::int64_t position) const;

private:
    std::size_t lastLeafBeyond(std::size_t node, std::int64_t position) const;

    std::vector<std::int64_t> starts_;
    std::vector<std::int64_t>
        ends_; // a heap: node i is the larger of 2 i and 2 i + 1, leaves from leaves_ on
    std::size_t leaves_ = 1;
};

} // namespace MXF::Zelm::IndexTables
