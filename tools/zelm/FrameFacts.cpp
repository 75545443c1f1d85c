#include "FrameFacts.h"

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexEntry;

namespace {

char typeOf(unsigned flags) {
    if ((flags & IndexEntry::BackwardPrediction) != 0)
        return 'B';
    return (flags & IndexEntry::ForwardPrediction) != 0 ? 'P' : 'I';
}

} // namespace

IndexTables::EditUnitLocator const* FrameFacts::index() const {
    return seeker_ != nullptr && isReordered_ ? seeker_->index() : nullptr;
}

void FrameFacts::take(Frame& frame) const {
    if (!isReordered_)
        frame.display = frame.stored;
    auto const* const index = this->index();
    if (index == nullptr)
        return;
    frame.display = index->displayPosition(frame.stored);
    frame.flags = index->flags(frame.stored);
    if (frame.flags)
        frame.type = typeOf(*frame.flags);
    if (auto const keyFrame = index->keyFrame(frame.stored))
        frame.isKey = *keyFrame == frame.stored && (frame.type == 0 || frame.type == 'I');
}

std::int64_t FrameFacts::stored(std::int64_t display) const {
    auto const* const index = this->index();
    auto const stored = index != nullptr ? index->storedPosition(display) : std::nullopt;
    return stored.value_or(display);
}

} // namespace Zelm
