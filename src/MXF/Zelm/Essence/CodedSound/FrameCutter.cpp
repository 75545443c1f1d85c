#include "MXF/Zelm/Essence/CodedSound/FrameCutter.h"

#include "MXF/Zelm/Essence/ByteWindow.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::Essence::CodedSound {

namespace {

constexpr std::size_t tagHeaderSize = 10;

/// Bytes of the ID3 tag whose header is at `bytes`, header included; 0 when none begins there.
///
///     "ID3"    version (2)    flags    size (4, of 7 bits each)
std::uint64_t tagSize(const unsigned char* bytes) {
    constexpr unsigned char name[] = {'I', 'D', '3'}, hasFooter = 0x10;
    if (!std::equal(std::begin(name), std::end(name), bytes))
        return 0;
    std::uint64_t size = tagHeaderSize + ((bytes[5] & hasFooter) != 0 ? tagHeaderSize : 0), content = 0;
    for (std::size_t i = 6; i < tagHeaderSize; ++i)
        content = content << 7 | (bytes[i] & 0x7Fu);
    return size + content;
}

} // namespace

FrameCutter::FrameCutter(Templates::SharedPtr<DataIO::SliceSource> source, Format const& format,
                         std::uint64_t mostSearched)
    : window_(std::make_unique<ByteWindow>(std::move(source))),
      format_(format),
      mostSearched_(mostSearched) {}

FrameCutter::~FrameCutter() = default;

void FrameCutter::passTags() {
    constexpr std::uint64_t step = std::uint64_t{64} << 10;
    while (window_->require(tagHeaderSize)) {
        std::uint64_t left = tagSize(window_->data());
        if (left == 0)
            return;
        while (left != 0 && window_->require(1)) {
            auto const count =
                static_cast<std::size_t>(std::min({left, step, std::uint64_t{window_->size()}}));
            window_->advance(count);
            left -= count;
        }
    }
}

bool FrameCutter::readHeader(std::size_t at, FrameHeader& header) {
    return window_->require(at + format_.headerSize) && format_.read(window_->data() + at, header) &&
           header.size >= format_.headerSize && (first_.size == 0 || header.continues(first_));
}

/// Whether a whole frame begins here.
bool FrameCutter::begins(FrameHeader& header) {
    if (!readHeader(0, header) || !window_->require(header.size))
        return false;
    FrameHeader behind;
    if (isInStep_ || (!window_->require(header.size + 1) && window_->size() == header.size))
        return true;
    return readHeader(header.size, behind) && behind.continues(header);
}

void FrameCutter::passByte() {
    if (passed_.count++ == 0)
        passed_.offset = window_->offset();
    window_->advance(1);
    isInStep_ = false;
}

std::optional<Frame> FrameCutter::next() {
    if (!std::exchange(hasBegun_, true))
        passTags();
    std::uint64_t searched = 0;
    Frame frame;
    for (; window_->require(1) && searched <= mostSearched_; ++searched) {
        if (begins(frame.header)) {
            frame.offset = window_->offset();
            frame.bytes = window_->front(frame.header.size);
            window_->advance(frame.header.size);
            isInStep_ = true;
            if (first_.size == 0)
                first_ = frame.header;
            return frame;
        }
        passByte();
    }
    passed_.isAtEnd = searched != 0;
    return std::nullopt;
}

} // namespace MXF::Zelm::Essence::CodedSound
