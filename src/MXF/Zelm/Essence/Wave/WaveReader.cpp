#include "MXF/Zelm/Essence/Wave/WaveReader.h"

#include "MXF/Zelm/DataIO/BoundedSliceSource.h"
#include "MXF/Zelm/Essence/LittleEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace MXF::Zelm::Essence::Wave {

namespace {

constexpr std::uint64_t headSize = 8, riffHeadSize = 12;

/// "Not known", or "see ds64".
constexpr std::uint32_t noSize = 0xFFFFFFFF;
constexpr std::uint64_t noLargeSize = ~std::uint64_t{0};

/// What a common writer that cannot go back leaves, cut to whole instants, with nothing behind the samples.
constexpr std::uint32_t openSize = 0x7FFFF000;

constexpr std::uint16_t tagPCM = 1, tagExtensible = 0xFFFE;

/// The sub format of an extensible one behind its tag.
constexpr unsigned char waveSubFormat[14] = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                             0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

using Exceptions::at;
using Exceptions::InvalidFormat;

std::uint16_t number16(DataIO::Slice const& bytes, std::size_t at) {
    return littleEndian<std::uint16_t>(bytes.data() + at);
}

std::uint32_t number32(DataIO::Slice const& bytes, std::size_t at) {
    return littleEndian<std::uint32_t>(bytes.data() + at);
}

std::uint64_t number64(DataIO::Slice const& bytes, std::size_t at) {
    return littleEndian<std::uint64_t>(bytes.data() + at);
}

/// A field of text, which zeros fill up.
std::string text(DataIO::Slice const& bytes, std::size_t from, std::size_t size) {
    auto const* const begin = bytes.data() + from;
    return {begin, std::find(begin, begin + size, 0)};
}

/// The tag of the format; of an extensible one the tag that its sub format stands for, if there is one.
std::uint16_t tagOf(DataIO::Slice const& format) {
    std::uint16_t const tag = number16(format, 0);
    bool const standsForTag = tag == tagExtensible && format.size() >= 40 &&
                              std::memcmp(format.data() + 26, waveSubFormat, sizeof waveSubFormat) == 0;
    return standsForTag ? number16(format, 24) : tag;
}

} // namespace

std::optional<BroadcastExtension> readBroadcastExtension(const unsigned char* content, std::size_t size) {
    constexpr std::size_t versionAt = 346, umidAt = 348, loudnessAt = 412, historyAt = 602;
    if (size < historyAt)
        return std::nullopt;
    auto const bytes = DataIO::Slice::copyOf(content, size);
    BroadcastExtension read;
    read.description = text(bytes, 0, 256);
    read.originator = text(bytes, 256, 32);
    read.originatorReference = text(bytes, 288, 32);
    read.date = text(bytes, 320, 10);
    read.time = text(bytes, 330, 8);
    read.timeReference = number64(bytes, 338);
    std::copy_n(bytes.data() + umidAt, read.umid.size(), read.umid.begin());
    if (number16(bytes, versionAt) >= 2) {
        read.loudness.emplace();
        for (std::size_t i = 0; i < read.loudness->size(); ++i)
            (*read.loudness)[i] = static_cast<std::int16_t>(number16(bytes, loudnessAt + 2 * i));
    }
    read.codingHistory = text(bytes, historyAt, bytes.size() - historyAt);
    return read;
}

bool WaveReader::isWave(const unsigned char* bytes, std::size_t size) {
    auto const is = [](const unsigned char* at, const char* id) { return std::memcmp(at, id, 4) == 0; };
    return size >= riffHeadSize && (is(bytes, "RIFF") || is(bytes, "RF64") || is(bytes, "BW64")) &&
           is(bytes + 8, "WAVE");
}

WaveReader::WaveReader(Templates::SharedPtr<DataIO::SliceSource> source)
    : source_(std::move(source)), start_(source_->absoluteOffset()) {
    takeRiff();
    while (!samples_) {
        auto const head = nextHead();
        if (!head)
            throw at(source_->absoluteOffset(), InvalidFormat("The Wave file has no samples (data chunk)"));
        if (head->id == "data")
            takeData(*head);
        else
            takeChunk(*head);
    }
}

WaveReader::~WaveReader() = default;

void WaveReader::takeRiff() {
    DataIO::Chain head;
    source_->read(riffHeadSize, head);
    auto const bytes = head.contiguous();
    if (!isWave(bytes.data(), bytes.size()))
        throw at(start_, InvalidFormat("This is no Wave file"));
    isLarge_ = bytes.data()[0] != 'R' || bytes.data()[1] != 'I';
    riffSize_ = number32(bytes, 4);
}

/// Absent at the end, also at one that is amid a chunk's head.
std::optional<WaveReader::Head> WaveReader::nextHead() {
    DataIO::Chain bytes;
    if (source_->read(headSize, bytes) != headSize)
        return std::nullopt;
    auto const head = bytes.contiguous();
    return Head{{head.begin(), head.begin() + 4}, number32(head, 4), source_->absoluteOffset()};
}

/// Of a chunk that is too large to be kept, nothing; of one that is cut off, what is there.
DataIO::Slice WaveReader::content(Head const& head) {
    if (head.size > mostKept - kept_) {
        source_->skip(head.size);
        return {};
    }
    DataIO::Chain bytes;
    kept_ += source_->read(head.size, bytes);
    auto const joined = bytes.contiguous();
    bool const isShared = bytes.slices().size() == 1; // with all else that was read at once
    return isShared ? DataIO::Slice::copyOf(joined.data(), joined.size()) : joined;
}

void WaveReader::takeChunk(Head const& found) {
    Head const head{found.id, largeSizeOf(found), found.offset};
    auto const bytes = content(head);
    if (head.size % 2 != 0)
        source_->skip(1);
    if (head.id == "ds64") {
        takeLargeSizes(bytes);
        return;
    }
    if (head.id == "fmt ")
        takeFormat(head, bytes);
    else if (head.id == "bext")
        broadcast_ = readBroadcastExtension(bytes.data(), bytes.size());
    if (chunks_.size() == mostChunks)
        throw at(head.offset, InvalidFormat("The Wave file has too many chunks"));
    chunks_.push_back({head.id, head.offset, head.size, bytes});
}

/// RIFF size, data size, sample count, then a table of other chunks. A table that is cut off counts as far as
/// it goes.
void WaveReader::takeLargeSizes(DataIO::Slice const& bytes) {
    constexpr std::size_t fixed = 28, row = 12;
    if (!isLarge_ || bytes.size() < fixed - 4)
        return;
    riffSize_ = number64(bytes, 0);
    largeDataSize_ = number64(bytes, 8);
    for (std::size_t at = fixed; at + row <= bytes.size() && largeSizes_.size() < mostChunks; at += row)
        largeSizes_.emplace_back(text(bytes, at, 4), number64(bytes, at + 4));
}

std::uint64_t WaveReader::largeSizeOf(Head const& head) const {
    auto const found = std::find_if(largeSizes_.begin(), largeSizes_.end(),
                                    [&](auto const& row) { return row.first == head.id; });
    return head.size == noSize && found != largeSizes_.end() ? found->second : head.size;
}

void WaveReader::takeFormat(Head const& head, DataIO::Slice const& bytes) {
    constexpr std::size_t plainSize = 16;
    if (bytes.size() < plainSize)
        throw at(head.offset, InvalidFormat("The format of the Wave file (fmt chunk) has " +
                                            std::to_string(bytes.size()) + " bytes, expected 16"));
    if (tagOf(bytes) != tagPCM)
        throw at(head.offset, InvalidFormat("The samples of the Wave file have format " +
                                            std::to_string(tagOf(bytes)) + ", not PCM"));
    bool const isExtensible = number16(bytes, 0) == tagExtensible;
    std::uint16_t const blockAlign = number16(bytes, 12), bits = number16(bytes, 14);
    format_.channels = number16(bytes, 2);
    format_.samplingRate = number32(bytes, 4);
    format_.sampleBytes = static_cast<std::uint16_t>((bits + 7) / 8);
    format_.validBits = isExtensible && number16(bytes, 18) != 0 ? number16(bytes, 18) : bits;
    format_.channelMask = isExtensible ? number32(bytes, 20) : 0;
    if (format_.channels == 0 || format_.samplingRate == 0 || format_.sampleBytes == 0 ||
        format_.sampleBytes > 4 || format_.blockAlign() != blockAlign ||
        format_.validBits > format_.sampleBytes * 8 ||
        format_.samplingRate > std::uint32_t{std::numeric_limits<std::int32_t>::max()})
        throw at(head.offset,
                 InvalidFormat("The format of the Wave file makes no sense: " +
                               std::to_string(format_.channels) + " channels of " + std::to_string(bits) +
                               " bits in blocks of " + std::to_string(blockAlign) + " bytes at " +
                               std::to_string(format_.samplingRate) + " Hz"));
}

void WaveReader::takeData(Head const& head) {
    if (format_.channels == 0)
        throw at(head.offset, InvalidFormat("The Wave file has its samples (data chunk) before their format "
                                            "(fmt chunk), or no format"));
    dataOffset_ = head.offset;
    std::uint64_t const size = sizeOfData(head);
    if (size != noLargeSize)
        dataSize_ = size;
    samples_ = std::make_shared<DataIO::BoundedSliceSource>(source_, size);
}

/// The largest number when the file was not closed: a writer that could not go back left FFFFFFFF, or 0 or
/// the like of 7FFFF000 in a file that says it ends behind it.
std::uint64_t WaveReader::sizeOfData(Head const& head) const {
    if (head.size == noSize)
        return largeDataSize_ && *largeDataSize_ != 0 ? *largeDataSize_ : noLargeSize;
    std::uint64_t const before = head.offset - start_ - headSize; // what the RIFF chunk holds before
    if (head.size == openSize / format_.blockAlign() * format_.blockAlign() &&
        riffSize_ == before + head.size + head.size % 2)
        return noLargeSize;
    bool const endsHere =
        riffSize_ == 0 || riffSize_ == noSize || riffSize_ == noLargeSize || riffSize_ <= before;
    return head.size == 0 && endsHere ? noLargeSize : head.size;
}

std::optional<std::uint64_t> WaveReader::sampleCount() const {
    return dataSize_ ? std::optional(*dataSize_ / format_.blockAlign()) : std::nullopt;
}

void WaveReader::readRest() {
    if (!dataSize_)
        return;
    samples_->skip(noLargeSize);
    if (source_->absoluteOffset() - dataOffset_ < *dataSize_)
        return;
    if (*dataSize_ % 2 != 0)
        source_->skip(1);
    while (auto const head = nextHead()) {
        if (head->size > mostKept - kept_ && source_->endOfStream())
            return;
        takeChunk(*head);
    }
}

} // namespace MXF::Zelm::Essence::Wave
