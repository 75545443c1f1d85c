/// Slices in a row.
#pragma once

#include "MXF/Zelm/DataIO/Slice.h"

#include <memory>

namespace MXF::Zelm::DataIO {

/// Slices stand side by side in memory.
using SliceIterator = Slice const*;

/// An array of slices that grows and shrinks at both ends in constant time. The first few stand in the list
/// itself, one place free in front of them: an essence element with its key and length put before it and a
/// fill item behind it allocates nothing.
///
///     |  (free)  | slice | slice | slice |  (free)  |
///      slots_     first_                 first_ + count_      capacity_
class MXFZELM_EXPORT SliceList {
public:
    SliceList() noexcept = default;
    SliceList(SliceList const& other);
    SliceList(SliceList&& other) noexcept;
    SliceList& operator=(SliceList const& other);
    SliceList& operator=(SliceList&& other) noexcept;
    ~SliceList() = default;

    std::size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }

    /// `index` below `size()`.
    Slice const& operator[](std::size_t index) const { return slots()[first_ + index]; }
    Slice& operator[](std::size_t index) { return slots()[first_ + index]; }
    Slice const& front() const { return (*this)[0]; }
    Slice& front() { return (*this)[0]; }
    Slice const& back() const { return (*this)[count_ - 1]; }
    Slice& back() { return (*this)[count_ - 1]; }

    SliceIterator begin() const { return slots() + first_; }
    SliceIterator end() const { return begin() + count_; }

    void append(Slice slice);
    void prepend(Slice slice);

    /// Makes room for `count` slices in all.
    void reserve(std::size_t count);

    /// Of a list that is not empty.
    void removeFront() noexcept;
    void removeBack() noexcept;
    void clear() noexcept;

private:
    static constexpr std::size_t inlineSlots = 5;
    static constexpr std::size_t inlineFirst = 1;

    Slice* slots() { return heap_ ? heap_.get() : inline_; }
    Slice const* slots() const { return heap_ ? heap_.get() : inline_; }
    void regrow(std::size_t capacity, std::size_t first);
    void take(SliceList& other) noexcept;

    std::unique_ptr<Slice[]> heap_;
    std::size_t capacity_ = inlineSlots;
    std::size_t first_ = inlineFirst;
    std::size_t count_ = 0;
    Slice inline_[inlineSlots];
};

} // namespace MXF::Zelm::DataIO
