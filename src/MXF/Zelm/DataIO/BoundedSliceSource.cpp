#include "MXF/Zelm/DataIO/BoundedSliceSource.h"

#include <algorithm>

namespace MXF::Zelm::DataIO {

BoundedSliceSource::BoundedSliceSource(Templates::SharedPtr<SliceSource> source, std::uint64_t size)
    : source_(std::move(source)), remaining_(size) {}

BoundedSliceSource::~BoundedSliceSource() = default;

std::uint64_t BoundedSliceSource::read(std::uint64_t size, Chain& chain) {
    std::uint64_t const got = source_->read(std::min(size, remaining_), chain);
    remaining_ -= got;
    return got;
}

std::uint64_t BoundedSliceSource::skip(std::uint64_t size) {
    std::uint64_t const passed = source_->skip(std::min(size, remaining_));
    remaining_ -= passed;
    return passed;
}

} // namespace MXF::Zelm::DataIO
