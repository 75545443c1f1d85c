#include "MXF/Zelm/DataIO/File/FileDataSink.h"

#include "MXF/Zelm/DataIO/File/NativeFile.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>

namespace MXF::Zelm::DataIO::File {

namespace {

constexpr std::size_t bufferSize = 256 * 1024;
/// Chains below this size cost less to copy than to ask the system for.
constexpr std::uint64_t smallChain = 8 * 1024;
/// What the system is asked at once to bring to the device early.
constexpr std::uint64_t earlyBytes = std::uint64_t{32} << 20;

NativeFile::Access accessFor(FileDataSink::Mode mode) {
    switch (mode) {
    case FileDataSink::Mode::Replace:
        return NativeFile::Access::Replace;
    case FileDataSink::Mode::Modify:
        return NativeFile::Access::Modify;
    case FileDataSink::Mode::CreateNew:
        break;
    }
    return NativeFile::Access::CreateNew;
}

} // namespace

FileDataSink::FileDataSink(std::string_view fileName, Mode mode)
    : FileDataSink(NativeFile::open(fileName, accessFor(mode))) {}

FileDataSink::FileDataSink(std::u16string_view fileName, Mode mode)
    : FileDataSink(Platform::toUtf8(fileName), mode) {}

FileDataSink::FileDataSink(std::unique_ptr<NativeFile> file) : file_(std::move(file)), size_(file_->size()) {}

FileDataSink::~FileDataSink() {
    try {
        close();
    } catch (...) {
        // A destructor cannot report it; close() can.
    }
}

void FileDataSink::write(const unsigned char* buffer, std::uint64_t size) {
    if (size >= bufferSize - buffer_.size()) {
        flush();
        while (size >= bufferSize) {
            auto const piece = static_cast<std::size_t>(std::min<std::uint64_t>(size, 1u << 30));
            file_->writeAt(bufferStart_, buffer, piece);
            advance(piece);
            buffer += piece;
            size -= piece;
        }
    }
    buffer_.insert(buffer_.end(), buffer, buffer + static_cast<std::size_t>(size));
}

void FileDataSink::write(Chain const& chain) {
    if (chain.size() < smallChain) {
        for (auto const& slice : chain)
            write(slice.data(), slice.size());
        return;
    }
    std::vector<NativeFile::Piece> pieces;
    pieces.reserve(chain.slices().size() + 1);
    pieces.push_back({buffer_.data(), buffer_.size()});
    for (auto const& slice : chain)
        pieces.push_back({slice.data(), slice.size()});
    file_->gatherAt(bufferStart_, pieces);
    advance(buffer_.size() + chain.size());
    buffer_.clear();
}

std::uint64_t FileDataSink::seek(std::uint64_t position) {
    flush();
    bufferStart_ = std::min(position, size_);
    return bufferStart_;
}

void FileDataSink::flush() {
    if (buffer_.empty())
        return;
    file_->writeAt(bufferStart_, buffer_.data(), buffer_.size());
    advance(buffer_.size());
    buffer_.clear();
}

/// The system has taken so many bytes.
void FileDataSink::advance(std::uint64_t bytes) {
    bufferStart_ += bytes;
    size_ = std::max(size_, bufferStart_);
    if (!isEarly_ || bufferStart_ < onTheWay_ + earlyBytes)
        return;
    beginSynchronizing(onTheWay_, bufferStart_ - onTheWay_);
    onTheWay_ = bufferStart_;
}

void FileDataSink::beginSynchronizing(std::uint64_t position, std::uint64_t size) noexcept {
    file_->beginSynchronizing(position, size);
}

void FileDataSink::synchronize() {
    flush();
    file_->synchronize();
}

void FileDataSink::truncate() {
    flush();
    file_->truncate(bufferStart_);
    size_ = bufferStart_;
}

void FileDataSink::close() {
    flush();
    file_->close();
}

std::uint64_t FileDataSink::size() const { return std::max(size_, absoluteOffset()); }

std::string const& FileDataSink::fileName() const { return file_->name(); }

} // namespace MXF::Zelm::DataIO::File
