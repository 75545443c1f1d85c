#include "MXF/Zelm/MXFIO/BlockWindow.h"

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace MXF::Zelm::MXFIO {

namespace {

/// After a jump, and in sequence.
constexpr std::size_t smallestBlock = std::size_t{4} << 10;
constexpr std::size_t largestBlock = std::size_t{256} << 10;

/// Passing over no more than this counts as reading in sequence.
constexpr std::uint64_t largestGap = std::uint64_t{8} << 10;

/// What is read before and behind a position that lies a little before the last one: reading goes backwards.
constexpr std::uint64_t backwards = std::uint64_t{48} << 10;
constexpr std::uint64_t backwardsBehind = std::uint64_t{16} << 10;

constexpr std::size_t poolSize = std::size_t{2} << 20;

} // namespace

BlockWindow::BlockWindow(DataIO::DataSource& source, Templates::SharedPtr<DataIO::BlockFactory> factory)
    : source_(source),
      seekable_(dynamic_cast<DataIO::RandomAccessible*>(&source)),
      factory_(factory ? std::move(factory)
                       : std::make_shared<DataIO::Memory::MemoryBlockFactory>(poolSize)) {}

bool BlockWindow::moveTo(std::uint64_t offset) {
    if (seekable_ != nullptr)
        return seekable_->seek(offset) == offset;
    std::uint64_t const at = source_.absoluteOffset();
    return at <= offset && source_.skip(offset - at) == offset - at;
}

std::size_t BlockWindow::nextSize(std::uint64_t offset, std::uint64_t wanted) {
    std::uint64_t const end = start_ + filled_;
    bool const inSequence = filled_ != 0 && offset >= start_ && (offset <= end || offset - end <= largestGap);
    size_ = inSequence || seekable_ == nullptr ? std::min(size_ * 2, largestBlock) : smallestBlock;
    size_ = std::max(
        {size_, smallestBlock, static_cast<std::size_t>(std::min<std::uint64_t>(wanted, largestBlock))});
    return size_;
}

/// Where a block begins that is read for `offset`: before it when reading goes backwards.
std::uint64_t BlockWindow::startFor(std::uint64_t offset) const {
    bool const goesBack =
        seekable_ != nullptr && filled_ != 0 && offset < start_ && start_ - offset <= backwards;
    return goesBack ? offset - std::min(offset, backwards) : offset;
}

/// Reads a block that holds `offset`, the bytes there are in the window before it included. False when the
/// source has no more than those; the window then stays.
bool BlockWindow::fill(std::uint64_t offset, std::uint64_t wanted) {
    unsigned char kept[mostPeeked];
    std::size_t keep = 0;
    std::uint64_t start = startFor(offset);
    if (holds(offset)) {
        keep = static_cast<std::size_t>(start_ + filled_ - offset);
        std::memcpy(kept, data(offset), keep);
    }
    if (!moveTo(start + keep))
        return false;
    if (start != offset)
        wanted = std::max(wanted, backwardsBehind) + (offset - start);
    std::size_t const size = nextSize(offset, wanted);
    if (keep == 0) // its block may be used again
        window_ = DataIO::Slice();
    auto block = factory_->block(keep + size);
    std::memcpy(block->bytes(), kept, keep);
    filled_ = keep == 0 ? 0 : filled_;
    auto const got = static_cast<std::size_t>(source_.read(block->bytes() + keep, size));
    if (got == 0)
        return false;
    window_ = DataIO::Slice(std::move(block), 0, keep + got);
    start_ = start;
    filled_ = keep + got;
    return true;
}

std::size_t BlockWindow::load(std::uint64_t offset, std::size_t size) {
    if (!holds(offset) || filled_ - (offset - start_) < size)
        fill(offset, size);
    return holds(offset)
               ? static_cast<std::size_t>(std::min<std::uint64_t>(filled_ - (offset - start_), size))
               : 0;
}

std::uint64_t BlockWindow::append(std::uint64_t offset, std::uint64_t size, DataIO::Chain& chain) {
    std::uint64_t done = 0;
    while (done < size && (holds(offset) || fill(offset, size - done))) {
        auto const within = static_cast<std::size_t>(offset - start_);
        auto const count = static_cast<std::size_t>(std::min(filled_ - within, size - done));
        chain.append(window_.part(within, count));
        offset += count;
        done += count;
    }
    return done;
}

} // namespace MXF::Zelm::MXFIO
