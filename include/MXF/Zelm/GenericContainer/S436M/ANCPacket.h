/// Ancillary data packets (SMPTE 291M) in elements of SMPTE 436M.
#pragma once

#include "MXF/Zelm/Essence/Ancillary/Packet.h"
#include "MXF/Zelm/GenericContainer/S436M/StoredPacket.h"

namespace MXF::Zelm::GenericContainer::S436M {

/// Reads the packet in the payload. Of 10 bits the checksum is stored behind the user data, of 8 bits it is
/// not. (The standard's text was not at hand; where a checksum is missing or is there, contrary to this, it
/// is read all the same.) Throws nothing but std::bad_alloc.
MXFZELM_EXPORT Essence::Ancillary::ReadPacket readANC(StoredPacket const& stored);

/// Stores a packet as above. Throws Exceptions::InvalidLength for more user data than a packet holds,
/// Exceptions::InvalidValue for a coding that ANC does not have.
MXFZELM_EXPORT StoredPacket storeANC(Essence::Ancillary::Packet const& packet, std::uint16_t lineNumber,
                                     WrappingType wrapping, SampleCoding coding = SampleCoding::Luma8);

} // namespace MXF::Zelm::GenericContainer::S436M
