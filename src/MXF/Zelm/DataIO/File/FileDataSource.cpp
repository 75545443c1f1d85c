#include "MXF/Zelm/DataIO/File/FileDataSource.h"

#include "MXF/Zelm/DataIO/File/NativeFile.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace MXF::Zelm::DataIO::File {

namespace {

/// Bounds of what is read after a jump: the header of a KLV packet and what goes with it.
constexpr std::size_t smallestWindow = 256;
constexpr std::size_t largestFirstWindow = 4 * 1024;
constexpr std::size_t largestWindow = 256 * 1024;
/// Passing over no more than this still counts as reading in sequence: up to about here it costs less to read
/// the bytes along than to ask the system once more.
constexpr std::uint64_t largestGap = 8 * 1024;
/// From here on bytes are read into the caller's buffer, past the window.
constexpr std::uint64_t smallestDirectRead = 32 * 1024;

} // namespace

FileDataSource::FileDataSource(std::string_view fileName)
    : FileDataSource(NativeFile::open(fileName, NativeFile::Access::Read)) {}

FileDataSource::FileDataSource(std::u16string_view fileName) : FileDataSource(Platform::toUtf8(fileName)) {}

FileDataSource::FileDataSource(std::unique_ptr<NativeFile> file)
    : file_(std::move(file)), size_(file_->size()), nextWindow_(largestFirstWindow) {}

FileDataSource::~FileDataSource() = default;

std::uint64_t FileDataSource::read(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    size = std::min(size, remaining());
    while (done < size) {
        if (position_ < windowStart_ || position_ - windowStart_ >= windowFilled_) {
            if (size - done >= smallestDirectRead)
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
        lastReadEnd_ = position_;
    }
    return done;
}

/// Reads the window at the current position; false when the file holds nothing there any more.
///
/// The gap is counted from the last byte that was asked for: what a caller passes over tells how much of a
/// larger window it would use. After a jump as much is read as was used since the last one, so that a walk
/// over packets far apart fetches each group of headers in one piece and little else.
bool FileDataSource::fillWindow() {
    bool const inSequence = windowFilled_ != 0 && position_ >= windowStart_ + windowFilled_ &&
                            position_ - lastReadEnd_ <= largestGap;
    if (inSequence) {
        nextWindow_ = std::min(nextWindow_ * 2, largestWindow);
    } else {
        std::uint64_t const used = lastReadEnd_ > runStart_ ? lastReadEnd_ - runStart_ : largestFirstWindow;
        nextWindow_ = std::bit_ceil(
            static_cast<std::size_t>(std::clamp<std::uint64_t>(used, smallestWindow, largestFirstWindow)));
        runStart_ = position_;
    }
    if (window_.size() < nextWindow_)
        window_.resize(nextWindow_);
    windowFilled_ = 0;
    windowStart_ = position_;
    auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(nextWindow_, remaining()));
    windowFilled_ = file_->readAt(position_, window_.data(), wanted);
    if (windowFilled_ < wanted)
        size_ = windowStart_ + windowFilled_; // the file has shrunk
    return windowFilled_ != 0;
}

std::uint64_t FileDataSource::readDirectly(unsigned char* buffer, std::uint64_t size) {
    std::uint64_t done = 0;
    while (done < size) {
        auto const piece = static_cast<std::size_t>(std::min<std::uint64_t>(size - done, 1u << 30));
        std::size_t const got = file_->readAt(position_, buffer + done, piece);
        position_ += got;
        done += got;
        if (got < piece) {
            size_ = position_; // the file has shrunk
            break;
        }
    }
    lastReadEnd_ = position_;
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
