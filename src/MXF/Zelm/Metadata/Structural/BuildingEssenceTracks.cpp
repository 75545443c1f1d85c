#include "MXF/Zelm/Metadata/Structural/Building.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"

namespace MXF::Zelm::Metadata::Structural {

namespace {

Types::UniversalLabel labelOf(FileDescriptor const& descriptor) {
    auto const* const label = descriptor.essenceContainer();
    if (label == nullptr || descriptor.sampleRate() == nullptr)
        throw Exceptions::InvalidStructure(
            "A descriptor needs its essence container label and sample rate before it describes a track");
    return *label;
}

/// The descriptor below which the package's descriptors come, made around the one that stands alone so far.
MultipleDescriptor& multipleDescriptorOf(PartitionMetadata& metadata, SourcePackage& package,
                                         FileDescriptor& first) {
    if (auto* const present = dynamic_cast<MultipleDescriptor*>(&first))
        return *present;
    auto& several = create<MultipleDescriptor>(metadata);
    several.sampleRate(*first.sampleRate());
    several.essenceContainer(labelOf(first));
    if (auto const* const duration = first.containerDuration())
        several.containerDuration(*duration);
    several.addFileDescriptor(first);
    package.descriptor(several);
    return several;
}

void describe(PartitionMetadata& metadata, SourcePackage& package, FileDescriptor& descriptor) {
    auto const label = labelOf(descriptor);
    addEssenceContainerLabel(metadata, label);
    auto* const first = dynamic_cast<FileDescriptor*>(package.descriptor());
    if (first == nullptr) {
        package.descriptor(descriptor);
        return;
    }
    auto& several = multipleDescriptorOf(metadata, package, *first);
    several.addFileDescriptor(descriptor);
    if (labelOf(several) != label) {
        several.essenceContainer(EssenceContainerLabels::multipleWrappings);
        addEssenceContainerLabel(metadata, EssenceContainerLabels::multipleWrappings);
    }
}

Types::UniversalLabel dataDefinitionFor(TimelineTrack const& track) {
    auto const* const label = dataDefinitionOf(track);
    if (label == nullptr || track.editRate() == nullptr)
        throw Exceptions::InvalidStructure(
            "A track that is to be played has no data definition or edit rate");
    return *label;
}

} // namespace

TimelineTrack& addEssenceTrack(PartitionMetadata& metadata, SourcePackage& package,
                               FileDescriptor& descriptor, EssenceTrackOptions const& options) {
    labelOf(descriptor); // before anything is made
    auto& track = createTimelineTrack(metadata, package, options.dataDefinition, options.trackID,
                                      options.trackNumber, options.editRate, options.name);
    addSourceClip(metadata, track.sequence(), options.dataDefinition, options.length, 0);
    descriptor.linkedTrackID(*track.trackID());
    if (descriptor.containerDuration() == nullptr && options.length != unknownLength &&
        descriptor.sampleRate()->value() == options.editRate)
        descriptor.containerDuration(*track.sequence()->duration());
    describe(metadata, package, descriptor);
    return track;
}

TimelineTrack& addMaterialTrack(PartitionMetadata& metadata, MaterialPackage& package,
                                SourcePackage const& source, TimelineTrack const& track,
                                std::u16string_view name) {
    auto const dataDefinition = dataDefinitionFor(track);
    auto& playing =
        createTimelineTrack(metadata, package, dataDefinition, 0, 0, track.editRate()->value(), name);
    auto& clip = addSourceClip(metadata, playing.sequence(), dataDefinition,
                               static_cast<std::uint64_t>(durationOf(track).value()), 0);
    linkSourceClip(clip, source, track);
    return playing;
}

} // namespace MXF::Zelm::Metadata::Structural
