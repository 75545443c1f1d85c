/// What `zelm dump` shows, and its two forms.
#pragma once

#include <MXF/Zelm/MXFIO/Partition.h>

#include <string>
#include <vector>

namespace Zelm {

struct DumpReport {
    std::string file;
    MXF::Zelm::MXFIO::Partition* partition; ///< null when none could be found
    MXF::Zelm::MXFIO::Partition::MetadataPtr
        metadata; ///< empty when the partition has none, or it cannot be read
    std::vector<MXF::Zelm::Metadata::Fault> faults;
};

/// The tree from the Preface down, then the sets that it does not reach, then the dark sets.
void printDumpText(DumpReport const& report);

/// One object with an array of all sets.
void printDumpJson(DumpReport const& report);

/// "header partition", "closed and complete": kind and status of a partition in words.
std::string partitionKindText(MXF::Zelm::MXFIO::Partition const& partition);
std::string partitionStatusText(MXF::Zelm::MXFIO::Partition const& partition);

} // namespace Zelm
