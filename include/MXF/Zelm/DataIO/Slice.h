/// A run of bytes that do not change, with a share in the memory that they stand in.
///
///     Block    | ......|ssssssssssssss|.............. |     freed with the last slice in it
///                       ^ data()      ^ data() + size()
///
/// A slice is a small value: copying one copies a pointer and counts a reference, whatever its size. Three
/// named factories say who owns the bytes: `copyOf` copies them, `adopt` takes the memory over, `viewOf`
/// refers to memory that stays somebody else's. Not locked: one slice, one thread; slices of one block may
/// live in many threads.
#pragma once

#include "MXF/Zelm/DataIO/Block.h"

#include <memory>
#include <utility>
#include <vector>

namespace MXF::Zelm::DataIO {

class MXFZELM_EXPORT Slice : public Platform::Allocated {
public:
    /// No bytes.
    Slice() noexcept = default;

    Slice(Slice const&) noexcept = default;
    Slice& operator=(Slice const&) noexcept = default;

    /// Leaves `other` without bytes.
    Slice(Slice&& other) noexcept
        : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, std::size_t{0})) {}
    Slice& operator=(Slice&& other) noexcept {
        bytes_ = std::move(other.bytes_);
        size_ = std::exchange(other.size_, std::size_t{0});
        return *this;
    }
    ~Slice() = default;

    /// `size` bytes of a block, from `offset` on. Throws Exceptions::InvalidPosition when the block does not
    /// hold them.
    Slice(Templates::SharedPtr<Block const> block, std::size_t offset, std::size_t size);

    /// A copy of `size` bytes, in a block of its own. Throws std::bad_alloc.
    static Slice copyOf(const unsigned char* bytes, std::size_t size);

    /// Takes a whole block.
    static Slice adopt(Templates::SharedPtr<Block const> block);

    /// Takes the bytes of a vector without copying them.
    static Slice adopt(std::vector<unsigned char> bytes);

    /// Memory that somebody else owns and keeps, unchanged, as long as there are slices of it, copies and
    /// parts in chains included. For constants and for the length of a call; what lives on wants an owner.
    static Slice viewOf(const unsigned char* bytes, std::size_t size) noexcept;

    /// Memory that lives as long as `owner`, in which the slice takes a share.
    static Slice viewOf(const unsigned char* bytes, std::size_t size,
                        Templates::SharedPtr<void const> const& owner) noexcept;

    const unsigned char* data() const { return bytes_.get(); }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const unsigned char* begin() const { return data(); }
    const unsigned char* end() const { return data() + size_; }

    /// `size` bytes from `offset` on, without copying them. Throws Exceptions::InvalidPosition when the slice
    /// does not hold them.
    Slice part(std::size_t offset, std::size_t size) const;

    /// Cuts the first `size` bytes off and returns them. Throws Exceptions::InvalidPosition when there are
    /// fewer.
    Slice splitFront(std::size_t size);

    /// Whether the bytes of `next` stand right behind these in the same owned memory.
    bool continuedBy(Slice const& next) const noexcept;

    /// Takes in the bytes of `next`, by which this slice is continued.
    void extend(Slice const& next) noexcept { size_ += next.size_; }

private:
    using Pointer = std::shared_ptr<const unsigned char>;

    Slice(Pointer bytes, std::size_t size) noexcept : bytes_(std::move(bytes)), size_(size) {}

    Pointer bytes_; // to the first byte; its count is that of the memory, none for a plain view
    std::size_t size_ = 0;
};

} // namespace MXF::Zelm::DataIO
