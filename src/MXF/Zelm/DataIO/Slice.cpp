#include "MXF/Zelm/DataIO/Slice.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <cstring>
#include <utility>

namespace MXF::Zelm::DataIO {

namespace {

void requireInside(std::size_t offset, std::size_t size, std::size_t whole) {
    if (offset > whole || size > whole - offset)
        throw Exceptions::InvalidPosition(std::to_string(size) + " bytes at " + std::to_string(offset) +
                                          " pass the end of " + std::to_string(whole));
}

} // namespace

Slice::Slice(Templates::SharedPtr<Block const> block, std::size_t offset, std::size_t size) : size_(size) {
    requireInside(offset, size, block->size());
    const unsigned char* const bytes = block->bytes() + offset;
    bytes_ = Pointer(std::move(block), bytes);
}

Slice Slice::copyOf(const unsigned char* bytes, std::size_t size) {
    auto block = Block::make(size);
    if (size != 0)
        std::memcpy(block->bytes(), bytes, size);
    return adopt(std::move(block));
}

Slice Slice::adopt(Templates::SharedPtr<Block const> block) {
    std::size_t const size = block->size();
    return {std::move(block), 0, size};
}

Slice Slice::adopt(std::vector<unsigned char> bytes) {
    auto const owner = std::make_shared<std::vector<unsigned char> const>(std::move(bytes));
    return viewOf(owner->data(), owner->size(), owner);
}

Slice Slice::viewOf(const unsigned char* bytes, std::size_t size) noexcept {
    return viewOf(bytes, size, nullptr);
}

Slice Slice::viewOf(const unsigned char* bytes, std::size_t size,
                    Templates::SharedPtr<void const> const& owner) noexcept {
    return {Pointer(owner, bytes), size};
}

Slice Slice::part(std::size_t offset, std::size_t size) const {
    requireInside(offset, size, size_);
    return {Pointer(bytes_, data() + offset), size};
}

Slice Slice::splitFront(std::size_t size) {
    Slice front = part(0, size);
    const unsigned char* const rest = data() + size;
    bytes_ = Pointer(std::move(bytes_), rest);
    size_ -= size;
    return front;
}

bool Slice::continuedBy(Slice const& next) const noexcept {
    return end() == next.data() && bytes_.use_count() != 0 && !bytes_.owner_before(next.bytes_) &&
           !next.bytes_.owner_before(bytes_);
}

} // namespace MXF::Zelm::DataIO
