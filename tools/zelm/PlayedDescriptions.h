/// The descriptive tracks of a material package that is played behind another one.
#pragma once

#include "MetadataParts.h"

#include <MXF/Zelm/Metadata/Structural/Packages.h>

namespace Zelm {

/// The time in which a package is played, within the one that plays it.
struct PlayedTime {
    Seconds start = {0, 1};
    Seconds length = {0, 1};
};

/// By the IDs of its essence tracks, those of the tracks that play them.
using TrackIDs = std::map<std::uint32_t, std::uint32_t>;

/// Whether a track holds descriptive metadata.
bool isDescriptive(MXF::Zelm::Metadata::Structural::Track const& track);

/// Lets a package have a descriptive track, a copy from another package, so that what it says holds for the
/// time in which that one is played: segments and events begin later, a static track becomes one with time.
/// A track whose time is not counted is left as it is. Returns the track of the package.
MXF::Zelm::Metadata::Structural::Track&
describePlayed(MXF::Zelm::Metadata::PartitionMetadata& metadata,
               MXF::Zelm::Metadata::Structural::MaterialPackage& package,
               MXF::Zelm::Metadata::Structural::Track& copy, PlayedTime const& time, TrackIDs const& tracks);

} // namespace Zelm
