/// Sources in the other form: slices from a source of bytes, bytes from a source of slices, an end for a
/// source that does not know its own.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/DataIO/SliceSource.h"

namespace MXF::Zelm::DataIO {

/// Slices of the bytes of any source. Bytes are read when they are asked for and never ahead, so that the
/// source stands where this one does; small reads share a block.
class MXFZELM_EXPORT DataSourceSliceSource : public SliceSource {
public:
    static constexpr std::size_t defaultBlockSize = std::size_t{256} << 10;

    /// Reads into blocks of `blockSize` bytes, at least 1, from `factory` (null: from a pool of its own).
    explicit DataSourceSliceSource(Templates::SharedPtr<DataSource> source,
                                   Templates::SharedPtr<BlockFactory> factory = nullptr,
                                   std::size_t blockSize = defaultBlockSize);
    ~DataSourceSliceSource() override;

    std::uint64_t absoluteOffset() const override { return source_->absoluteOffset(); }
    bool endOfStream() const override { return source_->endOfStream(); }
    std::uint64_t read(std::uint64_t size, Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override { return source_->skip(size); }

private:
    Templates::SharedPtr<DataSource> source_;
    Templates::SharedPtr<BlockFactory> factory_;
    std::size_t blockSize_;
    Templates::SharedPtr<Block> block_;
    std::size_t used_ = 0; // of block_; slices refer to no byte behind
};

/// The bytes of any source of slices. Each byte is copied once, into the caller's buffer.
class MXFZELM_EXPORT SliceSourceDataSource : public DataSource {
public:
    explicit SliceSourceDataSource(Templates::SharedPtr<SliceSource> source);
    ~SliceSourceDataSource() override;

    std::uint64_t absoluteOffset() const override { return source_->absoluteOffset(); }
    bool endOfStream() const override { return source_->endOfStream(); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override { return source_->skip(size); }

private:
    Templates::SharedPtr<SliceSource> source_;
};

/// The next bytes of any source as a source with an end. Reading it moves the other one.
class MXFZELM_EXPORT BoundedDataSourceAdapter : public BoundedDataSource {
public:
    /// The next `size` bytes of `source`. When that one ends before, `remaining()` says what should be left,
    /// and `endOfStream()` that nothing is.
    BoundedDataSourceAdapter(Templates::SharedPtr<DataSource> source, std::uint64_t size);
    ~BoundedDataSourceAdapter() override;

    /// The other source's position.
    std::uint64_t absoluteOffset() const override { return source_->absoluteOffset(); }
    bool endOfStream() const override { return remaining_ == 0 || source_->endOfStream(); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override;
    std::uint64_t remaining() const override { return remaining_; }
    void discard() override { skip(remaining_); }

private:
    Templates::SharedPtr<DataSource> source_;
    std::uint64_t remaining_;
};

} // namespace MXF::Zelm::DataIO
