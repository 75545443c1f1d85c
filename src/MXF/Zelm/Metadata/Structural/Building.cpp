#include "MXF/Zelm/Metadata/Structural/Building.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"
#include "MXF/Zelm/Metadata/Structural/Identification.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::Metadata::Structural {

namespace {

Identification& createIdentification(PartitionMetadata& metadata, PrefaceOptions const& options) {
    auto& identification = create<Identification>(metadata);
    identification.thisGenerationUID(Types::UUID::generate());
    identification.companyName(Types::UTF16String(options.product.companyName));
    identification.productName(Types::UTF16String(options.product.productName));
    identification.versionString(Types::UTF16String(options.product.versionString));
    identification.productUID(options.product.productUID);
    identification.modificationDate(options.date);
    return identification;
}

ContentStorage& contentStorageOf(PartitionMetadata const& metadata) {
    auto* const storage = findPreface(metadata).contentStorage();
    if (storage == nullptr)
        throw Exceptions::InvalidStructure(Exceptions::Condition{"contentStorage != 0"},
                                           "Preface has no ContentStorage");
    return *storage;
}

/// What packages of all classes begin with.
template <class Package>
Package& createPackage(PartitionMetadata& metadata, PackageOptions const& options) {
    auto& storage = contentStorageOf(metadata);
    auto& package = create<Package>(metadata);
    package.packageUID(options.uid);
    package.packageCreationDate(options.date);
    package.packageModifiedDate(options.date);
    if (!options.name.empty())
        package.name(Types::UTF16String(options.name));
    storage.addPackage(package);
    return package;
}

std::uint32_t freeTrackID(GenericPackage const& package) {
    std::uint32_t highest = 0;
    for (auto const* const track : package.tracks())
        if (track->trackID() != nullptr)
            highest = std::max(highest, track->trackID()->value());
    if (highest == std::numeric_limits<std::uint32_t>::max())
        throw Exceptions::InvalidValue("The package has no free track ID behind its highest one");
    return highest + 1;
}

void requireFreeTrackID(GenericPackage const& package, std::uint32_t id) {
    for (auto const* const track : package.tracks())
        if (track->trackID() != nullptr && *track->trackID() == id)
            throw Exceptions::InvalidValue("The package has a track with the ID " + std::to_string(id));
}

/// Throws Exceptions::InvalidValue when the length does not fit in 63 bits.
Types::Length toLength(std::uint64_t length) {
    if (length == unknownLength)
        return Types::Length(-1);
    if (length > std::uint64_t{std::numeric_limits<std::int64_t>::max()})
        throw Exceptions::InvalidValue("A duration of " + std::to_string(length) + " edit units is too long");
    return Types::Length(static_cast<std::int64_t>(length));
}

/// The duration of a sequence with one more component.
Types::Length sumOf(Types::Length const* sequence, Types::Length const& component) {
    if (component < 0 || (sequence != nullptr && *sequence < 0))
        return Types::Length(-1);
    std::int64_t const before = sequence != nullptr ? sequence->value() : 0;
    if (component > std::numeric_limits<std::int64_t>::max() - before)
        throw Exceptions::InvalidValue("The sequence would be longer than 63 bits can tell");
    return Types::Length(before + component);
}

void append(Sequence& sequence, StructuralComponent& component, Types::UniversalLabel const& dataDefinition,
            std::uint64_t length) {
    auto const duration = toLength(length);
    auto const sum = sumOf(sequence.duration(), duration);
    component.dataDefinition(dataDefinition);
    component.duration(duration);
    sequence.addStructuralComponent(component);
    sequence.duration(sum);
}

} // namespace

Templates::auto_ptr<PartitionMetadata>
createPartitionMetadata(PartitionDictionary::DictionaryPtr dictionary) {
    return std::make_unique<PartitionMetadata>(
        std::make_unique<PartitionDictionary>(std::move(dictionary), std::make_unique<Packs::PrimerPack>()));
}

void failUnregistered(MetadataSet const& set) {
    throw Exceptions::InvalidMetadataSet(u"The class " + set.name() +
                                         u" is not registered with the metadata set factory");
}

Preface& createPreface(PartitionMetadata& metadata, PrefaceOptions const& options) {
    if (std::any_of(metadata.begin(), metadata.end(),
                    [](auto const& set) { return set.first == Preface::classKey(); }))
        throw Exceptions::InvalidStructure("The metadata has a Preface");
    auto& preface = create<Preface>(metadata);
    preface.version(options.version);
    preface.lastModifiedDate(options.date);
    preface.operationalPattern(options.operationalPattern);
    preface.essenceContainers(Types::Batch(Types::Identifiers::UniversalLabel));
    preface.dmSchemes(Types::Batch(Types::Identifiers::UniversalLabel));
    preface.addIdentification(createIdentification(metadata, options));
    preface.contentStorage(create<ContentStorage>(metadata));
    return preface;
}

void addEssenceContainerLabel(PartitionMetadata& metadata, Types::UniversalLabel const& label) {
    auto& preface = findPreface(metadata);
    auto const* const present = preface.essenceContainers();
    if (present == nullptr || !present->contains(label))
        preface.addEssenceContainer(label);
}

MaterialPackage& createMaterialPackage(PartitionMetadata& metadata, PackageOptions const& options) {
    return createPackage<MaterialPackage>(metadata, options);
}

SourcePackage& createFilePackage(PartitionMetadata& metadata, PackageOptions const& options) {
    auto& package = createPackage<SourcePackage>(metadata, options);
    if (options.bodySID == 0)
        return package;
    auto& data = create<EssenceContainerData>(metadata);
    data.linkedPackageUID(options.uid);
    data.bodySID(Types::UInt32(options.bodySID));
    if (options.indexSID != 0)
        data.indexSID(Types::UInt32(options.indexSID));
    contentStorageOf(metadata).addEssenceContainerData(data);
    return package;
}

TimelineTrack& createTimelineTrack(PartitionMetadata& metadata, GenericPackage& package,
                                   Types::UniversalLabel const& dataDefinition, unsigned int trackID,
                                   unsigned int trackNumber, Templates::Rational<int> const& editRate,
                                   std::u16string_view name) {
    std::uint32_t const id = trackID != 0 ? trackID : freeTrackID(package);
    requireFreeTrackID(package, id);
    auto& sequence = create<Sequence>(metadata);
    sequence.dataDefinition(dataDefinition);
    sequence.duration(Types::Length(0));
    auto& track = create<TimelineTrack>(metadata);
    track.trackID(Types::UInt32(id));
    track.trackNumber(Types::UInt32(trackNumber));
    track.editRate(Types::Rational(editRate));
    track.origin(Types::Position(0));
    if (!name.empty())
        track.trackName(Types::UTF16String(name));
    track.sequence(sequence);
    package.addTrack(track);
    return track;
}

SourceClip& addSourceClip(PartitionMetadata& metadata, Sequence* sequence,
                          Types::UniversalLabel const& dataDefinition, std::uint64_t length,
                          std::int64_t startPosition) {
    if (sequence == nullptr)
        throw Exceptions::InvalidValue("There is no sequence to which the source clip could be added");
    sumOf(sequence->duration(), toLength(length)); // before anything is made
    auto& clip = create<SourceClip>(metadata);
    clip.startPosition(Types::Position(startPosition));
    clip.sourcePackageID(Types::UMID32());
    clip.sourceTrackID(Types::UInt32(0));
    append(*sequence, clip, dataDefinition, length);
    return clip;
}

void linkSourceClip(SourceClip& clip, GenericPackage const& package, Track const& track) {
    if (package.packageUID() == nullptr || track.trackID() == nullptr)
        throw Exceptions::InvalidStructure(
            "A clip can refer only to a package with a UID and a track with an ID");
    clip.sourcePackageID(*package.packageUID());
    clip.sourceTrackID(*track.trackID());
}

TimelineTrack& addTimecodeTrack(PartitionMetadata& metadata, GenericPackage& package,
                                Utils::TimeCode const& start, Templates::Rational<int> const& editRate,
                                std::uint64_t length) {
    auto const base = start.base(); // throws for an undefined one
    toLength(length);               // before anything is made
    auto& track = createTimelineTrack(metadata, package, DataDefinitions::timecode, 0, 0, editRate);
    auto& component = create<TimecodeComponent>(metadata);
    component.startTimecode(Types::Position(start.frameCount()));
    component.roundedTimecodeBase(Types::UInt16(static_cast<std::uint16_t>(base.framesPerSecond())));
    component.dropFrame(Types::Boolean(base.dropFrame()));
    append(*track.sequence(), component, DataDefinitions::timecode, length);
    return track;
}

void setTrackLength(TimelineTrack& track, std::uint64_t length) {
    auto const duration = toLength(length);
    auto* const sequence = track.sequence();
    auto const components =
        sequence != nullptr ? sequence->structuralComponents() : Templates::vector<StructuralComponent*>();
    if (components.size() != 1)
        throw Exceptions::InvalidStructure(
            "The length of a track can be set when it has one component, this has " +
            std::to_string(components.size()));
    components.front()->duration(duration);
    sequence->duration(duration);
}

} // namespace MXF::Zelm::Metadata::Structural
