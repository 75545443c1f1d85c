/// All partitions of a file.
#pragma once

#include "MXF/Zelm/MXFIO/Reader2.h"

namespace MXF::Zelm::MXFIO {

/// A partition and where it ends.
struct PartitionSpan {
    Partition* partition; // owned by the reader
    std::uint64_t end;    // where the next partition begins; of the last, the random index pack or the end
};

/// The partitions in file order: by the random index pack, else by the chain of previous partitions from the
/// footer, else by a walk over the packets of the file. What does not agree with the packs is not used, and
/// the walk ends where the file cannot be read on.
Templates::vector<PartitionSpan> partitionsOf(Reader2& reader);

} // namespace MXF::Zelm::MXFIO
