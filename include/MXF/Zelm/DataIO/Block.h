/// Memory that essence is read into once and that is then only referred to: blocks, and who makes them.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <cstddef>

namespace MXF::Zelm::DataIO {

/// A piece of memory of fixed size. Slices share it; it is freed with the last of them, in whichever thread
/// that happens. Its bytes are not initialised. Who fills a block writes only where no slice refers to yet:
/// slices promise bytes that do not change.
class MXFZELM_EXPORT Block {
public:
    /// Blocks of at least this size begin at a multiple of it, which is how systems like to read into them.
    static constexpr std::size_t pageSize = 4096;

    /// A block of `size` bytes, through Platform::malloc_alloc. Throws std::bad_alloc.
    static Templates::SharedPtr<Block> make(std::size_t size);

    Block(Block const&) = delete;
    Block& operator=(Block const&) = delete;

    unsigned char* bytes() { return bytes_; }
    const unsigned char* bytes() const { return bytes_; }
    std::size_t size() const { return size_; }

private:
    Block(unsigned char* bytes, std::size_t size) : bytes_(bytes), size_(size) {}
    ~Block() = default;
    static void destroy(Block* block) noexcept;

    unsigned char* bytes_; // behind the object, in the same allocation
    std::size_t size_;
};

/// Where sources take their blocks from: a host may serve them from memory of its own kind.
class MXFZELM_EXPORT BlockFactory : public Platform::Allocated {
public:
    virtual ~BlockFactory();

    /// A block of at least `size` bytes that nobody else refers to. Throws std::bad_alloc.
    virtual Templates::SharedPtr<Block> block(std::size_t size) = 0;
};

} // namespace MXF::Zelm::DataIO
