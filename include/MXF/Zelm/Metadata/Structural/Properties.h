/// The properties of the structural sets (SMPTE 377M), grouped by the class that brings them in. Include this
/// for labels: to ask an index of values, or to reach a property of a plain set.
#pragma once

#include "MXF/Zelm/Metadata/Structural/Property.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UUID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/Zelm/Types/Versions.h"

namespace MXF::Zelm::Metadata {

class MetadataSet;

namespace Structural {

class ContentStorage;
class EssenceContainerData;
class GenericDescriptor;
class GenericPackage;
class Identification;
class Sequence;
class StructuralComponent;
class Track;

} // namespace Structural
} // namespace MXF::Zelm::Metadata

namespace MXF::Zelm::Metadata::Structural::Properties {

using namespace KLV::Literals;

// InterchangeObject
inline constexpr Property<Types::UUID> instanceUID{"060E2B34.01010101.01011502.00000000"_key};
inline constexpr Property<Types::UUID> generationUID{"060E2B34.01010102.05200701.08000000"_key};
inline constexpr Property<Types::UniversalLabel> objectClass{"060E2B34.01010102.06010104.01010000"_key};
inline constexpr References<MetadataSet> applicationPlugInObjects{"060E2B34.0101010C.06010104.020E0000"_key};

// Identification
inline constexpr Property<Types::UTF16String> companyName{"060E2B34.01010102.05200701.02010000"_key};
inline constexpr Property<Types::UTF16String> productName{"060E2B34.01010102.05200701.03010000"_key};
inline constexpr Property<Types::ProductVersion> productVersion{"060E2B34.01010102.05200701.04000000"_key};
inline constexpr Property<Types::UTF16String> versionString{"060E2B34.01010102.05200701.05010000"_key};
inline constexpr Property<Types::UUID> productUID{"060E2B34.01010102.05200701.07000000"_key};
inline constexpr Property<Types::Timestamp> modificationDate{"060E2B34.01010102.07020110.02030000"_key};
inline constexpr Property<Types::ProductVersion> toolkitVersion{"060E2B34.01010102.05200701.0A000000"_key};
inline constexpr Property<Types::UTF16String> platform{"060E2B34.01010102.05200701.06010000"_key};
inline constexpr Property<Types::UUID> thisGenerationUID{"060E2B34.01010102.05200701.01000000"_key};

// Preface
inline constexpr Property<Types::Timestamp> lastModifiedDate{"060E2B34.01010102.07020110.02040000"_key};
inline constexpr Property<Types::VersionType> version{"060E2B34.01010102.03010201.05000000"_key};
inline constexpr Property<Types::UInt32> objectModelVersion{"060E2B34.01010102.03010201.04000000"_key};
inline constexpr Reference<GenericPackage> primaryPackage{"060E2B34.01010104.06010104.01080000"_key};
inline constexpr References<Identification> identifications{"060E2B34.01010102.06010104.06040000"_key};
inline constexpr Reference<ContentStorage> contentStorage{"060E2B34.01010102.06010104.02010000"_key};
inline constexpr Property<Types::UniversalLabel> operationalPattern{
    "060E2B34.01010105.01020203.00000000"_key};
inline constexpr Property<Types::Batch> essenceContainers{"060E2B34.01010105.01020210.02010000"_key};
inline constexpr Property<Types::Batch> dmSchemes{"060E2B34.01010105.01020210.02020000"_key};
inline constexpr Property<Types::Boolean> isRIPPresent{"060E2B34.0101010E.04040503.00000000"_key};
inline constexpr Property<Types::Batch> conformsToSpecifications{"060E2B34.0101010E.01020210.02040000"_key};

// ContentStorage
inline constexpr References<GenericPackage> packages{"060E2B34.01010102.06010104.05010000"_key};
inline constexpr References<EssenceContainerData> essenceContainerData{
    "060E2B34.01010102.06010104.05020000"_key};

// EssenceContainerData
inline constexpr Property<Types::UMID32> linkedPackageUID{"060E2B34.01010102.06010106.01000000"_key};
inline constexpr Property<Types::UInt32> bodySID{"060E2B34.01010104.01030404.00000000"_key};
inline constexpr Property<Types::UInt32> indexSID{"060E2B34.01010104.01030405.00000000"_key};
inline constexpr Property<Types::DataStream> essenceStream{"060E2B34.01010102.04070200.00000000"_key};
inline constexpr Property<Types::DataStream> sampleIndex{"060E2B34.01010102.06010102.01000000"_key};
inline constexpr Property<Types::Boolean> precedingIndexTable{"060E2B34.0101010E.04040504.00000000"_key};
inline constexpr Property<Types::Boolean> followingIndexTable{"060E2B34.0101010E.04040505.00000000"_key};
inline constexpr Property<Types::Boolean> isSparse{"060E2B34.0101010E.04040506.00000000"_key};
inline constexpr Property<Types::Boolean> singularPartitionUsage{"060E2B34.0101010E.04060207.00000000"_key};

// GenericPackage
inline constexpr Property<Types::UMID32> packageUID{"060E2B34.01010101.01011510.00000000"_key};
inline constexpr Property<Types::UTF16String> name{"060E2B34.01010101.01030302.01000000"_key};
inline constexpr References<Track> tracks{"060E2B34.01010102.06010104.06050000"_key};
inline constexpr Property<Types::Timestamp> packageModifiedDate{"060E2B34.01010102.07020110.02050000"_key};
inline constexpr Property<Types::Timestamp> packageCreationDate{"060E2B34.01010102.07020110.01030000"_key};
inline constexpr References<MetadataSet> packageUserComments{"060E2B34.01010102.03020102.0C000000"_key};
inline constexpr References<MetadataSet> packageKLVData{"060E2B34.01010102.03010210.03000000"_key};
inline constexpr References<MetadataSet> packageAttributes{"060E2B34.01010107.03010210.07000000"_key};
inline constexpr Property<Types::UniversalLabel> packageUsage{"060E2B34.01010107.05010108.00000000"_key};

// SourcePackage
inline constexpr Reference<GenericDescriptor> descriptor{"060E2B34.01010102.06010104.02030000"_key};

// Track
inline constexpr Property<Types::UInt32> trackID{"060E2B34.01010102.01070101.00000000"_key};
inline constexpr Property<Types::UInt32> trackNumber{"060E2B34.01010102.01040103.00000000"_key};
inline constexpr Property<Types::UTF16String> trackName{"060E2B34.01010102.01070102.01000000"_key};
inline constexpr Reference<Sequence> sequence{"060E2B34.01010102.06010104.02040000"_key};

// TimelineTrack
inline constexpr Property<Types::Rational> editRate{"060E2B34.01010102.05300405.00000000"_key};
inline constexpr Property<Types::Position> origin{"060E2B34.01010102.07020103.01030000"_key};
inline constexpr Property<Types::Position> markIn{"060E2B34.01010107.07020103.010C0000"_key};
inline constexpr Property<Types::Position> markOut{"060E2B34.01010107.07020103.02030000"_key};
inline constexpr Property<Types::Position> userPosition{"060E2B34.01010107.07020103.010D0000"_key};
inline constexpr Property<Types::Position> packageMarkInPosition{"060E2B34.0101010A.07020103.010E0000"_key};
inline constexpr Property<Types::Position> packageMarkOutPosition{"060E2B34.0101010A.07020103.02040000"_key};

// EventTrack
inline constexpr Property<Types::Rational> eventEditRate{"060E2B34.01010102.05300402.00000000"_key};
inline constexpr Property<Types::Position> eventOrigin{"060E2B34.01010105.07020103.010B0000"_key};

// Sequence
inline constexpr Property<Types::UniversalLabel> dataDefinition{"060E2B34.01010102.04070100.00000000"_key};
inline constexpr Property<Types::Length> duration{"060E2B34.01010102.07020201.01030000"_key};
inline constexpr References<MetadataSet> componentKLVData{"060E2B34.01010102.03010210.04000000"_key};
inline constexpr References<MetadataSet> componentUserComments{"060E2B34.01010107.03020102.16000000"_key};
inline constexpr References<MetadataSet> componentAttributes{"060E2B34.01010107.03010210.08000000"_key};
inline constexpr References<StructuralComponent> structuralComponents{
    "060E2B34.01010102.06010104.06090000"_key};

// SourceClip
inline constexpr Property<Types::Position> startPosition{"060E2B34.01010102.07020103.01040000"_key};
inline constexpr Property<Types::UMID32> sourcePackageID{"060E2B34.01010102.06010103.01000000"_key};
inline constexpr Property<Types::UInt32> sourceTrackID{"060E2B34.01010102.06010103.02000000"_key};
inline constexpr Property<Types::Array> channelIDs{"060E2B34.01010107.06010103.07000000"_key};
inline constexpr Property<Types::Array> monoSourceTrackIDs{"060E2B34.01010108.06010103.08000000"_key};

// DMSourceClip
inline constexpr Property<Types::Batch> dmSourceClipTrackIDs{"060E2B34.01010105.01070106.00000000"_key};

// TimecodeComponent
inline constexpr Property<Types::Position> startTimecode{"060E2B34.01010102.07020103.01050000"_key};
inline constexpr Property<Types::UInt16> roundedTimecodeBase{"060E2B34.01010102.04040101.02060000"_key};
inline constexpr Property<Types::Boolean> dropFrame{"060E2B34.01010101.04040101.05000000"_key};

// DMSegment
inline constexpr Property<Types::Position> eventStartPosition{"060E2B34.01010102.07020103.03030000"_key};
inline constexpr Property<Types::UTF16String> eventComment{"060E2B34.01010102.05300404.01000000"_key};
inline constexpr Reference<MetadataSet> annotationSource{"060E2B34.01010102.06010104.020A0000"_key};
inline constexpr Property<Types::Batch> trackIDs{"060E2B34.01010104.01070105.00000000"_key};
inline constexpr Reference<MetadataSet> dmFramework{"060E2B34.01010105.06010104.020C0000"_key};
inline constexpr Property<Types::UUID> descriptiveMetadataPlugInID{"060E2B34.0101010C.05200701.0E000000"_key};
inline constexpr Property<Types::UniversalLabel> descriptiveMetadataScheme{
    "060E2B34.0101010C.04060804.00000000"_key};
inline constexpr Property<Types::UTF16String> descriptiveMetadataApplicationEnvironmentID{
    "060E2B34.0101010C.05200701.10000000"_key};

} // namespace MXF::Zelm::Metadata::Structural::Properties
