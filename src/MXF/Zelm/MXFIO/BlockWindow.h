/// The part of a source that was read last: one block, to which the slices that are handed out refer.
///
/// Blocks are small after a jump and grow while reading goes on in sequence, so that a walk over the keys of
/// a long file reads little of their values, and reading all of it takes few calls. A source that cannot seek
/// is read forwards.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/DataSource.h"

#include <cstddef>

namespace MXF::Zelm::MXFIO {

class BlockWindow {
public:
    /// The most bytes that `available` is asked for.
    static constexpr std::size_t mostPeeked = 64;

    /// `source` is not owned; who else uses it may move it if it can seek. Blocks come from `factory`, if
    /// null from a pool of the window's own.
    BlockWindow(DataIO::DataSource& source, Templates::SharedPtr<DataIO::BlockFactory> factory);

    /// How many of the `size` bytes at `offset` the source has, up to `mostPeeked`. `data` gives them.
    std::size_t available(std::uint64_t offset, std::size_t size) {
        if (offset - start_ < filled_ && filled_ - (offset - start_) >= size)
            return size;
        return load(offset, size);
    }

    /// The bytes that `available` found last, valid until anything else is read.
    const unsigned char* data(std::uint64_t offset) const {
        return window_.data() + static_cast<std::size_t>(offset - start_);
    }

    /// Appends up to `size` bytes from `offset` on and returns how many; fewer only at the end of the source.
    std::uint64_t append(std::uint64_t offset, std::uint64_t size, DataIO::Chain& chain);

private:
    bool holds(std::uint64_t offset) const { return offset - start_ < filled_; }
    std::size_t load(std::uint64_t offset, std::size_t size);
    bool fill(std::uint64_t offset, std::uint64_t wanted);
    std::uint64_t startFor(std::uint64_t offset) const;
    std::size_t nextSize(std::uint64_t offset, std::uint64_t wanted);
    bool moveTo(std::uint64_t offset);

    DataIO::DataSource& source_;
    DataIO::RandomAccessible* seekable_; // the source, if it can
    Templates::SharedPtr<DataIO::BlockFactory> factory_;
    DataIO::Slice window_;
    std::uint64_t start_ = 0;
    std::uint64_t filled_ = 0; // bytes of window_
    std::size_t size_ = 0;     // of the last block
};

} // namespace MXF::Zelm::MXFIO
