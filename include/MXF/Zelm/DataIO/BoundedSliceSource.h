/// The next bytes of a source of slices as a source with an end.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::DataIO {

/// Reading it moves the other source, from where that one stands.
class MXFZELM_EXPORT BoundedSliceSource : public SliceSource {
public:
    /// The next `size` bytes of `source`, fewer when that one ends before.
    BoundedSliceSource(Templates::SharedPtr<SliceSource> source, std::uint64_t size);
    ~BoundedSliceSource() override;

    /// The other source's position.
    std::uint64_t absoluteOffset() const override { return source_->absoluteOffset(); }
    bool endOfStream() const override { return remaining_ == 0 || source_->endOfStream(); }
    std::uint64_t read(std::uint64_t size, Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

    /// Bytes to its end, whether the other source has them or not.
    std::uint64_t remaining() const { return remaining_; }

private:
    Templates::SharedPtr<SliceSource> source_;
    std::uint64_t remaining_;
};

} // namespace MXF::Zelm::DataIO
