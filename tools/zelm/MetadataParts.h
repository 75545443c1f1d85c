/// Changes of whole parts of header metadata: what a set owns, packages under another name, tracks that are
/// left out or cut to a part of their time. All work on metadata that was read from a file, and leave what
/// they do not understand as it is.
#pragma once

#include <MXF/Zelm/Metadata/PartitionMetadata.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Track.h>
#include <MXF/Zelm/Templates/Rational.h>
#include <MXF/Zelm/Types/UMID.h>

namespace Zelm {

using Seconds = MXF::Zelm::Templates::Rational<std::int64_t>;

/// Removes a set to which nothing refers any more, and all that only it owns.
void removeWithOwned(MXF::Zelm::Metadata::PartitionMetadata& metadata, MXF::Zelm::Metadata::MetadataSet& set);

/// Gives a package another UMID, wherever it is named.
void renamePackage(MXF::Zelm::Metadata::PartitionMetadata& metadata, MXF::Zelm::Types::UMID32 const& from,
                   MXF::Zelm::Types::UMID32 const& to);

/// Removes a track of a file package with its descriptor, and the tracks of other packages that play nothing
/// else.
void removeTrack(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                 MXF::Zelm::Metadata::Structural::SourcePackage& package, std::uint32_t trackID);

/// Cuts the timeline and event tracks of a package to the time from `from` to before `to`: components get
/// shorter or go, timecode and the clips of other packages begin later. Clips of packages in `cut`, which are
/// cut likewise, begin where they did.
void cutTracks(MXF::Zelm::Metadata::PartitionMetadata& metadata,
               MXF::Zelm::Metadata::Structural::GenericPackage& package, Seconds const& from,
               Seconds const& to, std::vector<MXF::Zelm::Types::UMID32> const& cut);

/// Sets how long a track is that has one component, or whose components do not say.
void setLength(MXF::Zelm::Metadata::Structural::Track& track, std::int64_t length);

/// The same where the length is not known or greater. Several components are cut.
void limitLength(MXF::Zelm::Metadata::Structural::Track& track, std::int64_t length);

/// The edit rate of a timeline track, unknown when it has none.
MXF::Zelm::Templates::Rational<int> editRateOf(MXF::Zelm::Metadata::Structural::TimelineTrack const& track);

/// Adds an Identification of this program, and dates the Preface.
void addGeneration(MXF::Zelm::Metadata::PartitionMetadata& metadata);

/// The labels of all file descriptors.
std::vector<MXF::Zelm::Types::UniversalLabel>
containerLabels(MXF::Zelm::Metadata::PartitionMetadata const& metadata);

/// Takes labels out of the Preface's essence containers that descriptors had `before` and have no longer, and
/// adds those that they have now.
void updateContainerLabels(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                           std::vector<MXF::Zelm::Types::UniversalLabel> const& before);

} // namespace Zelm
