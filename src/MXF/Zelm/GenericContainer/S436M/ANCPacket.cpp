#include "MXF/Zelm/GenericContainer/S436M/ANCPacket.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>

namespace MXF::Zelm::GenericContainer::S436M {

using namespace Essence::Ancillary;

namespace {

Precision precisionOf(SampleCoding coding) {
    return bitsOf(coding) == 10 ? Precision::Bits10 : Precision::Bits8;
}

} // namespace

ReadPacket readANC(StoredPacket const& stored) {
    return readPacket(stored.samples(), precisionOf(stored.coding));
}

StoredPacket storeANC(Packet const& packet, std::uint16_t lineNumber, WrappingType wrapping,
                      SampleCoding coding) {
    if (!isKnown(coding, ElementKind::ANC))
        throw Exceptions::InvalidValue("Ancillary data packets have no sample coding " +
                                       std::to_string(static_cast<unsigned>(coding)));
    StoredPacket stored{lineNumber, wrapping, coding};
    auto const precision = precisionOf(coding);
    stored.samples(wordsOf(packet, precision, precision == Precision::Bits10));
    return stored;
}

} // namespace MXF::Zelm::GenericContainer::S436M
