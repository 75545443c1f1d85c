/// How a file is laid out, told as what to write another one like it.
#pragma once

#include "Input.h"

#include <MXF/Zelm/MXFIO/CreatorSettings.h>
#include <MXF/Zelm/MXFIO/EssenceContainer.h>
#include <MXF/Zelm/MXFIO/GenericStreamPartitionWriter.h>

namespace Zelm {

/// Run-in, versions, alignment, reserve, the length of body partitions, where index tables stand. What
/// differs from partition to partition is taken from the first that has it.
MXF::Zelm::MXFIO::CreatorSettings layoutOf(Input& input,
                                           std::vector<MXF::Zelm::MXFIO::EssenceContainer> const& containers);

/// The generic streams of a file, to be read when they are written: from a source of their own.
std::vector<MXF::Zelm::MXFIO::GenericStream> genericStreamsOf(Input& input);

} // namespace Zelm
