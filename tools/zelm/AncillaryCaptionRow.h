/// Caption distribution packets (SMPTE 334M) told by their content, as `zelm wrap` takes them.
#pragma once

#include "AncillaryRow.h"

namespace Zelm {

/// The packet that the object "captions" of `row` describes: `frame_rate`; and `sequence`, else the number of
/// the edit unit; `timecode`; `active`, else true; `data`, pairs of bytes with `type` and `valid`;
/// `services`. Throws BadAncillaryText.
MXF::Zelm::Essence::Ancillary::Packet captionPacketOf(AncillaryRow const& row);

} // namespace Zelm
