#include "MXF/Zelm/DataIO/Chain.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace MXF::Zelm::DataIO {

namespace {

void requireInside(std::uint64_t offset, std::uint64_t size, std::uint64_t whole) {
    if (offset > whole || size > whole - offset)
        throw Exceptions::InvalidPosition(std::to_string(size) + " bytes at " + std::to_string(offset) +
                                          " pass the end of a chain of " + std::to_string(whole));
}

/// Calls `use(slice, offset in it, count)` for the pieces of up to `size` bytes from `offset` on.
template <class Use>
void forPieces(Chain const& chain, std::uint64_t offset, std::uint64_t size, Use use) {
    for (auto const& slice : chain) {
        if (size == 0)
            return;
        if (offset >= slice.size()) {
            offset -= slice.size();
            continue;
        }
        auto const from = static_cast<std::size_t>(offset);
        auto const count = static_cast<std::size_t>(std::min<std::uint64_t>(slice.size() - from, size));
        use(slice, from, count);
        offset = 0;
        size -= count;
    }
}

} // namespace

Chain::Chain(Slice slice) { append(std::move(slice)); }

Chain::Chain(Chain&& other) noexcept
    : slices_(std::move(other.slices_)), size_(std::exchange(other.size_, 0)) {}

Chain& Chain::operator=(Chain&& other) noexcept {
    slices_ = std::move(other.slices_);
    if (this != &other)
        size_ = std::exchange(other.size_, 0);
    return *this;
}

void Chain::append(Slice slice) {
    if (slice.empty())
        return;
    std::size_t const size = slice.size();
    if (!slices_.empty() && slices_.back().continuedBy(slice))
        slices_.back().extend(slice);
    else
        slices_.append(std::move(slice));
    size_ += size;
}

void Chain::append(Chain const& chain) {
    append(Chain(chain)); // the copy also serves a chain that is appended to itself
}

void Chain::append(Chain&& chain) {
    if (empty()) {
        *this = std::move(chain);
        return;
    }
    for (std::size_t i = 0; i < chain.slices_.size(); ++i)
        append(std::move(chain.slices_[i]));
    chain.clear();
}

void Chain::prepend(Slice slice) {
    if (slice.empty())
        return;
    std::size_t const size = slice.size();
    slices_.prepend(std::move(slice));
    size_ += size;
}

void Chain::prepend(Chain const& chain) {
    Chain whole = chain;
    whole.append(std::move(*this));
    *this = std::move(whole);
}

void Chain::clear() noexcept {
    slices_.clear();
    size_ = 0;
}

Chain Chain::splitFront(std::uint64_t size) {
    requireInside(0, size, size_);
    return splitFrontUpTo(size);
}

Chain Chain::splitFrontUpTo(std::uint64_t size) {
    if (size >= size_)
        return std::exchange(*this, Chain());
    Chain front;
    while (front.size_ < size) {
        Slice& first = slices_.front();
        std::uint64_t const wanted = size - front.size_;
        bool const whole = first.size() <= wanted;
        Slice piece = whole ? std::move(first) : first.splitFront(static_cast<std::size_t>(wanted));
        if (whole)
            slices_.removeFront();
        size_ -= piece.size();
        front.append(std::move(piece));
    }
    return front;
}

Chain Chain::part(std::uint64_t offset, std::uint64_t size) const {
    requireInside(offset, size, size_);
    Chain result;
    forPieces(*this, offset, size, [&](Slice const& slice, std::size_t from, std::size_t count) {
        result.append(slice.part(from, count));
    });
    return result;
}

std::uint64_t Chain::copyTo(unsigned char* buffer, std::uint64_t size, std::uint64_t offset) const {
    std::uint64_t done = 0;
    forPieces(*this, offset, size, [&](Slice const& slice, std::size_t from, std::size_t count) {
        std::memcpy(buffer + done, slice.data() + from, count);
        done += count;
    });
    return done;
}

Slice Chain::contiguous() const {
    if (slices_.size() <= 1)
        return empty() ? Slice() : slices_.front();
    auto block = Block::make(Templates::safeCast<std::size_t>(size_));
    copyTo(block->bytes(), size_);
    return Slice::adopt(std::move(block));
}

bool Chain::equals(const unsigned char* bytes, std::uint64_t size) const {
    return size == size_ && std::all_of(begin(), end(), [&bytes](Slice const& slice) {
               return std::memcmp(std::exchange(bytes, bytes + slice.size()), slice.data(), slice.size()) ==
                      0;
           });
}

bool operator==(Chain const& a, Chain const& b) {
    if (a.size() != b.size())
        return false;
    auto const* other = b.begin();
    std::size_t passed = 0; // of *other
    for (auto const& slice : a)
        for (std::size_t done = 0; done < slice.size();) {
            std::size_t const count = std::min(slice.size() - done, other->size() - passed);
            if (std::memcmp(slice.data() + done, other->data() + passed, count) != 0)
                return false;
            done += count;
            passed += count;
            if (passed == other->size()) {
                ++other;
                passed = 0;
            }
        }
    return true;
}

} // namespace MXF::Zelm::DataIO
