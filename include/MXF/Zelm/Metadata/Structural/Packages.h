/// Questions about the file and its packages as a whole. Nothing here follows more references than the
/// structure has levels, so that circular ones do no harm.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Utils/TimeCode.h"

namespace MXF::Zelm::Metadata::Structural {

class FileDescriptor;
class Preface;
class TimelineTrack;

/// The one Preface. Throws as PartitionMetadata::preface does, and Exceptions::InvalidMetadataSet when it was
/// made as a plain set, `initialize` not having been called before.
MXFZELM_EXPORT Preface& findPreface(PartitionMetadata const& metadata);

/// The Preface's operational pattern. Throws as `findPreface`, and Exceptions::InvalidStructure when the
/// Preface has none.
MXFZELM_EXPORT Types::UniversalLabel operationalPattern(PartitionMetadata const& metadata);

/// A copy of the Preface's essence container labels, empty when it has none. Throws as `findPreface`.
MXFZELM_EXPORT Templates::auto_ptr<Types::Batch> essenceContainers(PartitionMetadata const& metadata);

/// Whether essence lies outside the file: of a file package, or of a package that a material package plays
/// and that is not in the file at all. Throws as below.
MXFZELM_EXPORT bool hasExternalEssence(PartitionMetadata const& metadata);

/// Whether the essence of a package lies outside the file: it is a file package, and no EssenceContainerData
/// set tells where its essence is. Throws as `findPreface`, and Exceptions::InvalidStructure with "Preface
/// has no ContentStorage" and "Package has no packageUID".
MXFZELM_EXPORT bool isExternalEssence(PartitionMetadata const& metadata, SourcePackage const& package);

/// The file descriptor for a track of the package: the one that is linked to it, or the package's only one
/// when that is linked to no track and the track holds essence. Null when there is none.
MXFZELM_EXPORT FileDescriptor* fileDescriptorForTrack(SourcePackage const& package, unsigned int trackID);

/// The essence container label of that descriptor; null when it is not there, or there is no descriptor.
MXFZELM_EXPORT Types::UniversalLabel const* essenceULOfTrack(SourcePackage const& package,
                                                             TimelineTrack const* track);

/// The duration of the longest essence track, or of the longest timeline track when there is no essence; 0/0
/// when no duration is known.
MXFZELM_EXPORT Templates::Rational<std::int64_t> packageDurationInSeconds(GenericPackage const& package);

/// The same, counted in frames of the package's timecode, else of its longest track; undefined when it is not
/// known, or what counts are no frames but samples (above 120 in a second). Durations from 24 hours on wrap.
/// Throws as `startTimecode` does.
MXFZELM_EXPORT Utils::TimeCode packageDurationAsTimeCode(GenericPackage const& package);

/// The first timecode of the package's timecode track; undefined when there is no such track, or its
/// component lacks the start or has no base. Throws Exceptions::InvalidStructure with "Timecode track has no
/// sequence", "Timecode track has no timecode components", "Timecode component has invalid type" and
/// "Timecode component does not have the 'dropFrame' element".
MXFZELM_EXPORT Utils::TimeCode startTimecode(GenericPackage const& package);

} // namespace MXF::Zelm::Metadata::Structural
