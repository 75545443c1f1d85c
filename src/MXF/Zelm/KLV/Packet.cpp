#include "MXF/Zelm/KLV/Packet.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::KLV {

Packet::Packet(Key const& key, unsigned char berLength, std::uint64_t length, DataIO::DataSource& source,
               std::uint64_t keyAbsoluteOffset)
    : key_(key), berLength_(berLength), keyAbsoluteOffset_(keyAbsoluteOffset), value_(source, length) {}

std::uint64_t Packet::klvLength() const {
    std::uint64_t const header = Key::size() + berLength_;
    std::uint64_t const most = std::numeric_limits<std::uint64_t>::max() - header;
    return std::min(length(), most) + header;
}

} // namespace MXF::Zelm::KLV
