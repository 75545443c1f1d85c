/// What the identifiers of ancillary data packets stand for (SMPTE 291M and the register of its identifiers).
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <string_view>

namespace MXF::Zelm::Essence::Ancillary {

/// A packet's DID and SDID in words, with the standard that defines it: "captions, CEA-708 (SMPTE 334M)". Of
/// type 1 (DID from 80) the DID alone counts. Empty for packets that are not known.
MXFZELM_EXPORT std::string_view identifierName(unsigned char did, unsigned char sdid);

} // namespace MXF::Zelm::Essence::Ancillary
