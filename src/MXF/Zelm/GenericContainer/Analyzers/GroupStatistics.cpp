#include "MXF/Zelm/GenericContainer/Analyzers/GroupStatistics.h"

namespace MXF::Zelm::GenericContainer {

using Essence::Picture;

void GroupStatistics::add(CodedPicture const& coded) {
    auto const& picture = coded.picture;
    ++pictures_;
    sequenceHeaders_ += picture.hasSequenceHeader ? 1 : 0;
    if (coded.isProgressive)
        (*coded.isProgressive ? hasProgressive_ : hasInterlaced_) = true;
    if (coded.closedGroup || picture.isKey)
        endGroup();
    if (coded.closedGroup) {
        ++groups_;
        hasOpen_ = hasOpen_ || !*coded.closedGroup;
    }
    if (picture.type == Picture::Type::B)
        addB();
    else
        endRow();
    hasPredicted_ = hasPredicted_ || picture.type != Picture::Type::I;
    kinds_ += "IPB"[static_cast<int>(picture.type)];
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
