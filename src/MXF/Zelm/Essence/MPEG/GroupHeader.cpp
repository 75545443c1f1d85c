#include "MXF/Zelm/Essence/MPEG/GroupHeader.h"

#include "MXF/Zelm/Essence/MPEG/BitFields.h"

namespace MXF::Zelm::Essence::MPEG {

GroupHeader GroupHeader::read(DataIO::BitSliceReader& bits) {
    GroupHeader read;
    BitFields fields(bits, 27);
    read.dropFrame = fields.takeFlag();
    read.hours = fields.take<std::uint8_t>(5);
    read.minutes = fields.take<std::uint8_t>(6);
    fields.pass(1); // marker
    read.seconds = fields.take<std::uint8_t>(6);
    read.pictures = fields.take<std::uint8_t>(6);
    read.closed = fields.takeFlag();
    read.brokenLink = fields.takeFlag();
    return read;
}

} // namespace MXF::Zelm::Essence::MPEG
