#include "MXF/Zelm/Essence/Wave/WaveWriter.h"

#include "MXF/Zelm/DataIO/SliceSink.h"
#include "MXF/Zelm/Essence/LittleEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string_view>

namespace MXF::Zelm::Essence::Wave {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::uint32_t notKnown = 0xFFFFFFFF;
constexpr std::uint32_t sizesChunk = 28; // ds64 without a table
constexpr std::uint16_t pcmTag = 1, extensibleTag = 0xFFFE;

/// The rest of the format's identifier, behind its tag.
constexpr unsigned char formatIdentifier[14] = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

void append(std::string_view text, Bytes& bytes) { bytes.insert(bytes.end(), text.begin(), text.end()); }

/// A text in a field of `size` bytes, with zeros behind it.
void appendField(std::string_view text, std::size_t size, Bytes& bytes) {
    text = text.substr(0, size);
    append(text, bytes);
    bytes.resize(bytes.size() + size - text.size());
}

void appendChunkHead(std::string_view id, std::uint32_t size, Bytes& bytes) {
    append(id, bytes);
    appendLittleEndian(size, bytes);
}

Bytes broadcastChunk(BroadcastExtension const& from) {
    constexpr std::size_t reserved = 180;
    bool const hasUMID =
        std::any_of(from.umid.begin(), from.umid.end(), [](unsigned char byte) { return byte != 0; });
    Bytes bytes;
    appendField(from.description, 256, bytes);
    appendField(from.originator, 32, bytes);
    appendField(from.originatorReference, 32, bytes);
    appendField(from.date, 10, bytes);
    appendField(from.time, 8, bytes);
    appendLittleEndian(from.timeReference, bytes); // low half, high half
    appendLittleEndian(static_cast<std::uint16_t>(from.loudness ? 2 : hasUMID ? 1 : 0), bytes);
    bytes.insert(bytes.end(), from.umid.begin(), from.umid.end());
    for (std::int16_t const value : from.loudness.value_or(std::array<std::int16_t, 5>{}))
        appendLittleEndian(static_cast<std::uint16_t>(value), bytes);
    bytes.resize(bytes.size() + reserved);
    append(from.codingHistory, bytes);
    bytes.resize(bytes.size() + bytes.size() % 2);
    return bytes;
}

Bytes carriedOver(std::vector<KeptChunk> const& chunks) {
    Bytes bytes;
    for (auto const& chunk : chunks) {
        appendChunkHead(chunk.id, static_cast<std::uint32_t>(chunk.content.size()), bytes);
        bytes.insert(bytes.end(), chunk.content.begin(), chunk.content.end());
        bytes.resize(bytes.size() + chunk.content.size() % 2);
    }
    return bytes;
}

void appendFormat(WaveFormat const& format, Bytes& bytes) {
    bool const extensible = format.isExtensible();
    appendChunkHead("fmt ", extensible ? 40 : 16, bytes);
    appendLittleEndian(extensible ? extensibleTag : pcmTag, bytes);
    appendLittleEndian(format.channels, bytes);
    appendLittleEndian(format.samplingRate, bytes);
    appendLittleEndian(format.samplingRate * format.blockAlign(), bytes);
    appendLittleEndian(static_cast<std::uint16_t>(format.blockAlign()), bytes);
    appendLittleEndian(static_cast<std::uint16_t>(format.sampleBytes * 8), bytes);
    if (!extensible)
        return;
    appendLittleEndian(std::uint16_t{22}, bytes); // bytes of the extension
    appendLittleEndian(format.validBits, bytes);
    appendLittleEndian(format.channelMask, bytes);
    appendLittleEndian(pcmTag, bytes);
    bytes.insert(bytes.end(), std::begin(formatIdentifier), std::end(formatIdentifier));
}

WaveFormat const& checked(WaveFormat const& format) {
    if (format.channels == 0 || format.blockAlign() > 0xFFFF)
        throw Exceptions::InvalidValue("A Wave file cannot have " + std::to_string(format.channels) +
                                       " channels");
    if (format.sampleBytes < 1 || format.sampleBytes > 4)
        throw Exceptions::InvalidValue("A Wave file cannot have samples of " +
                                       std::to_string(format.sampleBytes) + " bytes");
    return format;
}

} // namespace

WaveWriter::WaveWriter(DataIO::DataSink& sink, WaveFormat const& format,
                       std::optional<BroadcastExtension> const& broadcast,
                       std::optional<std::uint64_t> dataBytes, std::vector<KeptChunk> const& chunks)
    : sink_(sink),
      seekable_(dynamic_cast<DataIO::RandomAccessible*>(&sink)),
      format_(checked(format)),
      broadcast_(broadcast ? broadcastChunk(*broadcast) : Bytes()),
      chunks_(carriedOver(chunks)),
      start_(sink.absoluteOffset()),
      announced_(dataBytes) {
    auto const bytes = head(announced_);
    sink_.write(bytes.data(), bytes.size());
}

WaveWriter::~WaveWriter() = default;

/// All that stands before the samples: as many bytes whatever the sizes are.
Bytes WaveWriter::head(std::optional<std::uint64_t> dataBytes) const {
    Bytes chunks;
    if (!broadcast_.empty()) {
        appendChunkHead("bext", static_cast<std::uint32_t>(broadcast_.size()), chunks);
        chunks.insert(chunks.end(), broadcast_.begin(), broadcast_.end());
    }
    appendFormat(format_, chunks);
    chunks.insert(chunks.end(), chunks_.begin(), chunks_.end());

    std::uint64_t const data = dataBytes.value_or(0);
    std::uint64_t const fileSize = 4 + 8 + sizesChunk + chunks.size() + 8 + data + data % 2;
    bool const isLarge = fileSize >= notKnown;
    bool const isSmall = dataBytes && !isLarge;
    Bytes bytes;
    appendChunkHead(isLarge ? "RF64" : "RIFF", isSmall ? static_cast<std::uint32_t>(fileSize) : notKnown,
                    bytes);
    append("WAVE", bytes);
    appendChunkHead(isLarge ? "ds64" : "JUNK", sizesChunk, bytes);
    appendLittleEndian(isLarge ? fileSize : 0, bytes);
    appendLittleEndian(isLarge ? data : 0, bytes);
    appendLittleEndian(isLarge ? data / format_.blockAlign() : 0, bytes);
    appendLittleEndian(std::uint32_t{0}, bytes); // entries of the table
    bytes.insert(bytes.end(), chunks.begin(), chunks.end());
    appendChunkHead("data", isSmall ? static_cast<std::uint32_t>(data) : notKnown, bytes);
    return bytes;
}

void WaveWriter::write(DataIO::Chain const& samples) {
    DataIO::writeChain(sink_, samples);
    dataBytes_ += samples.size();
}

void WaveWriter::write(const unsigned char* samples, std::uint64_t size) {
    sink_.write(samples, size);
    dataBytes_ += size;
}

void WaveWriter::finish() {
    constexpr unsigned char zero = 0;
    sink_.write(&zero, dataBytes_ % 2);
    if (announced_ == dataBytes_)
        return;
    if (seekable_ != nullptr) {
        std::uint64_t const end = sink_.absoluteOffset();
        auto const bytes = head(dataBytes_);
        seekable_->seek(start_);
        sink_.write(bytes.data(), bytes.size());
        seekable_->seek(end);
    } else if (announced_) {
        throw Exceptions::InvalidLength("The Wave file's head says " + std::to_string(*announced_) +
                                        " bytes of samples, there are " + std::to_string(dataBytes_));
    }
}

} // namespace MXF::Zelm::Essence::Wave
