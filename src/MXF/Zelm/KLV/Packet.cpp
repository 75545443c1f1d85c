#include "MXF/Zelm/KLV/Packet.h"

namespace MXF::Zelm::KLV {

Packet::Packet(Key const& key, unsigned char berLength, std::uint64_t length, DataIO::DataSource& source,
               std::uint64_t keyAbsoluteOffset)
    : key_(key), berLength_(berLength), keyAbsoluteOffset_(keyAbsoluteOffset), value_(source, length) {}

} // namespace MXF::Zelm::KLV
