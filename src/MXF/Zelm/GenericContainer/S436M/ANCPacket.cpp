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

/// Where words of 10 bits stand in the payload shows in the parity of the first three.
ReadPacket readANC(StoredPacket const& stored) {
    auto const precision = precisionOf(stored.coding);
    auto read = readPacket(stored.samples(), precision);
    if (precision == Precision::Bits10 && (read.faults & ReadPacket::WrongParity) != 0)
        if (auto other = readPacket(stored.samplesAtLowerEnd(), precision);
            (other.faults & ReadPacket::WrongParity) == 0)
            return other;
    return read;
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
