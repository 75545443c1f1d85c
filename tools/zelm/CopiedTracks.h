/// Which tracks go from one file into another: those chosen by name.
#pragma once

#include "ContainerCopy.h"

#include <string>

namespace Zelm {

/// Leaves out of copies and metadata what is not in `tracks`, if any are named, or is in `without`. Returns
/// whether that is anything. Throws Exceptions::InvalidValue for a name that no track has, and when none is
/// left.
bool keepChosenTracks(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies,
                      std::vector<std::string> const& tracks, std::vector<std::string> const& without);

/// Takes the copy's package out of the metadata, and what plays nothing else.
void leaveOut(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopy const& copy);

/// Puts what the copy leaves out, and how many elements of a kind are left, into keys and track numbers.
void updateKeys(ContainerCopy& copy);

} // namespace Zelm
