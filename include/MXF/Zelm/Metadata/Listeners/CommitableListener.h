/// A listener that gathers changes until it is told to do something about them.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadataListener.h"

namespace MXF::Zelm::Metadata::Listeners {

class MXFZELM_EXPORT CommitableListener : public PartitionMetadataListener {
public:
    ~CommitableListener() override;

    /// Deals with what changed since the last time. The host calls this, as a rule before it writes the
    /// metadata.
    virtual void commit() = 0;
};

} // namespace MXF::Zelm::Metadata::Listeners
