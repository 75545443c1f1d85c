/// Questions about tracks.
#pragma once

#include "MXF/Zelm/Metadata/Structural/DataDefinitions.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"
#include "MXF/Zelm/Templates/Rational.h"

namespace MXF::Zelm::Metadata::Structural {

/// What the track holds, by its sequence or else by the first component that tells; null when nothing does.
/// The value lives in the set.
MXFZELM_EXPORT Types::UniversalLabel const* dataDefinitionOf(Track const& track);

/// Whether a track holds essence, or timecode. False for null, and when the track does not tell.
MXFZELM_EXPORT bool isEssenceTrack(Track const* track);
MXFZELM_EXPORT bool isTimeCodeTrack(Track const* track);

/// Appends the package's timeline tracks, or those of them that hold essence, in their order.
MXFZELM_EXPORT void getAllTimelineTracks(GenericPackage const& package,
                                         Templates::list<TimelineTrack*>& tracks);
MXFZELM_EXPORT void getAllEssenceTracks(GenericPackage const& package,
                                        Templates::list<TimelineTrack*>& tracks);

/// The package's first timecode track, null when there is none.
MXFZELM_EXPORT TimelineTrack* getTimecodeTrack(GenericPackage const& package);

/// How long the track is, in edit units: what its sequence says, or the sum of the components' durations
/// where that is not known; -1 when neither is.
MXFZELM_EXPORT Types::Length durationOf(Track const& track);

/// Where a track starts and ends on the package's time axis, in seconds, exact and in lowest terms: its
/// origin stands before 0. False, with `start` and `end` as they were, when edit rate or duration are not
/// known or the result does not fit in 64 bits.
MXFZELM_EXPORT bool trackBoundsInSeconds(TimelineTrack const* track, Templates::Rational<std::int64_t>& start,
                                         Templates::Rational<std::int64_t>& end);

/// Whether the timecode of a timecode track drops numbers. Throws Exceptions::InvalidStructure with "Timecode
/// track has no sequence", "Timecode track has no timecode components", "Timecode component has invalid type"
/// and "Timecode component does not have the 'dropFrame' element"; Exceptions::InvalidValue for null.
MXFZELM_EXPORT bool isDropFrame(TimelineTrack const* track);

/// Makes the reference with this label point at `target`, or removes it when `target` is null. Throws as
/// MetadataSet::reference and MetadataSet::removeElement do, Exceptions::InvalidValue when `set` is null.
MXFZELM_EXPORT void setReferencedMetadataSet(MetadataSet* set, Types::UniversalLabel const& label,
                                             MetadataSet const* target);

} // namespace MXF::Zelm::Metadata::Structural
