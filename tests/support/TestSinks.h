/// Sinks of tests: in memory, with or without seeking, failing where they are told to.
#pragma once

#include "MXF/Zelm/DataIO/SliceSink.h"

#include "support/Bytes.h"

#include <algorithm>
#include <stdexcept>

namespace MXF::Zelm::Test {

/// What a failing sink throws.
struct SinkFailure : std::runtime_error {
    SinkFailure() : std::runtime_error("no space left") {}
};

/// A file in memory.
class SeekableSink : public DataIO::RandomAccessDataSink {
public:
    /// Of write number `failAt`, counted from 0, only the first half of the bytes is written.
    explicit SeekableSink(std::size_t failAt = ~std::size_t{0}) : failAt_(failAt) {}

    void write(const unsigned char* buffer, std::uint64_t size) override {
        bool const fails = writes_++ == failAt_;
        auto const count = static_cast<std::size_t>(fails ? size / 2 : size);
        bytes_.resize(std::max(bytes_.size(), position_ + count));
        std::copy_n(buffer, count, bytes_.begin() + static_cast<std::ptrdiff_t>(position_));
        position_ += count;
        if (fails)
            throw SinkFailure();
    }
    std::uint64_t absoluteOffset() const override { return position_; }
    std::uint64_t seek(std::uint64_t position) override {
        return position_ = static_cast<std::size_t>(std::min<std::uint64_t>(position, bytes_.size()));
    }

    Bytes const& bytes() const { return bytes_; }
    std::size_t writes() const { return writes_; }

private:
    Bytes bytes_;
    std::size_t position_ = 0;
    std::size_t writes_ = 0;
    std::size_t failAt_;
};

} // namespace MXF::Zelm::Test
