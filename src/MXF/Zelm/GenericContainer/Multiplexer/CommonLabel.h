/// The essence container label of several streams.
#pragma once

#include "MXF/Zelm/GenericContainer/Multiplexer/AnalyzerEntry.h"
#include "MXF/Zelm/Templates/Containers.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

/// The one that all have, system items aside; that of multiple wrappings when there are several, all zero
/// when there is none.
Types::UniversalLabel commonLabel(Templates::vector<AnalyzerEntry> const& entries);

} // namespace MXF::Zelm::GenericContainer::Multiplexer
