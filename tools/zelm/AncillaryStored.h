/// Packets of ANC between what `zelm ancillary --dump` tells of them and what is stored in a file.
#pragma once

#include <MXF/Zelm/Essence/Ancillary/Packet.h>
#include <MXF/Zelm/GenericContainer/S436M/StoredPacket.h>

#include <optional>

namespace Zelm {

/// A packet with the checksum that is given, or none. The coding is a known one of ANC. Throws
/// Exceptions::InvalidLength for more user data than a packet holds.
MXF::Zelm::GenericContainer::S436M::StoredPacket
storeWithChecksum(MXF::Zelm::Essence::Ancillary::Packet const& packet,
                  MXF::Zelm::GenericContainer::S436M::SampleCoding coding,
                  std::optional<MXF::Zelm::Essence::Ancillary::Word> checksum);

/// Whether the fields of a packet, stored anew, give the samples that it was read from.
bool isTold(MXF::Zelm::GenericContainer::S436M::StoredPacket const& stored,
            MXF::Zelm::Essence::Ancillary::ReadPacket const& read);

} // namespace Zelm
