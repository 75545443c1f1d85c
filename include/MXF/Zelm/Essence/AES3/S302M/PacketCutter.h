/// Takes SMPTE 302M packets one by one as they are, headers included.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/AES3/AES3Info.h"
#include "MXF/Zelm/Essence/AES3/S302M/Header.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <optional>

namespace MXF::Zelm::Essence::AES3::S302M {

struct MXFZELM_EXPORT Packet {
    Header header;
    DataIO::Chain bytes;        ///< header and payload
    std::uint32_t instants = 0; ///< samples of each channel
};

class MXFZELM_EXPORT PacketCutter : public Platform::Allocated {
public:
    /// Reads `source` from where it stands.
    explicit PacketCutter(Templates::SharedPtr<DataIO::SliceSource> source);

    /// Bytes of the packet whose header is the 4 bytes at `header`, header included; 0 when no packet begins
    /// so, nor one without samples.
    static std::size_t sizeOf(const unsigned char* header);

    /// Absent at the end. All packets have the channels and bits of the first. Throws
    /// Exceptions::InvalidStructure for what is no packet or one of another format, InvalidLength for one
    /// that is cut off, with their offset; the stream cannot be read further then.
    std::optional<Packet> next();

    /// Channels, bits and rate of the packets; zeros before the first one was read.
    AES3Info const& info() const { return info_; }

private:
    void takeHeader(Packet& packet, std::uint64_t offset);

    Templates::SharedPtr<DataIO::SliceSource> source_;
    AES3Info info_;
};

} // namespace MXF::Zelm::Essence::AES3::S302M
