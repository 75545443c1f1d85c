#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"

#include <algorithm>
#include <cstring>

namespace MXF::Zelm::DataIO::Memory {

MemoryViewDataSource::~MemoryViewDataSource() = default;

std::uint64_t MemoryViewDataSource::read(unsigned char* buffer, std::uint64_t size) {
    auto const count = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - position_));
    if (count != 0)
        std::memcpy(buffer, bytes_ + position_, count);
    position_ += count;
    return count;
}

std::uint64_t MemoryViewDataSource::skip(std::uint64_t size) {
    auto const count = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - position_));
    position_ += count;
    return count;
}

std::uint64_t MemoryViewDataSource::seek(std::uint64_t position) {
    position_ = static_cast<std::size_t>(std::min<std::uint64_t>(position, size_));
    return position_;
}

} // namespace MXF::Zelm::DataIO::Memory
