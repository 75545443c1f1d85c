/// Memory services. Every class of the library takes its memory through `malloc_alloc`, which a host may
/// point at a memory manager of its own.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstddef>

namespace MXF::Zelm::Platform {

/// What a host implements to serve the library's memory. Calls may come from several threads at once.
class MXFZELM_EXPORT MemoryManager {
public:
    virtual ~MemoryManager();

    /// A block of at least `size` bytes, aligned for any standard type; null when there is none.
    virtual void* allocate(std::size_t size) = 0;

    /// Takes back a block of this manager. `size` is what was asked for. `block` is never null.
    virtual void deallocate(void* block, std::size_t size) noexcept = 0;

    /// The bytes of `block` (old size `oldSize`) in a block of `newSize` bytes; null, and the old block kept,
    /// when there is none.
    virtual void* reallocate(void* block, std::size_t oldSize, std::size_t newSize) = 0;
};

/// The allocator behind the library's classes.
class MXFZELM_EXPORT malloc_alloc {
public:
    /// A block of `size` bytes. Throws std::bad_alloc when the memory manager has none.
    static void* allocate(std::size_t size);

    /// Gives a block back; null is passed over.
    static void deallocate(void* block, std::size_t size) noexcept;

    /// Changes the size of a block; a null block is allocated. Throws std::bad_alloc, and keeps the block,
    /// when the memory manager has none.
    static void* reallocate(void* block, std::size_t oldSize, std::size_t newSize);

    /// Installs the host's memory manager (null: the C library's) and returns the one installed before. The
    /// manager is not owned and must outlive every object of the library; install it before the first of them
    /// is made, since a block goes back to the manager that is installed when it is freed.
    static MemoryManager* memoryManager(MemoryManager* manager) noexcept;

    /// The installed memory manager, null when the C library serves.
    static MemoryManager* memoryManager() noexcept;
};

/// Empty base that gives a class its eight allocation operators, all routed to `malloc_alloc` (the placement
/// forms take the place that they are given).
class Allocated {
public:
    static void* operator new(std::size_t size) { return malloc_alloc::allocate(size); }
    static void* operator new[](std::size_t size) { return malloc_alloc::allocate(size); }
    static void operator delete(void* block, std::size_t size) noexcept {
        malloc_alloc::deallocate(block, size);
    }
    static void operator delete[](void* block, std::size_t size) noexcept {
        malloc_alloc::deallocate(block, size);
    }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void* operator new[](std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}
    static void operator delete[](void*, void*) noexcept {}
};

} // namespace MXF::Zelm::Platform
