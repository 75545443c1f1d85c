/// Writes an MPEG transport stream (ISO/IEC 13818-1) of one program with one stream, such as SMPTE 302M
/// sound.
///
///     PAT | PMT | PES packet, its first transport packet with the clock (PCR) | PAT | PMT | PES packet | …
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/DataIO/Slice.h"

#include <cstdint>
#include <vector>

namespace MXF::Zelm::Essence::MPEG {

class MXFZELM_EXPORT TransportWriter : public Platform::Allocated {
public:
    struct Options {
        /// By default private data in PES packets.
        std::uint8_t streamType = 0x06, streamID = 0xBD;

        /// Four characters of a registration descriptor, the first in the highest byte; by default "BSSD",
        /// SMPTE 302M. 0 for none.
        std::uint32_t registration = 0x42535344;
    };

    /// `sink` is not owned and must outlive the writer.
    TransportWriter(DataIO::DataSink& sink, Options const& options);
    explicit TransportWriter(DataIO::DataSink& sink);
    ~TransportWriter();

    /// Writes a PES packet that is to be presented `time` after the first one, in units of 1/90000 s, with
    /// the tables before it. Throws Exceptions::InvalidLength for more than 65527 bytes.
    void write(DataIO::Slice const& payload, std::uint64_t time);

private:
    struct Stream {
        std::uint16_t pid;
        std::uint8_t counter = 0;
    };

    void writeSection(Stream& stream, std::vector<unsigned char> section);
    void writeUnit(Stream& stream, std::vector<unsigned char> const& unit,
                   std::vector<unsigned char> const& clock);
    std::vector<unsigned char> programMap() const;

    DataIO::DataSink& sink_;
    Options options_;
    Stream tables_, map_, essence_;
};

} // namespace MXF::Zelm::Essence::MPEG
