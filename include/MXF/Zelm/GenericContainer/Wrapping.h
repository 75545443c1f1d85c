/// How essence is cut into KLV packets, by the label of its container.
#pragma once

#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::GenericContainer {

enum class Wrapping : unsigned char {
    Unknown,
    Frame, ///< an element for each edit unit; also by lines, by fields and in custom steps
    Clip   ///< one element for the whole essence
};

/// What the label of an essence container says (SMPTE 379M and the documents of the mappings).
MXFZELM_EXPORT Wrapping wrappingOf(KLV::Key const& essenceContainer);

} // namespace MXF::Zelm::GenericContainer
