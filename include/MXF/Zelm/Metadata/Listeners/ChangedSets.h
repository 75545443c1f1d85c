/// Which sets of a partition changed, for listeners that gather changes.
#pragma once

#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"

namespace MXF::Zelm::Metadata::Listeners {

/// A listener passes on what it is told. A change that is undone because another listener refused it does not
/// count.
class MXFZELM_EXPORT ChangedSets {
public:
    using Counts = Templates::map<MetadataSet*, std::size_t>; ///< how often each set changed

    ChangedSets();
    ~ChangedSets();

    void created(MetadataSet& set);
    void removed(MetadataSet& set);

    /// An element of the set was added, changed or removed.
    void changed(MetadataSet& set);

    /// True when no set changed, was created or removed.
    bool empty() const { return counts_.empty() && removals_ == 0; }
    void clear();

    /// The sets that changed or were created and are still there.
    Counts const& counts() const { return counts_; }

    /// Adds what changed according to `other`, which is cleared.
    void take(ChangedSets& other);

    /// The set is dealt with.
    void drop(MetadataSet& set) { counts_.erase(&set); }

private:
    Counts counts_;
    std::size_t removals_ = 0;
    Counts::node_type lastRemoved_; // comes back when the removal is refused
};

} // namespace MXF::Zelm::Metadata::Listeners
