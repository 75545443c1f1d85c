#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"

#include <algorithm>
#include <atomic>

namespace MXF::Zelm::DataIO::Memory {

namespace {

/// Whether the pool alone refers to the block. Nobody else can begin to: there is no one to copy from.
bool isFree(Templates::SharedPtr<Block> const& block) {
    if (block.use_count() != 1)
        return false;
    // What another thread did with the block before it let go happened before it is filled anew.
    std::atomic_thread_fence(std::memory_order_acquire);
    return true;
}

/// A much larger block than asked for stays for those who need it.
bool fits(Block const& block, std::size_t size) { return block.size() >= size && block.size() / 2 <= size; }

} // namespace

MemoryBlockFactory::MemoryBlockFactory(std::size_t capacity) : capacity_(capacity) {}

MemoryBlockFactory::~MemoryBlockFactory() = default;

Templates::SharedPtr<Block> MemoryBlockFactory::block(std::size_t size) {
    if (auto found = reuse(size))
        return found;
    if (size > capacity_)
        return Block::make(size);
    makeRoom(size);
    blocks_.push_back(Block::make(size));
    pooled_ += size;
    return blocks_.back();
}

Templates::SharedPtr<Block> MemoryBlockFactory::reuse(std::size_t size) {
    auto const found = std::find_if(blocks_.begin(), blocks_.end(), [size](auto const& block) {
        return fits(*block, size) && isFree(block);
    });
    if (found == blocks_.end())
        return nullptr;
    std::rotate(found, found + 1, blocks_.end());
    return blocks_.back();
}

/// Lets the oldest blocks go until there is room for one of `size` bytes.
void MemoryBlockFactory::makeRoom(std::size_t size) {
    auto oldest = blocks_.begin();
    auto left = blocks_.size();
    for (; capacity_ - pooled_ < size || left == mostBlocks; ++oldest, --left)
        pooled_ -= (*oldest)->size();
    blocks_.erase(blocks_.begin(), oldest);
}

} // namespace MXF::Zelm::DataIO::Memory
