#include "MXF/Zelm/DataIO/SliceList.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::DataIO {

SliceList::SliceList(SliceList const& other) {
    reserve(other.count_);
    std::copy(other.begin(), other.end(), slots() + first_);
    count_ = other.count_;
}

SliceList::SliceList(SliceList&& other) noexcept { take(other); }

SliceList& SliceList::operator=(SliceList const& other) { return *this = SliceList(other); }

SliceList& SliceList::operator=(SliceList&& other) noexcept {
    if (this != &other) {
        clear();
        take(other);
    }
    return *this;
}

/// Leaves `other` empty; this list is.
void SliceList::take(SliceList& other) noexcept {
    heap_ = std::move(other.heap_);
    capacity_ = std::exchange(other.capacity_, inlineSlots);
    first_ = std::exchange(other.first_, inlineFirst);
    count_ = std::exchange(other.count_, 0);
    if (!heap_)
        std::move(other.inline_ + first_, other.inline_ + first_ + count_, inline_ + first_);
}

void SliceList::append(Slice slice) {
    if (first_ + count_ == capacity_) {
        // A list that is taken off at the front while it is added to at the back stays in its place.
        if (first_ > capacity_ / 2)
            regrow(capacity_, inlineFirst);
        else
            regrow(capacity_ * 2, first_);
    }
    slots()[first_ + count_++] = std::move(slice);
}

void SliceList::prepend(Slice slice) {
    if (first_ == 0)
        regrow(capacity_ * 2, capacity_);
    slots()[--first_] = std::move(slice);
    ++count_;
}

void SliceList::reserve(std::size_t count) {
    if (capacity_ - first_ < count)
        regrow(first_ + std::max(count, capacity_), first_);
}

/// Moves the slices to `first` in an array of `capacity` places; in the same array when it is as large.
void SliceList::regrow(std::size_t capacity, std::size_t first) {
    Slice* const old = slots() + first_;
    if (capacity == capacity_) {
        std::move(old, old + count_, slots() + first); // towards the front
    } else {
        std::unique_ptr<Slice[]> larger(new Slice[capacity]);
        std::move(old, old + count_, larger.get() + first);
        heap_ = std::move(larger);
        capacity_ = capacity;
    }
    first_ = first;
}

void SliceList::removeFront() noexcept {
    slots()[first_++] = Slice();
    if (--count_ == 0)
        first_ = inlineFirst;
}

void SliceList::removeBack() noexcept {
    back() = Slice();
    --count_;
}

void SliceList::clear() noexcept {
    std::fill(slots() + first_, slots() + first_ + count_, Slice());
    heap_.reset();
    capacity_ = inlineSlots;
    first_ = inlineFirst;
    count_ = 0;
}

} // namespace MXF::Zelm::DataIO
