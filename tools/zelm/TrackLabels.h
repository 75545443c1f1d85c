/// Names that users give the tracks of a new file.
#pragma once

#include <MXF/Zelm/Metadata/PartitionMetadata.h>

#include <map>
#include <string>
#include <vector>

namespace Zelm {

/// Names essence tracks of the first material package, and those tracks of file packages that they play.
/// `labels` by what `zelm extract` calls the tracks: v1, a1, a2, d1. Returns those of tracks that are not
/// there.
std::vector<std::string> labelTracks(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                                     std::map<std::string, std::string> const& labels);

} // namespace Zelm
