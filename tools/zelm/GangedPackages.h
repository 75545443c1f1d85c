/// One file package for all essence tracks of a file (pattern 1a), or several that are played at once (1b).
#pragma once

#include "ContainerCopy.h"

#include <set>

namespace Zelm {

/// Stream IDs of a file. Gives free ones.
class StreamIDs {
public:
    void take(std::uint32_t sid) { taken_.insert(sid); }
    bool has(std::uint32_t sid) const { return taken_.contains(sid); }

    /// The smallest that is free, which is taken then.
    std::uint32_t next();

private:
    std::set<std::uint32_t> taken_ = {0};
};

/// Gives each essence track a file package and a container of its own. The first track of a package stays in
/// it, with the system item. Returns whether there was anything to do. Throws Exceptions::InvalidValue for
/// tracks without a descriptor of their own.
bool splitPackages(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies,
                   StreamIDs& streams);

/// Puts the essence tracks of all file packages into the leading one and its container. Returns whether there
/// was anything to do. Throws Exceptions::InvalidValue, saying why, when the packages cannot be one.
bool mergePackages(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies);

} // namespace Zelm
