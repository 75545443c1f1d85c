/// Ownership in the library's interface: who receives an `auto_ptr` owns the object alone, a `SharedPtr`
/// shares it. A raw pointer or reference never owns.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <memory>

namespace MXF::Zelm::Templates {

/// Single ownership, passed on by moving.
template <class T>
using auto_ptr = std::unique_ptr<T>;

/// Counting policy of `SharedPtr`: interlocked, the only one there is.
struct LockedCounter {};

/// Shared ownership with an interlocked reference count.
template <class T, class Policy = LockedCounter>
using SharedPtr = std::shared_ptr<T>;

/// Owning pointer to a private state block, with value semantics: copying copies the state. A class that
/// holds one declares its special members in its header and defaults them where `T` is complete.
template <class T>
class ValuePtr {
public:
    template <class... Arguments>
    static ValuePtr make(Arguments&&... arguments) {
        return ValuePtr(std::make_unique<T>(std::forward<Arguments>(arguments)...));
    }
    ValuePtr(ValuePtr const& other) : state_(other.state_ ? std::make_unique<T>(*other.state_) : nullptr) {}
    ValuePtr(ValuePtr&&) noexcept = default;
    ValuePtr& operator=(ValuePtr const& other) { return *this = ValuePtr(other); }
    ValuePtr& operator=(ValuePtr&&) noexcept = default;
    ~ValuePtr() = default;

    T* operator->() { return state_.get(); }
    T const* operator->() const { return state_.get(); }
    T& operator*() { return *state_; }
    T const& operator*() const { return *state_; }

private:
    explicit ValuePtr(std::unique_ptr<T> state) : state_(std::move(state)) {}
    std::unique_ptr<T> state_;
};

} // namespace MXF::Zelm::Templates
