/// A source over slices in memory.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"

namespace MXF::Zelm::DataIO {

class MXFZELM_EXPORT BufferSliceSource : public SliceSource {
public:
    /// Over the bytes of a chain or a slice, in which it takes a share. Memory of somebody else's comes as
    /// `Slice::viewOf`. What was read is let go.
    explicit BufferSliceSource(Chain chain);

    /// Over a copy of `size` bytes.
    BufferSliceSource(const unsigned char* bytes, std::size_t size);
    ~BufferSliceSource() override;

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return rest_.empty(); }
    std::uint64_t read(std::uint64_t size, Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

    /// Puts more bytes behind the end.
    void append(Chain const& chain) { rest_.append(chain); }

private:
    Chain rest_;
    std::uint64_t position_ = 0;
};

} // namespace MXF::Zelm::DataIO
