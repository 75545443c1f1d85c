/// Writes a Wave file: RIFF, and RF64 (EBU Tech 3306) when it is larger than RIFF can say.
///
///     RIFF | RF64    size, "WAVE"
///     JUNK | ds64    room for the 64-bit sizes, and the sizes when they are needed
///     bext           where the sound comes from, if that is told
///     fmt            format of the samples
///     …              chunks that are carried over, if there are any
///     data           the samples, and a byte to an even number
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/Essence/Wave/WaveFormat.h"

#include <optional>
#include <vector>

namespace MXF::Zelm::Essence::Wave {

class MXFZELM_EXPORT WaveWriter : public Platform::Allocated {
public:
    /// Writes the head of the file to `sink`, which is not owned and must outlive the writer. `dataBytes` are
    /// the bytes of all samples if they are known. Otherwise the sizes say "not known" (FFFFFFFF) until
    /// `finish` puts them right, which takes a sink that can seek. `chunks` stand before the samples. Throws
    /// Exceptions::InvalidValue for a format without channels, or of samples of other than 1 to 4 bytes.
    WaveWriter(DataIO::DataSink& sink, WaveFormat const& format,
               std::optional<BroadcastExtension> const& broadcast = std::nullopt,
               std::optional<std::uint64_t> dataBytes = std::nullopt,
               std::vector<KeptChunk> const& chunks = {});
    WaveWriter(WaveWriter const&) = delete;
    WaveWriter& operator=(WaveWriter const&) = delete;
    ~WaveWriter();

    /// Writes samples; they may be cut anywhere.
    void write(DataIO::Chain const& samples);
    void write(const unsigned char* samples, std::uint64_t size);

    /// Bytes of samples written so far.
    std::uint64_t dataBytes() const { return dataBytes_; }

    /// Ends the file; nothing may be written afterwards. Throws Exceptions::InvalidLength when the sink
    /// cannot seek and the samples are not as many as was said.
    void finish();

private:
    std::vector<unsigned char> head(std::optional<std::uint64_t> dataBytes) const;

    DataIO::DataSink& sink_;
    DataIO::RandomAccessible* seekable_; // the sink, if it can
    WaveFormat format_;
    std::vector<unsigned char> broadcast_; // the chunk, empty for none
    std::vector<unsigned char> chunks_;    // carried over, with their heads
    std::uint64_t start_;
    std::optional<std::uint64_t> announced_;
    std::uint64_t dataBytes_ = 0;
};

} // namespace MXF::Zelm::Essence::Wave
