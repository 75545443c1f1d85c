/// A source over bytes in memory that somebody else owns and keeps.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"

#include <cstddef>

namespace MXF::Zelm::DataIO::Memory {

class MXFZELM_EXPORT MemoryViewDataSource : public RandomAccessDataSource {
public:
    /// The `size` bytes at `bytes`, which must outlive the source.
    MemoryViewDataSource(const unsigned char* bytes, std::size_t size) : bytes_(bytes), size_(size) {}
    ~MemoryViewDataSource() override;

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ == size_; }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override;
    std::uint64_t remaining() const override { return size_ - position_; }
    void discard() override { position_ = size_; }
    std::uint64_t seek(std::uint64_t position) override;

private:
    const unsigned char* bytes_;
    std::size_t size_;
    std::size_t position_ = 0;
};

} // namespace MXF::Zelm::DataIO::Memory
