#include "MXF/Zelm/MXFIO/PatchedSource.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

PatchedSource::PatchedSource(DataIO::RandomAccessDataSource& source, std::uint64_t length)
    : source_(source), length_(length) {}

/// Patches that the new one meets become one with it.
void PatchedSource::patch(std::uint64_t offset, Bytes bytes) {
    auto at = patches_.upper_bound(offset);
    if (at != patches_.begin() && std::prev(at)->first + std::prev(at)->second.size() >= offset)
        --at;
    while (at != patches_.end() && at->first <= offset + bytes.size()) {
        auto const& [start, old] = *at;
        if (start < offset) {
            bytes.insert(bytes.begin(), old.begin(),
                         old.begin() + static_cast<std::ptrdiff_t>(offset - start));
            offset = start;
        }
        std::uint64_t const end = offset + bytes.size(), oldEnd = start + old.size();
        if (oldEnd > end)
            bytes.insert(bytes.end(), old.end() - static_cast<std::ptrdiff_t>(oldEnd - end), old.end());
        at = patches_.erase(at);
    }
    patches_.emplace(offset, std::move(bytes));
}

void PatchedSource::finish(std::uint64_t length, Bytes tail) {
    length_ = length;
    patches_.erase(patches_.lower_bound(length), patches_.end());
    tail_ = std::move(tail);
    position_ = 0;
}

/// Reads up to `size` bytes before the tail.
std::uint64_t PatchedSource::readSource(unsigned char* buffer, std::uint64_t size) {
    if (source_.absoluteOffset() != position_)
        source_.seek(position_);
    std::uint64_t const got = source_.read(buffer, size), end = position_ + got;
    auto at = patches_.upper_bound(position_);
    if (at != patches_.begin())
        --at;
    for (; at != patches_.end() && at->first < end; ++at) {
        auto const& [start, bytes] = *at;
        std::uint64_t const first = std::max(start, position_), last = std::min(start + bytes.size(), end);
        if (first < last)
            std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(first - start),
                      bytes.begin() + static_cast<std::ptrdiff_t>(last - start),
                      buffer + static_cast<std::ptrdiff_t>(first - position_));
    }
    position_ = end;
    return got;
}

std::uint64_t PatchedSource::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    if (position_ < length_) {
        std::uint64_t const wanted = std::min(size, length_ - position_);
        done = readSource(buffer, wanted);
        if (done < wanted)
            return done; // the file became shorter while it was open
    }
    std::uint64_t const count = std::min(size - done, remaining());
    std::copy_n(tail_.data() + static_cast<std::ptrdiff_t>(count != 0 ? position_ - length_ : 0),
                static_cast<std::size_t>(count), buffer + static_cast<std::ptrdiff_t>(done));
    position_ += count;
    return done + count;
}

std::uint64_t PatchedSource::skip(std::uint64_t size) {
    std::uint64_t const count = std::min(size, remaining());
    position_ += count;
    return count;
}

std::uint64_t PatchedSource::seek(std::uint64_t position) {
    position_ = std::min(position, size());
    return position_;
}

} // namespace MXF::Zelm::MXFIO
