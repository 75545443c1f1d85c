/// Changes of whole parts of header metadata: what a set owns, packages under another name, tracks that are
/// left out or cut to a part of their time. All work on metadata that was read from a file, and leave what
/// they do not understand as it is.
#pragma once

#include <MXF/Zelm/Metadata/PartitionMetadata.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Sequence.h>
#include <MXF/Zelm/Metadata/Structural/Track.h>
#include <MXF/Zelm/Templates/Rational.h>
#include <MXF/Zelm/Types/UMID.h>

#include <functional>
#include <map>

namespace Zelm {

using Seconds = MXF::Zelm::Templates::Rational<std::int64_t>;

/// Calls `use` with a set and all that it owns, each once.
void forOwned(MXF::Zelm::Metadata::PartitionMetadata const& metadata, MXF::Zelm::Metadata::MetadataSet& set,
              std::function<void(MXF::Zelm::Metadata::MetadataSet&)> const& use);

/// Removes a set to which nothing refers any more, and all that only it owns.
void removeWithOwned(MXF::Zelm::Metadata::PartitionMetadata& metadata, MXF::Zelm::Metadata::MetadataSet& set);

/// The package with a UMID, null when there is none.
MXF::Zelm::Metadata::Structural::GenericPackage*
packageOf(MXF::Zelm::Metadata::PartitionMetadata const& metadata, MXF::Zelm::Types::UMID32 const& uid);

/// Gives a package another UMID, wherever it is named.
void renamePackage(MXF::Zelm::Metadata::PartitionMetadata& metadata, MXF::Zelm::Types::UMID32 const& from,
                   MXF::Zelm::Types::UMID32 const& to);

/// Removes a track of a file package with its descriptor, and the tracks of other packages that play nothing
/// else. Where one plays others too, nothing is played in its time.
void removeTrack(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                 MXF::Zelm::Metadata::Structural::SourcePackage& package, std::uint32_t trackID);

/// Removes a package, what tells where its essence is, and all that only it owns.
void removePackage(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                   MXF::Zelm::Metadata::Structural::SourcePackage& package);

/// A component of a sequence, and what of it lies within a time: from `begin` to before `end` of its own
/// length.
struct ComponentPart {
    MXF::Zelm::Metadata::MetadataSet* component;
    std::int64_t begin, end;
};

/// All components, with the edit units of the sequence from `from` to before `to`. One whose length is not
/// known has all that is left.
std::vector<ComponentPart> partsWithin(MXF::Zelm::Metadata::Structural::Sequence const& sequence,
                                       std::int64_t from, std::int64_t to);

/// By its UMID, the moment at which a package begins that was cut.
using PackageStarts = std::map<MXF::Zelm::Types::UMID32, Seconds>;

/// Cuts the timeline and event tracks of a package to the time from `from` to before `to`: components get
/// shorter or go, timecode and clips begin later. Clips of packages that were cut too count from their new
/// start.
void cutTracks(MXF::Zelm::Metadata::PartitionMetadata& metadata,
               MXF::Zelm::Metadata::Structural::GenericPackage& package, Seconds const& from,
               Seconds const& to, PackageStarts const& starts);

/// The length of a component or sequence, -1 when it is not known.
std::int64_t lengthOf(MXF::Zelm::Metadata::MetadataSet const& set);

/// For a set that may have a length.
void setLength(MXF::Zelm::Metadata::MetadataSet& set, std::int64_t length);

/// Sets how long a track is that has one component, or whose components do not say.
void setLength(MXF::Zelm::Metadata::Structural::Track& track, std::int64_t length);

/// Makes the length of a track one that is not known yet: its last component goes on.
void forgetLength(MXF::Zelm::Metadata::Structural::Track& track);

/// Gives a track whose length is not known or greater this length.
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
