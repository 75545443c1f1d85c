/// The operational pattern that header metadata has, whatever its label says.
#pragma once

#include "LayoutPresets.h"

#include <MXF/Zelm/Metadata/PartitionMetadata.h>

namespace Zelm {

/// The label for a file with this metadata: `wanted`, null for the pattern that it is labelled with as far as
/// that is true. Qualifiers tell the truth; `isInterleaved` says that several containers go on in turns.
/// Throws Exceptions::InvalidValue when the metadata is not of the wanted pattern.
MXF::Zelm::Types::UniversalLabel patternLabel(MXF::Zelm::Metadata::PartitionMetadata const& metadata,
                                              PatternRow const* wanted, bool isInterleaved);

} // namespace Zelm
