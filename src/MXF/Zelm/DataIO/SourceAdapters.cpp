#include "MXF/Zelm/DataIO/SourceAdapters.h"

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::DataIO {

namespace {

/// Bytes that a source of bytes asks a source of slices for at a time.
constexpr std::uint64_t largestPiece = 1 << 20;

} // namespace

DataSourceSliceSource::DataSourceSliceSource(Templates::SharedPtr<DataSource> source,
                                             Templates::SharedPtr<BlockFactory> factory,
                                             std::size_t blockSize)
    : source_(std::move(source)),
      factory_(factory ? std::move(factory) : std::make_shared<Memory::MemoryBlockFactory>()),
      blockSize_(std::max<std::size_t>(blockSize, 1)) {}

DataSourceSliceSource::~DataSourceSliceSource() = default;

std::uint64_t DataSourceSliceSource::read(std::uint64_t size, Chain& chain) {
    std::uint64_t done = 0;
    while (done < size) {
        if (!block_ || used_ == block_->size()) {
            block_.reset();
            block_ = factory_->block(blockSize_);
            used_ = 0;
        }
        std::uint64_t const wanted = std::min<std::uint64_t>(size - done, block_->size() - used_);
        auto const got = static_cast<std::size_t>(source_->read(block_->bytes() + used_, wanted));
        if (got == 0)
            break;
        chain.append(Slice(block_, used_, got));
        used_ += got;
        done += got;
    }
    return done;
}

SliceSourceDataSource::SliceSourceDataSource(Templates::SharedPtr<SliceSource> source)
    : source_(std::move(source)) {}

SliceSourceDataSource::~SliceSourceDataSource() = default;

std::uint64_t SliceSourceDataSource::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    while (done < size) {
        Chain piece;
        std::uint64_t const count = source_->read(std::min(size - done, largestPiece), piece);
        if (count == 0)
            break;
        piece.copyTo(buffer + done, count);
        done += count;
    }
    return done;
}

BoundedDataSourceAdapter::BoundedDataSourceAdapter(Templates::SharedPtr<DataSource> source,
                                                   std::uint64_t size)
    : source_(std::move(source)), remaining_(size) {}

BoundedDataSourceAdapter::~BoundedDataSourceAdapter() = default;

std::uint64_t BoundedDataSourceAdapter::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t const count = source_->read(buffer, std::min(size, remaining_));
    remaining_ -= count;
    return count;
}

std::uint64_t BoundedDataSourceAdapter::skip(std::uint64_t size) {
    std::uint64_t const count = source_->skip(std::min(size, remaining_));
    remaining_ -= count;
    return count;
}

} // namespace MXF::Zelm::DataIO
