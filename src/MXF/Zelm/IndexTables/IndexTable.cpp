#include "MXF/Zelm/IndexTables/IndexTable.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/IndexTables/RangeTree.h"

#include <algorithm>
#include <set>

namespace MXF::Zelm::IndexTables {

/// Start and duration of each segment: a hostile file may have a million segments with one start.
struct IndexTable::Repeats {
    std::set<Templates::pair<std::int64_t, std::int64_t>> ranges;
};

struct IndexTable::LookUp {
    std::vector<IndexTableSegment const*> segments;
    RangeTree ranges;
};

IndexTable::IndexTable(std::uint32_t indexSID, std::uint32_t bodySID)
    : indexSID_(indexSID), bodySID_(bodySID), repeats_(std::make_unique<Repeats>()) {}

IndexTable::~IndexTable() = default;

void IndexTable::add(Templates::auto_ptr<IndexTableSegment> segment, bool force) {
    if (segment->bodySID() != bodySID_)
        throw Exceptions::BaseException(
            "Trying to load a IndexTable segment into a IndexTable with different bodySIDs");
    if (segment->indexSID() != nullptr && *segment->indexSID() != indexSID_)
        throw Exceptions::BaseException(
            "Trying to load a IndexTable segment into a IndexTable with different indexSIDs");
    std::int64_t const start = segment->indexStartPosition();
    bool const isNew = repeats_->ranges.emplace(start, segment->indexDuration()).second;
    if (!isNew && !force)
        return;
    segments_.emplace(start, std::move(segment));
    lookUp_.reset();
}

IndexTableSegment const* IndexTable::find(std::int64_t position) const {
    if (!lookUp_) {
        auto made = std::make_unique<LookUp>();
        std::vector<RangeTree::Range> ranges;
        for (auto const& [start, segment] : segments_) {
            made->segments.push_back(segment.get());
            ranges.push_back({start, endOfRange(start, segment->indexDuration())});
        }
        made->ranges = RangeTree(ranges);
        lookUp_ = std::move(made);
    }
    auto const found = lookUp_->ranges.find(position);
    return found ? lookUp_->segments[*found] : nullptr;
}

std::int64_t IndexTable::firstGap(std::int64_t position) const {
    for (auto const& [start, segment] : segments_) {
        if (start > position)
            break;
        position = std::max(position, endOfRange(start, segment->indexDuration()));
    }
    return position;
}

Templates::Rational<int> IndexTable::editRate() const {
    for (auto const& [start, segment] : segments_) {
        auto const rate = segment->indexEditRate().value();
        if (rate.numerator > 0 && rate.denominator > 0)
            return rate;
    }
    return {};
}

} // namespace MXF::Zelm::IndexTables
