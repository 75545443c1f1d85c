/// Building header metadata from nothing: a Preface, packages, tracks and clips, each complete and linked as
/// it is made. The host adds what only it knows (descriptors) and changes through the accessors what it
/// likes.
///
///     auto const metadata = createPartitionMetadata(dictionary);
///     createPreface(*metadata, {.operationalPattern = …, .product = …});
///     auto& file = createFilePackage(*metadata, {.bodySID = 1, .indexSID = 2});
///     auto& track = addEssenceTrack(*metadata, file, descriptor, {.editRate = {25, 1}, …});
///     auto& material = createMaterialPackage(*metadata, {});
///     addMaterialTrack(*metadata, material, file, track);
///
/// `initialize` must have been called before. All sets belong to the metadata. The functions throw what
/// PartitionMetadata::createMetadataSet and `findPreface` throw, Exceptions::InvalidStructure when a function
/// that needs it comes before `createPreface`.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Metadata/Structural/DataDefinitions.h"
#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/OperationalPatterns.h"
#include "MXF/Zelm/Metadata/Structural/Preface.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"
#include "MXF/Zelm/Types/Versions.h"
#include "MXF/Zelm/Utils/TimeCode.h"

namespace MXF::Zelm::Metadata::Structural {

/// Empty header metadata with an empty primer. Shares the dictionary.
MXFZELM_EXPORT Templates::auto_ptr<PartitionMetadata>
createPartitionMetadata(PartitionDictionary::DictionaryPtr dictionary);

/// Throws Exceptions::InvalidMetadataSet: the set was not made as the class that it should have.
[[noreturn]] MXFZELM_EXPORT void failUnregistered(MetadataSet const& set);

/// A new set of the class `Set`, with an instance UID and nothing else. Throws also
/// Exceptions::InvalidMetadataSet when the class is not registered.
template <class Set>
Set& create(PartitionMetadata& metadata) {
    auto& set = metadata.createMetadataSet(Set::classKey());
    auto* const typed = dynamic_cast<Set*>(&set);
    if (typed == nullptr)
        failUnregistered(set);
    return *typed;
}

/// The application that writes the file.
struct Product {
    std::u16string companyName;
    std::u16string productName;
    std::u16string versionString;
    Types::UUID productUID; ///< one for all files of the product
};

struct PrefaceOptions {
    Types::UniversalLabel operationalPattern;
    Product product;
    Types::Timestamp date = Types::Timestamp::now();
    Types::VersionType version{1, 2}; ///< 1.2 (SMPTE 377M) or 1.3 (SMPTE 377-1)
};

/// A Preface with an Identification, which starts a generation, and a ContentStorage. Throws
/// Exceptions::InvalidStructure when there is a Preface.
MXFZELM_EXPORT Preface& createPreface(PartitionMetadata& metadata, PrefaceOptions const& options);

/// Adds a label to the Preface's essence containers unless it is there.
MXFZELM_EXPORT void addEssenceContainerLabel(PartitionMetadata& metadata, Types::UniversalLabel const& label);

struct PackageOptions {
    Types::UMID32 uid = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    Types::Timestamp date = Types::Timestamp::now(); ///< created and modified
    std::u16string name = {};                        ///< empty for none
    std::uint32_t bodySID = 0;  ///< of a file package; 0 when its essence is outside the file
    std::uint32_t indexSID = 0; ///< of a file package; 0 when there is no index table
};

/// A package in the content storage, without tracks.
MXFZELM_EXPORT MaterialPackage& createMaterialPackage(PartitionMetadata& metadata,
                                                      PackageOptions const& options = {});

/// A file package in the content storage, without descriptor and tracks; and, when it has a body SID, the
/// EssenceContainerData that tells where its essence is.
MXFZELM_EXPORT SourcePackage& createFilePackage(PartitionMetadata& metadata, PackageOptions const& options);

namespace EssenceContainerLabels {

using namespace KLV::Literals;

/// Of a MultipleDescriptor whose descriptors have different essence containers.
inline constexpr KLV::Key multipleWrappings = "060E2B34.04010103.0D010301.027F0100"_key;

} // namespace EssenceContainerLabels

/// Bytes 12 to 15 of the keys of a track's essence elements (SMPTE 379M). `itemType` is 14 to 18 (or 04 to 07
/// in D-10), `count` the number of elements of this item type in a content package, `elementType` as the
/// mapping says, `number` different for each of the elements.
constexpr std::uint32_t makeTrackNumber(std::uint8_t itemType, std::uint8_t count, std::uint8_t elementType,
                                        std::uint8_t number) {
    return std::uint32_t{itemType} << 24 | std::uint32_t{count} << 16 | std::uint32_t{elementType} << 8 |
           number;
}

/// A timeline track, its sequence being empty and 0 long, added to the package. `trackID` is the number by
/// which clips refer to it, 0 for the next free one; `trackNumber` as in Track.
///
/// Throws Exceptions::InvalidValue when the ID is taken or none is free.
MXFZELM_EXPORT TimelineTrack& createTimelineTrack(PartitionMetadata& metadata, GenericPackage& package,
                                                  Types::UniversalLabel const& dataDefinition,
                                                  unsigned int trackID, unsigned int trackNumber,
                                                  Templates::Rational<int> const& editRate,
                                                  std::u16string_view name = {});

/// A length that is not known yet, as an unsigned number.
inline constexpr std::uint64_t unknownLength = ~std::uint64_t{0};

/// A source clip, appended to the sequence, which becomes longer by it. It refers to nothing (the end of the
/// chain) until `linkSourceClip`. `length` and `startPosition` in edit units of the track, `length` may be
/// `unknownLength`. Throws Exceptions::InvalidValue when there is no sequence, or it would be longer than 63
/// bits can tell.
MXFZELM_EXPORT SourceClip& addSourceClip(PartitionMetadata& metadata, Sequence* sequence,
                                         Types::UniversalLabel const& dataDefinition, std::uint64_t length,
                                         std::int64_t startPosition);

/// Makes a clip refer to a track of a package. Throws Exceptions::InvalidStructure when the package has no
/// UID or the track no ID.
MXFZELM_EXPORT void linkSourceClip(SourceClip& clip, GenericPackage const& package, Track const& track);

struct EssenceTrackOptions {
    Types::UniversalLabel dataDefinition;
    Templates::Rational<int> editRate;
    std::uint32_t trackNumber = 0;
    std::uint64_t length = unknownLength; ///< in edit units
    std::uint32_t trackID = 0;            ///< 0 for the next free one
    std::u16string name = {};             ///< empty for none
};

/// A track of a file package with a clip that ends the chain. `descriptor`, which must have its essence
/// container label and sample rate, describes it: the package's only descriptor with the first track, one
/// below a MultipleDescriptor from the second on. Its label goes into the Preface. A container duration that
/// it lacks becomes the track's length when both have one rate.
MXFZELM_EXPORT TimelineTrack& addEssenceTrack(PartitionMetadata& metadata, SourcePackage& package,
                                              FileDescriptor& descriptor, EssenceTrackOptions const& options);

/// A track that plays a track of a file package from its start to its end.
MXFZELM_EXPORT TimelineTrack& addMaterialTrack(PartitionMetadata& metadata, MaterialPackage& package,
                                               SourcePackage const& source, TimelineTrack const& track,
                                               std::u16string_view name = {});

/// A track of timecode that runs from `start`, which must be defined. `length` in edit units, or
/// `unknownLength`.
MXFZELM_EXPORT TimelineTrack& addTimecodeTrack(PartitionMetadata& metadata, GenericPackage& package,
                                               Utils::TimeCode const& start,
                                               Templates::Rational<int> const& editRate,
                                               std::uint64_t length = unknownLength);

/// Sets the length of a track that consists of one component, as those made here do: of its sequence and of
/// the component. Throws Exceptions::InvalidStructure when it has no sequence or another number of
/// components.
MXFZELM_EXPORT void setTrackLength(TimelineTrack& track, std::uint64_t length);

} // namespace MXF::Zelm::Metadata::Structural
