/// What `zelm frames` lists of a file's containers.
#pragma once

#include "FileInfo.h"
#include "Frames.h"
#include "TrackChoice.h"

#include <MXF/Zelm/MXFIO/EssenceReader.h>

namespace Zelm {

/// The containers, whole (with a null track), or the tracks that `track` names. Pointers into `containers`.
/// Throws Exceptions::InvalidValue when there is no such track.
std::vector<FoundTrack> chooseFrames(std::vector<EssenceContainer> const& containers,
                                     std::string const& track);

/// Options that read no values: nobody looks at them. `track` may be null.
MXF::Zelm::MXFIO::EssenceOptions withoutValues(MXF::Zelm::MXFIO::EssenceTrack const* track);

/// The most edit units that a track of the container says it has; 0 when none says it.
std::int64_t declaredUnits(EssenceContainer const& container);

/// `isOnly`: there is no other.
FrameSection sectionOf(EssenceContainer const& container, bool isOnly);

/// What a file's metadata says of its packages; empty without metadata.
FileInfo packagesOf(MXF::Zelm::MXFIO::Partition::MetadataPtr const& metadata);

} // namespace Zelm
