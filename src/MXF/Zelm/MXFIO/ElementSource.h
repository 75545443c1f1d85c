/// A range of a source as a source of slices: the value of an element that is too large to be read at once.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/MXFIO/BlockWindow.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

class ElementSource : public DataIO::SliceSource {
public:
    ElementSource(DataIO::DataSource& source, std::uint64_t offset, std::uint64_t length,
                  Templates::SharedPtr<DataIO::BlockFactory> factory)
        : window_(source, std::move(factory)), offset_(offset), length_(length) {}

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ == length_; }

    std::uint64_t read(std::uint64_t size, DataIO::Chain& chain) override {
        std::uint64_t const got =
            window_.append(offset_ + position_, std::min(size, length_ - position_), chain);
        position_ += got;
        return got;
    }

    std::uint64_t skip(std::uint64_t size) override {
        size = std::min(size, length_ - position_);
        position_ += size;
        return size;
    }

private:
    BlockWindow window_;
    std::uint64_t offset_; // in the source
    std::uint64_t length_;
    std::uint64_t position_ = 0;
};

} // namespace MXF::Zelm::MXFIO
