#include "MXF/Zelm/DataIO/File/FileSliceSource.h"

#include "MXF/Zelm/DataIO/File/NativeFile.h"
#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::DataIO::File {

FileSliceSource::FileSliceSource(std::string_view fileName, Templates::SharedPtr<BlockFactory> factory)
    : FileSliceSource(NativeFile::open(fileName, NativeFile::Access::Read), std::move(factory)) {}

FileSliceSource::FileSliceSource(std::u16string_view fileName, Templates::SharedPtr<BlockFactory> factory)
    : FileSliceSource(Platform::toUtf8(fileName), std::move(factory)) {}

FileSliceSource::FileSliceSource(std::unique_ptr<NativeFile> file, Templates::SharedPtr<BlockFactory> factory)
    : file_(std::move(file)),
      factory_(factory ? std::move(factory) : std::make_shared<Memory::MemoryBlockFactory>()),
      size_(file_->size()) {}

FileSliceSource::~FileSliceSource() = default;

bool FileSliceSource::endOfStream() const { return position_ >= size_ && position_ >= file_->size(); }

std::uint64_t FileSliceSource::read(std::uint64_t size, Chain& chain) {
    std::uint64_t done = 0;
    while (done < size) {
        bool const inside = position_ >= windowStart_ && position_ - windowStart_ < window_.size();
        if (!inside && !fillWindow(size - done))
            break;
        auto const within = static_cast<std::size_t>(position_ - windowStart_);
        auto const count =
            static_cast<std::size_t>(std::min<std::uint64_t>(window_.size() - within, size - done));
        chain.append(window_.part(within, count));
        position_ += count;
        done += count;
    }
    return done;
}

/// Reads a block at the current position; false when the file holds nothing there.
bool FileSliceSource::fillWindow(std::uint64_t wanted) {
    std::size_t const window = nextWindow(wanted);
    window_ = Slice(); // the factory may use its block again
    windowStart_ = position_;
    auto const count = static_cast<std::size_t>(std::min<std::uint64_t>(window, remaining(window)));
    if (count == 0)
        return false;
    auto block = factory_->block(count);
    std::size_t const got = file_->readAt(position_, block->bytes(), count);
    if (got < count)
        size_ = file_->size(); // cut while it was open
    window_ = Slice(std::move(block), 0, got);
    return got != 0;
}

/// How much to read at once: enough for what is asked for, and more of it the longer reading goes on in
/// sequence. Passing over less than the smallest block is still in sequence.
std::size_t FileSliceSource::nextWindow(std::uint64_t wanted) {
    std::uint64_t const end = windowStart_ + window_.size();
    bool const inSequence = !window_.empty() && position_ >= end && position_ - end < smallestBlock;
    blockSize_ = inSequence ? std::min(blockSize_ * 2, largestBlock) : smallestBlock;
    blockSize_ =
        std::max(blockSize_, static_cast<std::size_t>(std::min<std::uint64_t>(wanted, largestBlock)));
    auto const behindPage = static_cast<std::size_t>((position_ + blockSize_) % Block::pageSize);
    return blockSize_ - behindPage;
}

/// Bytes from the current position to the end. Where they are fewer than wanted, the file may have grown.
std::uint64_t FileSliceSource::remaining(std::uint64_t wanted) {
    if (position_ >= size_ || size_ - position_ < wanted)
        size_ = file_->size();
    return position_ < size_ ? size_ - position_ : 0;
}

std::uint64_t FileSliceSource::skip(std::uint64_t size) {
    std::uint64_t const count = std::min(size, remaining(size));
    position_ += count;
    return count;
}

std::uint64_t FileSliceSource::seek(std::uint64_t position) {
    if (position > size_)
        size_ = file_->size();
    position_ = std::min(position, size_);
    return position_;
}

std::uint64_t FileSliceSource::size() const { return file_->size(); }

std::string const& FileSliceSource::fileName() const { return file_->name(); }

} // namespace MXF::Zelm::DataIO::File
