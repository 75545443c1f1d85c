#include "MXF/Zelm/DataIO/Memory/MemoryDataSource.h"

#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace MXF::Zelm::DataIO::Memory {

MemoryDataSource::MemoryDataSource(const unsigned char* buffer, std::uint64_t size)
    : bytes_(buffer, buffer + Templates::safeCast<std::uint32_t>(size)) {}

MemoryDataSource::MemoryDataSource(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}

MemoryDataSource::~MemoryDataSource() = default;

std::uint64_t MemoryDataSource::absoluteOffset() const { return position_; }

bool MemoryDataSource::endOfStream() const { return remaining() == 0; }

std::uint64_t MemoryDataSource::read(unsigned char* buffer, std::uint64_t size) {
    auto const count = Templates::safeCast<std::uint32_t>(std::min(size, remaining()));
    auto const position = Templates::safeCast<std::uint32_t>(position_);
    if (count != 0)
        std::memcpy(buffer, bytes_.data() + position, count);
    position_ += count;
    return count;
}

std::uint64_t MemoryDataSource::skip(std::uint64_t size) {
    auto const count = std::min(size, remaining());
    position_ += count;
    return count;
}

std::uint64_t MemoryDataSource::remaining() const { return bytes_.size() - position_; }

void MemoryDataSource::discard() { skip(remaining()); }

std::uint64_t MemoryDataSource::seek(std::uint64_t position) {
    position_ = std::min<std::uint64_t>(position, bytes_.size());
    return position_;
}

} // namespace MXF::Zelm::DataIO::Memory
