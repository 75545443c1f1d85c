#include "MXF/Zelm/Essence/MPEG/GroupHeader.h"

namespace MXF::Zelm::Essence::MPEG {

GroupHeader GroupHeader::read(DataIO::BitSliceReader& bits) {
    GroupHeader read;
    read.dropFrame = bits.readFlag();
    read.hours = static_cast<std::uint8_t>(bits.read(5));
    read.minutes = static_cast<std::uint8_t>(bits.read(6));
    bits.skip(1); // marker
    read.seconds = static_cast<std::uint8_t>(bits.read(6));
    read.pictures = static_cast<std::uint8_t>(bits.read(6));
    read.closed = bits.readFlag();
    read.brokenLink = bits.readFlag();
    return read;
}

} // namespace MXF::Zelm::Essence::MPEG
