#include "MXF/Zelm/DataIO/File/FileDataSource.h"

#include "MXF/Zelm/DataIO/File/NativeFile.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <cstring>

namespace MXF::Zelm::DataIO::File {

namespace {

/// Read after a jump: the header of a KLV packet and what usually goes with it.
constexpr std::size_t smallestWindow = 4 * 1024;
constexpr std::size_t largestWindow = 256 * 1024;

} // namespace

FileDataSource::FileDataSource(std::string_view fileName)
    : FileDataSource(NativeFile::open(fileName, NativeFile::Access::Read)) {}

FileDataSource::FileDataSource(std::u16string_view fileName) : FileDataSource(Platform::toUtf8(fileName)) {}

FileDataSource::FileDataSource(std::unique_ptr<NativeFile> file)
    : file_(std::move(file)), size_(file_->size()), nextWindow_(smallestWindow) {}

FileDataSource::~FileDataSource() = default;

std::uint64_t FileDataSource::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    size = std::min(size, remaining());
    while (done < size) {
        if (position_ < windowStart_ || position_ - windowStart_ >= windowFilled_) {
            if (size - done >= largestWindow)
                return done + readDirectly(buffer + done, size - done);
            if (!fillWindow())
                break;
        }
        auto const within = static_cast<std::size_t>(position_ - windowStart_);
        auto const count =
            static_cast<std::size_t>(std::min<std::uint64_t>(windowFilled_ - within, size - done));
        std::memcpy(buffer + done, window_.data() + within, count);
        position_ += count;
        done += count;
    }
    return done;
}

/// Reads the window at the current position; false when the file holds nothing there any more. Passing over
/// less than a quarter of the last window still counts as reading in sequence.
bool FileDataSource::fillWindow() {
    std::uint64_t const lastEnd = windowStart_ + windowFilled_;
    bool const inSequence =
        windowFilled_ != 0 && position_ >= lastEnd && position_ - lastEnd <= windowFilled_ / 4;
    nextWindow_ = inSequence ? std::min(nextWindow_ * 2, largestWindow) : smallestWindow;
    if (window_.size() < nextWindow_)
        window_.resize(nextWindow_);
    windowFilled_ = 0;
    windowStart_ = position_;
    windowFilled_ =
        file_->readAt(position_, window_.data(),
                      static_cast<std::size_t>(std::min<std::uint64_t>(nextWindow_, remaining())));
    return windowFilled_ != 0;
}

std::uint64_t FileDataSource::readDirectly(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    while (done < size) {
        auto const piece = static_cast<std::size_t>(std::min<std::uint64_t>(size - done, 1u << 30));
        std::size_t const got = file_->readAt(position_, buffer + done, piece);
        position_ += got;
        done += got;
        if (got < piece)
            break;
    }
    return done;
}

std::uint64_t FileDataSource::skip(std::uint64_t size) {
    size = std::min(size, remaining());
    position_ += size;
    return size;
}

void FileDataSource::discard() { skip(remaining()); }

std::uint64_t FileDataSource::seek(std::uint64_t position) {
    position_ = std::min(position, size_);
    return position_;
}

std::uint64_t FileDataSource::refreshSize() {
    size_ = file_->size();
    return size_;
}

std::string const& FileDataSource::fileName() const { return file_->name(); }

} // namespace MXF::Zelm::DataIO::File
