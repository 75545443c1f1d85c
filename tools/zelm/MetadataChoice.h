/// Which partition's header metadata a command shows.
#pragma once

#include "Input.h"

#include <string>
#include <vector>

namespace Zelm {

/// The chosen partition, and what went wrong on the way to a better one.
struct MetadataChoice {
    MXF::Zelm::MXFIO::Partition* partition = nullptr;
    std::vector<MXF::Zelm::Metadata::Fault> faults;
};

/// The partition that the reader's rule chooses: the header when it is closed, else the last with metadata.
/// Where the rule meets a fault (a footer that is cut off), the header partition serves. With `quick` an
/// unfinished file of more than some megabytes is not searched for its last partition: its header serves.
/// Throws InvalidStructure when there is no header partition.
MetadataChoice chooseFinal(Input& input, bool quick);

/// The partition that `--partition` names: a number in file order from 0, "header", "footer", or "final" for
/// the reader's rule. Throws InvalidValue when there is no such partition.
MetadataChoice choosePartition(Input& input, std::string const& name);

/// The header partition. Throws InvalidStructure, saying what was found instead, when there is none.
MXF::Zelm::MXFIO::Partition& requireHeader(Input& input);

} // namespace Zelm
