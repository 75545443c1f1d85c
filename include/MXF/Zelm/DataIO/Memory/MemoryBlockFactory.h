/// Blocks that are used again once nobody refers to them.
#pragma once

#include "MXF/Zelm/DataIO/Block.h"

#include <vector>

namespace MXF::Zelm::DataIO::Memory {

/// A pool of bounded size. A block that it made and whose last slice is gone is handed out again, so that a
/// copy of any length goes through the same few blocks. A new block takes the place of those that were handed
/// out the longest time ago; one of them that is still in use is freed with its last slice, as any block.
/// Blocks may outlive the factory, and slices may be dropped in any thread; `block` is called by one thread
/// at a time.
class MXFZELM_EXPORT MemoryBlockFactory : public BlockFactory {
public:
    static constexpr std::size_t defaultCapacity = std::size_t{8} << 20;
    static constexpr std::size_t mostBlocks =
        64; ///< they are looked through for each block that is asked for

    /// Refers to blocks of `capacity` bytes in all, however few they are.
    explicit MemoryBlockFactory(std::size_t capacity = defaultCapacity);
    ~MemoryBlockFactory() override;

    Templates::SharedPtr<Block> block(std::size_t size) override;

    /// Bytes of the blocks that it refers to, in use or not: never more than its capacity.
    std::size_t pooledBytes() const { return pooled_; }

private:
    Templates::SharedPtr<Block> reuse(std::size_t size);
    void makeRoom(std::size_t size);

    std::size_t capacity_;
    std::size_t pooled_ = 0;
    std::vector<Templates::SharedPtr<Block>> blocks_; // the one handed out last stands at the end
};

} // namespace MXF::Zelm::DataIO::Memory
