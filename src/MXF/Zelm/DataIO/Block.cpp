#include "MXF/Zelm/DataIO/Block.h"

#include <limits>
#include <memory>
#include <new>

namespace MXF::Zelm::DataIO {

namespace {

/// Bytes in front of the block's own, the object included, at most.
std::size_t overhead(std::size_t size) {
    return sizeof(Block) + (size >= Block::pageSize ? Block::pageSize : alignof(std::max_align_t));
}

} // namespace

Templates::SharedPtr<Block> Block::make(std::size_t size) {
    if (size > std::numeric_limits<std::size_t>::max() - overhead(size))
        throw std::bad_alloc();
    void* const memory = Platform::malloc_alloc::allocate(size + overhead(size));
    void* bytes = static_cast<unsigned char*>(memory) + sizeof(Block);
    std::size_t space = size + overhead(size) - sizeof(Block);
    std::align(size >= pageSize ? pageSize : alignof(std::max_align_t), size, bytes, space);
    // When there is no memory for the count, the pointer destroys what it was given.
    return {::new (memory) Block(static_cast<unsigned char*>(bytes), size), &Block::destroy};
}

void Block::destroy(Block* block) noexcept {
    std::size_t const size = block->size_ + overhead(block->size_);
    block->~Block();
    Platform::malloc_alloc::deallocate(block, size);
}

BlockFactory::~BlockFactory() = default;

} // namespace MXF::Zelm::DataIO
