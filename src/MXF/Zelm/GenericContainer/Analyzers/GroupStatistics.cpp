#include "MXF/Zelm/GenericContainer/Analyzers/GroupStatistics.h"

#include "MXF/Zelm/GenericContainer/Analyzers/PictureIndexer.h"

namespace MXF::Zelm::GenericContainer {

using Essence::MPEG::VideoUnit;

void GroupStatistics::add(VideoUnit const& unit) {
    ++pictures_;
    sequenceHeaders_ += unit.sequence ? 1 : 0;
    if (unit.sequence)
        (unit.sequence->isProgressive() ? hasProgressive_ : hasInterlaced_) = true;
    if (unit.group || isIntra(unit))
        endGroup();
    if (unit.group) {
        ++groups_;
        hasOpen_ = hasOpen_ || !unit.group->closed;
    }
    if (isB(unit))
        addB();
    else
        endRow();
    hasPredicted_ = hasPredicted_ || !isIntra(unit);
    kinds_ += isB(unit) ? 'B' : isIntra(unit) ? 'I' : 'P';
}

void GroupStatistics::endGroup() {
    if (kinds_.empty())
        return;
    longest_ = std::max(longest_, kinds_.size());
    kinds_.resize(std::min(kinds_.size(), longestKept));
    if (ended_++ == 0)
        first_ = kinds_;
    differ_ = differ_ || kinds_ != first_;
    kinds_.clear();
}

bool GroupStatistics::areIdentical() const {
    return !differ_ && (ended_ == 0 || first_.compare(0, kinds_.size(), kinds_) == 0);
}

void GroupStatistics::addB() {
    ++row_;
    mostB_ = std::max(mostB_, row_);
}

/// An anchor: the row before it is complete. That of the first anchor was shown before it, and is no row
/// between two.
void GroupStatistics::endRow() {
    if (++anchors_ > 2) {
        bVary_ = bVary_ || (usualRow_ && *usualRow_ != row_);
        usualRow_ = row_;
    }
    row_ = 0;
}

} // namespace MXF::Zelm::GenericContainer
