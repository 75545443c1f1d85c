/// The library's start and end: one initialiser, which knows every singleton and destroys them on
/// `shutdown()`.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <atomic>
#include <mutex>

namespace MXF::Zelm {

/// The one library initialiser. It exists from the first call of `instance()` to the end of the process.
class MXFZELM_EXPORT Initializer {
public:
    static Initializer& instance();

    /// Guards the creation of singletons.
    static std::recursive_mutex& singletonMutex();

    /// Registers the function that destroys a singleton. `shutdown()` calls them, last registered first.
    /// Call it with the singleton mutex held.
    static void registerSingleton(void (*destroy)());

    /// Tears the library down: destroys all singletons. No object of the library may be in use by another
    /// thread. Whatever is used afterwards makes its singletons anew.
    static void shutdown();

    Initializer(Initializer const&) = delete;
    Initializer& operator=(Initializer const&) = delete;

private:
    Initializer() = default;
};

namespace Platform {

/// A lazily created singleton: tested, then made under the singleton mutex after a second test, and
/// registered for destruction. A class keeps one constant-initialised static `Singleton<T>` behind its
/// `instance()`.
template <class T>
class Singleton {
public:
    constexpr Singleton() = default;

    /// `create` makes the object with new; `destroy` calls `reset()` on this very holder.
    T& get(T* (*create)(), void (*destroy)()) {
        T* found = object_.load(std::memory_order_acquire);
        if (found == nullptr) {
            std::lock_guard const lock(Initializer::singletonMutex());
            found = object_.load(std::memory_order_relaxed);
            if (found == nullptr) {
                found = create();
                Initializer::registerSingleton(destroy);
                object_.store(found, std::memory_order_release);
            }
        }
        return *found;
    }

    void reset() { delete object_.exchange(nullptr); }

private:
    std::atomic<T*> object_{nullptr};
};

} // namespace Platform
} // namespace MXF::Zelm
