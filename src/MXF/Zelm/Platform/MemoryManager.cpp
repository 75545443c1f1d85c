#include "MXF/Zelm/Platform/MemoryManager.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace MXF::Zelm::Platform {

namespace {

std::atomic<MemoryManager*> installed{nullptr};

void* orThrow(void* block) {
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

/// malloc(0) may answer null, which would look like a failure.
std::size_t atLeastOne(std::size_t size) { return size == 0 ? 1 : size; }

} // namespace

MemoryManager::~MemoryManager() = default;

void* malloc_alloc::allocate(std::size_t size) {
    MemoryManager* const manager = memoryManager();
    return orThrow(manager != nullptr ? manager->allocate(atLeastOne(size)) : std::malloc(atLeastOne(size)));
}

void malloc_alloc::deallocate(void* block, std::size_t size) noexcept {
    if (block == nullptr)
        return;
    if (MemoryManager* const manager = memoryManager(); manager != nullptr)
        manager->deallocate(block, atLeastOne(size));
    else
        std::free(block);
}

void* malloc_alloc::reallocate(void* block, std::size_t oldSize, std::size_t newSize) {
    if (block == nullptr)
        return allocate(newSize);
    MemoryManager* const manager = memoryManager();
    return orThrow(manager != nullptr ? manager->reallocate(block, atLeastOne(oldSize), atLeastOne(newSize))
                                      : std::realloc(block, atLeastOne(newSize)));
}

MemoryManager* malloc_alloc::memoryManager(MemoryManager* manager) noexcept {
    return installed.exchange(manager);
}

MemoryManager* malloc_alloc::memoryManager() noexcept { return installed.load(std::memory_order_acquire); }

} // namespace MXF::Zelm::Platform
