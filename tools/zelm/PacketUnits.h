/// Edit units of SMPTE 302M: packets one behind the other, as they are or each in a PES packet of private
/// stream 1 (ISO/IEC 13818-1).
#pragma once

#include <MXF/Zelm/DataIO/Chain.h>
#include <MXF/Zelm/Essence/AES3/S302M/Header.h>

#include <optional>

namespace Zelm {

/// True when a PES packet of private stream 1 begins with `data`. No SMPTE 302M packet begins like one.
bool beginsWithPES(MXF::Zelm::DataIO::Chain const& data);

/// The header of the first SMPTE 302M packet, of which `data` are some bytes of the edit unit; none when none
/// begins with them.
std::optional<MXF::Zelm::Essence::AES3::S302M::Header>
firstPacketHeader(MXF::Zelm::DataIO::Chain const& data);

/// The SMPTE 302M packets of an edit unit, without what they stand in. Throws Exceptions::InvalidFormat when
/// no PES packet in it has any.
MXF::Zelm::DataIO::Chain packetsOf(MXF::Zelm::DataIO::Chain unit);

} // namespace Zelm
