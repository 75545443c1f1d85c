#include "MXF/Zelm/MXFIO/IndexTableProvider.h"
#include "MXF/Zelm/MXFIO/PartitionProvider.h"

namespace MXF::Zelm::MXFIO {

IndexTableProvider::~IndexTableProvider() = default;

PartitionProvider::~PartitionProvider() = default;

} // namespace MXF::Zelm::MXFIO
