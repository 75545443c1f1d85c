/// Reads a Wave file: RIFF, and its 64-bit forms RF64 (EBU Tech 3306) and BW64 (ITU-R BS.2088).
///
///     RIFF | RF64 | BW64    size, "WAVE"
///     ds64                  64-bit sizes
///     fmt                   format of the samples
///     bext …                any chunks, before the samples and behind
///     data                  the samples
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/Wave/WaveFormat.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Essence::Wave {

/// A chunk that is neither samples nor 64-bit sizes, for whoever carries it over.
struct MXFZELM_EXPORT Chunk {
    std::string id;        ///< four characters
    std::uint64_t offset;  ///< of its content, in the source
    std::uint64_t size;    ///< of its content, in bytes
    DataIO::Slice content; ///< empty when it was too large, see `WaveReader::mostKept`
};

/// What the content of a `bext` chunk says; absent when it is too short for one.
MXFZELM_EXPORT std::optional<BroadcastExtension> readBroadcastExtension(const unsigned char* content,
                                                                        std::size_t size);

class MXFZELM_EXPORT WaveReader : public Platform::Allocated {
public:
    /// Chunks are kept in memory as long as all together have no more bytes than this: room for the
    /// documents (axml, iXML) and pictures of real files.
    static constexpr std::uint64_t mostKept = std::uint64_t{64} << 20;

    /// More chunks no file has.
    static constexpr std::size_t mostChunks = 1000;

    /// Reads up to the samples. Throws Exceptions::InvalidFormat, with the offset, for what is no Wave file,
    /// samples other than PCM of 1 to 4 bytes, a format that contradicts itself, and samples before their
    /// format, which a stream cannot give.
    explicit WaveReader(Templates::SharedPtr<DataIO::SliceSource> source);
    ~WaveReader();

    /// Whether a file begins as a Wave file does; 12 bytes tell.
    static bool isWave(const unsigned char* bytes, std::size_t size);

    WaveFormat const& format() const { return format_; }

    /// Absent in files that are no Broadcast Wave.
    std::optional<BroadcastExtension> const& broadcast() const { return broadcast_; }

    /// Bytes of samples as the file says; absent when it was not closed, and all that follows is samples. The
    /// file may end before.
    std::optional<std::uint64_t> dataSize() const { return dataSize_; }

    /// Whole instants that the file says it has; absent as above.
    std::optional<std::uint64_t> sampleCount() const;

    /// The samples, from the first one on. They move the source of the reader, and live without the reader.
    Templates::SharedPtr<DataIO::SliceSource> samples() const { return samples_; }

    /// Those before the samples; `readRest` adds those behind.
    std::vector<Chunk> const& chunks() const { return chunks_; }

    /// To be called when the samples have been read: passes over what is left of them and reads the chunks
    /// behind, as far as they are whole.
    void readRest();

private:
    struct Head {
        std::string id;
        std::uint64_t size;
        std::uint64_t offset; // of the content
    };

    std::optional<Head> nextHead();
    void takeRiff();
    void takeChunk(Head const& head);
    void takeLargeSizes(DataIO::Slice const& content);
    void takeFormat(Head const& head, DataIO::Slice const& content);
    void takeData(Head const& head);
    std::uint64_t sizeOfData(Head const& head) const;
    std::uint64_t largeSizeOf(Head const& head) const;
    DataIO::Slice content(Head const& head);

    Templates::SharedPtr<DataIO::SliceSource> source_;
    std::uint64_t start_;
    std::uint64_t riffSize_ = 0;
    bool isLarge_ = false; // RF64, BW64
    std::optional<std::uint64_t> largeDataSize_;
    std::vector<std::pair<std::string, std::uint64_t>> largeSizes_; // of other chunks
    WaveFormat format_;
    std::optional<BroadcastExtension> broadcast_;
    std::optional<std::uint64_t> dataSize_;
    std::uint64_t dataOffset_ = 0;
    std::uint64_t kept_ = 0; // bytes of chunks
    Templates::SharedPtr<DataIO::SliceSource> samples_;
    std::vector<Chunk> chunks_;
};

} // namespace MXF::Zelm::Essence::Wave
