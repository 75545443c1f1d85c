/// Slices in order, read as one run of bytes: the form in which essence travels.
///
///     Chain     | key, length | essence, first part | essence, second part | fill |
///                  |              |                    |                      |
///     Blocks     [.KL.]   [......sssssssssss]     [sssssssss...........]    [zeros]
///
/// Essence is read into blocks once. What happens to it then (key and length put before it, fill behind it,
/// elements gathered into a content package, packages cut at an edit unit) happens to chains: slices change
/// hands, bytes stay where they are, and a file sink hands all slices of a chain to the system in one call.
/// Reading the bytes is another class, SliceReader.
///
/// A chain is a value. Copying one costs a reference for each slice; a few slices are kept without an
/// allocation. Slices without bytes are left out, and a slice that continues the last one in the same block
/// is joined to it. Not locked: one chain, one thread.
#pragma once

#include "MXF/Zelm/DataIO/SliceList.h"

#include <cstdint>

namespace MXF::Zelm::DataIO {

class MXFZELM_EXPORT Chain : public Platform::Allocated {
public:
    Chain() noexcept = default;

    /// One slice is a chain.
    Chain(Slice slice);

    Chain(Chain const&) = default;
    Chain(Chain&& other) noexcept;
    Chain& operator=(Chain const&) = default;
    Chain& operator=(Chain&& other) noexcept;
    ~Chain() = default;

    /// Bytes in all. More than fit in memory, where slices repeat.
    std::uint64_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    /// The slices, none of them empty; valid until the chain is changed.
    SliceList const& slices() const { return slices_; }
    SliceIterator begin() const { return slices_.begin(); }
    SliceIterator end() const { return slices_.end(); }

    void append(Slice slice);
    void append(Chain const& chain);
    void append(Chain&& chain);
    void prepend(Slice slice);
    void prepend(Chain const& chain);
    void clear() noexcept;

    /// Cuts the first `size` bytes off and returns them. Throws Exceptions::InvalidPosition, and cuts
    /// nothing, when there are fewer.
    Chain splitFront(std::uint64_t size);

    /// Cuts up to `size` bytes off the front and returns them.
    Chain splitFrontUpTo(std::uint64_t size);

    /// `size` bytes from `offset` on. Throws Exceptions::InvalidPosition when the chain does not hold them.
    Chain part(std::uint64_t offset, std::uint64_t size) const;

    /// Copies up to `size` bytes from `offset` on into `buffer` and returns how many.
    std::uint64_t copyTo(unsigned char* buffer, std::uint64_t size, std::uint64_t offset = 0) const;

    /// All bytes side by side: the chain's one slice, or else a copy in a new block. Throws
    /// Exceptions::BaseException with "Type size exceeded" when they do not fit in memory.
    Slice contiguous() const;

    /// Whether the chain holds just these bytes.
    bool equals(const unsigned char* bytes, std::uint64_t size) const;

    /// The same bytes, however they are cut.
    friend MXFZELM_EXPORT bool operator==(Chain const& a, Chain const& b);

private:
    SliceList slices_;
    std::uint64_t size_ = 0;
};

} // namespace MXF::Zelm::DataIO
