/// Where readers of essence get the partitions of one essence container from.
#pragma once

#include "MXF/Zelm/MXFIO/Partition.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT PartitionProvider : public Platform::Allocated {
public:
    virtual ~PartitionProvider();

    /// The partition that holds byte `streamOffset` of the essence container, null when none is found. Owned
    /// by the reader.
    virtual Partition* partition(std::uint64_t streamOffset) = 0;
};

} // namespace MXF::Zelm::MXFIO
