/// Slices of a few bytes, many in one block: one allocation serves them all.
#pragma once

#include "MXF/Zelm/DataIO/Slice.h"

#include <cstring>

namespace MXF::Zelm::GenericContainer::Multiplexer {

/// The block lives with the last of its slices.
class SmallSlices {
public:
    static constexpr std::size_t blockSize = 4000; // below a page: no alignment is wanted

    /// A copy of at most `blockSize` bytes.
    DataIO::Slice copyOf(const unsigned char* bytes, std::size_t size) {
        if (!block_ || block_->size() - used_ < size) {
            block_ = DataIO::Block::make(blockSize);
            used_ = 0;
        }
        std::memcpy(block_->bytes() + used_, bytes, size);
        DataIO::Slice slice(block_, used_, size);
        used_ += size;
        return slice;
    }

private:
    Templates::SharedPtr<DataIO::Block> block_;
    std::size_t used_ = 0; // bytes of the block that slices refer to
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
