#include "MXF/Zelm/Essence/PictureOrder.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace MXF::Zelm::Essence {

namespace {

/// The flags of an index entry (SMPTE 377M); those of pictures' types are of SMPTE 381M.
constexpr unsigned randomAccess = 0x80;
constexpr unsigned sequenceHeader = 0x40;
constexpr unsigned forwardPrediction = 0x20;
constexpr unsigned backwardPrediction = 0x10;
constexpr unsigned offsetOutOfRange = 0x08;
constexpr unsigned typeP = 0x02;
constexpr unsigned typeB = 0x03;

/// Pictures at the end of a long group that are left to wait for the rest of it.
constexpr std::size_t keptWaiting = 100;

/// Leaves 0, and says so, where the offset does not fit.
std::int8_t fit(std::int64_t offset, unsigned& flags) {
    if (offset < std::numeric_limits<std::int8_t>::min() ||
        offset > std::numeric_limits<std::int8_t>::max()) {
        flags |= offsetOutOfRange;
        return 0;
    }
    return static_cast<std::int8_t>(offset);
}

unsigned predictionFlags(Picture const& picture, bool usesEarlier) {
    switch (picture.type) {
    case Picture::Type::P:
        return forwardPrediction | typeP;
    case Picture::Type::B:
        return (usesEarlier ? forwardPrediction : 0u) | backwardPrediction | typeB;
    default:
        return 0;
    }
}

} // namespace

void PictureOrder::add(Picture const& picture) {
    if (picture.beginsCount)
        finish();
    Waiting waiting{picture};
    findKey(waiting);
    waiting_.push_back(waiting);
    ++count_;
    if (mostReordered_)
        return takeShown();
    if (picture.isKey)
        takeGroups();
    if (waiting_.size() > mostWaiting)
        cutLongGroup();
}

/// Shows pictures as decoders do: when more wait than may, the first of them in display order. Those that
/// came first go when all of them, and no others, are shown.
void PictureOrder::takeShown() {
    auto const isHidden = [](Waiting const& waiting) { return !waiting.isShown; };
    auto hidden = static_cast<std::size_t>(std::count_if(waiting_.begin(), waiting_.end(), isHidden));
    for (; hidden > *mostReordered_; --hidden) {
        auto next = waiting_.end();
        for (auto at = waiting_.begin(); at != waiting_.end(); ++at)
            if (isHidden(*at) && (next == waiting_.end() || at->picture.order < next->picture.order))
                next = at;
        next->isShown = true;
    }
    auto const run = std::find_if(waiting_.begin(), waiting_.end(), isHidden) - waiting_.begin();
    if (static_cast<std::size_t>(run) == waiting_.size() - hidden)
        give(static_cast<std::size_t>(run));
    else if (waiting_.size() > mostWaitingForFew)
        give(waiting_.size());
}

/// A picture that is shown before the last key picture needs the one before too, unless the group is closed.
void PictureOrder::findKey(Waiting& waiting) {
    auto const& picture = waiting.picture;
    if (picture.isKey || key_ < 0) {
        keyBefore_ = key_;
        key_ = count_;
        keyPicture_ = picture;
        return;
    }
    bool const isLeading = picture.order < keyPicture_.order;
    if (isLeading)
        markLeading();
    waiting.usesEarlier = !isLeading || !keyPicture_.isClosed;
    bool const isBefore = isLeading && !keyPicture_.isClosed && keyBefore_ >= 0;
    waiting.keyDistance = (isBefore ? keyBefore_ : key_) - count_;
}

/// Tells the last key picture, if it still waits, that pictures are shown before it.
void PictureOrder::markLeading() {
    auto const behind = static_cast<std::uint64_t>(count_ - key_);
    if (behind <= waiting_.size())
        waiting_[waiting_.size() - static_cast<std::size_t>(behind)].hasLeading = true;
}

/// Whether all pictures from `at` on are shown behind all that are stored before.
bool PictureOrder::isCut(std::size_t at) const {
    auto const byOrder = [](Waiting const& a, Waiting const& b) { return a.picture.order < b.picture.order; };
    auto const middle = waiting_.begin() + static_cast<std::ptrdiff_t>(at);
    return std::max_element(waiting_.begin(), middle, byOrder)->picture.order <
           std::min_element(middle, waiting_.end(), byOrder)->picture.order;
}

/// A key picture has come, with which the group before it ends: what stands before that group goes.
void PictureOrder::takeGroups() {
    std::size_t mark = waiting_.size() - 1;
    if (mark_ != 0 && isCut(mark_)) {
        mark -= mark_;
        give(mark_);
    }
    mark_ = mark;
}

/// Gives what stands before the last cut, some pictures left out for the cut to be sure; all where there is
/// none.
void PictureOrder::cutLongGroup() {
    std::size_t at = waiting_.size() - keptWaiting;
    while (at > keptWaiting && !isCut(at))
        --at;
    give(at > keptWaiting ? at : waiting_.size());
}

/// Gives the entries of the first `count` pictures, which are shown before all others.
void PictureOrder::give(std::size_t count) {
    std::vector<std::size_t> shown(count); // stored positions in display order
    std::iota(shown.begin(), shown.end(), std::size_t{0});
    std::sort(shown.begin(), shown.end(), [this](std::size_t a, std::size_t b) {
        auto const first = waiting_[a].picture.order, second = waiting_[b].picture.order;
        return first != second ? first < second : a < b;
    });
    for (std::size_t i = 0; i < count; ++i) {
        auto placed = waiting_[i].place();
        unsigned flags = placed.flags;
        placed.temporalOffset =
            fit(static_cast<std::int64_t>(shown[i]) - static_cast<std::int64_t>(i), flags);
        placed.flags = static_cast<std::uint8_t>(flags);
        ready_.push_back(placed);
    }
    auto const given = ready_.end() - static_cast<std::ptrdiff_t>(count);
    for (std::size_t i = 0; i < count; ++i)
        given[static_cast<std::ptrdiff_t>(shown[i])].shownLater =
            static_cast<std::int32_t>(i) - static_cast<std::int32_t>(shown[i]);
    waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(count));
    mark_ = 0;
}

/// All but the temporal offsets.
PlacedPicture PictureOrder::Waiting::place() const {
    bool const isAccess =
        picture.access == Picture::Access::Full || (picture.access == Picture::Access::Open && !hasLeading);
    unsigned flags = predictionFlags(picture, usesEarlier);
    flags |= (isAccess ? randomAccess : 0u) | (picture.hasSequenceHeader ? sequenceHeader : 0u);
    PlacedPicture placed;
    placed.keyFrameOffset = fit(keyDistance, flags);
    placed.flags = static_cast<std::uint8_t>(flags);
    return placed;
}

void PictureOrder::finish() { give(waiting_.size()); }

std::optional<PlacedPicture> PictureOrder::next() {
    if (ready_.empty())
        return std::nullopt;
    auto const entry = ready_.front();
    ready_.pop_front();
    return entry;
}

} // namespace MXF::Zelm::Essence
