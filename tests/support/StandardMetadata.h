/// Header metadata over the standard dictionary, its sets being made as the structural classes.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"

namespace MXF::Zelm::Test {

/// Empty header metadata. The dictionary is shared by all; no test adds to it.
std::unique_ptr<Metadata::PartitionMetadata> standardMetadata();

} // namespace MXF::Zelm::Test
