#include "MXF/Zelm/DataIO/BufferSliceSource.h"

#include <utility>

namespace MXF::Zelm::DataIO {

BufferSliceSource::BufferSliceSource(Chain chain) : rest_(std::move(chain)) {}

BufferSliceSource::BufferSliceSource(const unsigned char* bytes, std::size_t size)
    : BufferSliceSource(Slice::copyOf(bytes, size)) {}

BufferSliceSource::~BufferSliceSource() = default;

std::uint64_t BufferSliceSource::read(std::uint64_t size, Chain& chain) {
    Chain front = rest_.splitFrontUpTo(size);
    std::uint64_t const count = front.size();
    chain.append(std::move(front));
    position_ += count;
    return count;
}

std::uint64_t BufferSliceSource::skip(std::uint64_t size) {
    std::uint64_t const count = rest_.splitFrontUpTo(size).size();
    position_ += count;
    return count;
}

} // namespace MXF::Zelm::DataIO
