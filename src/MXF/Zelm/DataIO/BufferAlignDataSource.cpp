#include "MXF/Zelm/DataIO/BufferAlignDataSource.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>
#include <utility>

namespace MXF::Zelm::DataIO {

BufferAlignDataSource::BufferAlignDataSource(Templates::SharedPtr<DataSource> source, std::uint32_t alignment,
                                             unsigned char padding)
    : source_(std::move(source)), alignment_(std::max<std::uint32_t>(alignment, 1)), padding_(padding) {}

BufferAlignDataSource::~BufferAlignDataSource() = default;

std::uint64_t BufferAlignDataSource::absoluteOffset() const { return source_->absoluteOffset() + padded_; }

bool BufferAlignDataSource::endOfStream() const { return source_->endOfStream(); }

std::uint64_t BufferAlignDataSource::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t const count = source_->read(buffer, wholeUnits(size));
    std::uint64_t const padding = missing(count);
    std::fill_n(buffer + count, padding, padding_);
    padded_ += padding;
    return count + padding;
}

std::uint64_t BufferAlignDataSource::skip(std::uint64_t size) {
    std::uint64_t const count = source_->skip(wholeUnits(size));
    std::uint64_t const padding = missing(count);
    padded_ += padding;
    return count + padding;
}

std::uint64_t BufferAlignDataSource::wholeUnits(std::uint64_t size) const {
    if (size != 0 && size < alignment_)
        throw Exceptions::at(absoluteOffset(), Exceptions::InvalidLength("Room for " + std::to_string(size) +
                                                                         " bytes, data comes in units of " +
                                                                         std::to_string(alignment_)));
    return size - size % alignment_;
}

/// What `count` bytes lack to a whole number of units.
std::uint64_t BufferAlignDataSource::missing(std::uint64_t count) const {
    return count % alignment_ == 0 ? 0 : alignment_ - count % alignment_;
}

} // namespace MXF::Zelm::DataIO
