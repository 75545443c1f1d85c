#include "MXF/Zelm/Metadata/Listeners/ChangedSets.h"

namespace MXF::Zelm::Metadata::Listeners {

namespace {

bool isUndoing(MetadataSet const& set) { return set.owner() != nullptr && set.owner()->isUndoing(); }

} // namespace

ChangedSets::ChangedSets() = default;
ChangedSets::~ChangedSets() = default;

void ChangedSets::created(MetadataSet& set) {
    if (!isUndoing(set)) {
        ++counts_[&set];
        return;
    }
    if (removals_ > 0)
        --removals_;
    if (!lastRemoved_.empty() && lastRemoved_.key() == &set)
        counts_.insert(std::move(lastRemoved_));
}

void ChangedSets::removed(MetadataSet& set) {
    auto known = counts_.extract(&set);
    if (isUndoing(set))
        return;
    lastRemoved_ = std::move(known);
    ++removals_;
}

void ChangedSets::changed(MetadataSet& set) {
    if (!isUndoing(set)) {
        ++counts_[&set];
        return;
    }
    auto const found = counts_.find(&set);
    if (found != counts_.end() && --found->second == 0)
        counts_.erase(found);
}

void ChangedSets::clear() {
    counts_.clear();
    removals_ = 0;
    lastRemoved_ = {};
}

void ChangedSets::take(ChangedSets& other) {
    for (auto const& [set, count] : other.counts_)
        counts_[set] += count;
    removals_ += other.removals_;
    other.clear();
}

} // namespace MXF::Zelm::Metadata::Listeners
