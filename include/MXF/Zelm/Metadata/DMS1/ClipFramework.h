/// Clip frameworks (SMPTE 380M): what is known of the shooting of one clip.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Templates/Containers.h"

#include <string>

namespace MXF::Zelm::Metadata::Structural {
class GenericPackage;
class TimelineTrack;
} // namespace MXF::Zelm::Metadata::Structural

namespace MXF::Zelm::Metadata::DMS1 {

/// What a clip is. Files hold the text of clipKindToWString.
enum class ClipFrameworkClipKind : unsigned {
    Still = 1,
    Graphic = 2,
    MovingPictures = 3,
    Sound = 4,
    Other = 5
};

/// "Still", "Graphic", "Moving Pictures", "Sound", "Other"; "Unknown" for any other value.
MXFZELM_EXPORT Templates::wstring clipKindToWString(ClipFrameworkClipKind kind);

/// Describes a track of a package by a new clip framework, and returns it: `clipNumber` becomes its clip
/// number (at most 7 bits a character), and `kind` its clip kind. Further properties are set through the
/// labels of DMS1MetadataULs.
///
/// The framework hangs on a DM segment whose TrackIDs hold the track's ID, alone in the sequence of a new
/// static track of the same package: what is said of the clip holds for all of it, so that there is no
/// duration to keep in step. The track gets the lowest free track ID. The Preface's DMSchemes name the
/// scheme.
///
/// Throws, and leaves none of the new sets behind, Exceptions::InvalidValue for no track or a character of
/// more than 7 bits, Exceptions::InvalidStructure when the track has no ID or no package or there is not one
/// Preface, and what `PartitionMetadata::createMetadataSet` and listeners throw.
MXFZELM_EXPORT MetadataSet* createClipFramework(PartitionMetadata& metadata, Structural::TimelineTrack* track,
                                                std::string const& clipNumber, ClipFrameworkClipKind kind);

/// A new framework of any class (`DMS1MetadataKeys::productionFramework()`, …) without properties, placed as
/// `createClipFramework` does. `trackIDs` are the tracks of the package that it describes; none for all of
/// it. Throws as `createClipFramework` does.
MXFZELM_EXPORT MetadataSet* createFramework(PartitionMetadata& metadata, Structural::GenericPackage& package,
                                            KLV::Key const& key,
                                            Templates::vector<std::uint32_t> const& trackIDs);

} // namespace MXF::Zelm::Metadata::DMS1
