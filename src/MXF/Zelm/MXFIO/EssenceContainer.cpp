#include "MXF/Zelm/MXFIO/EssenceContainer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"
#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using namespace Metadata::Structural;
using GenericContainer::ElementKey;
using GenericContainer::Wrapping;

namespace {

/// Follows references no further than this; files have three or four packages in a row.
constexpr int mostPackages = 16;

template <class Value, class Property>
Value valueOr(Property const* property, Value otherwise) {
    return property != nullptr ? static_cast<Value>(property->value()) : otherwise;
}

/// The components of a track, of a single one in place of a sequence too.
Templates::vector<StructuralComponent*> componentsOf(Track const& track) {
    auto* const segment = track.referencedSet(Properties::sequence.label);
    if (auto const* const sequence = dynamic_cast<Sequence const*>(segment))
        return sequence->structuralComponents();
    if (auto* const component = dynamic_cast<StructuralComponent*>(segment))
        return {component};
    return {};
}

std::int64_t durationOf(Track const& track) {
    if (auto const* const sequence =
            dynamic_cast<Sequence const*>(track.referencedSet(Properties::sequence.label)))
        if (valueOr<std::int64_t>(sequence->duration(), -1) >= 0)
            return sequence->duration()->value();
    auto const components = componentsOf(track);
    return components.size() == 1 ? valueOr<std::int64_t>(components.front()->duration(), -1) : -1;
}

/// The descriptor of a track: the one that is linked to it, or the package's only one.
FileDescriptor const* descriptorOf(SourcePackage const& package, std::uint32_t trackID) {
    auto const* const top = dynamic_cast<FileDescriptor const*>(package.descriptor());
    auto const* const multiple = dynamic_cast<MultipleDescriptor const*>(top);
    if (multiple == nullptr)
        return top;
    for (auto const* const descriptor : multiple->fileDescriptors())
        if (valueOr<std::uint32_t>(descriptor->linkedTrackID(), 0) == trackID)
            return descriptor;
    return nullptr;
}

SampleFormat samplesOf(FileDescriptor const* descriptor) {
    auto const* const wave = dynamic_cast<WAVEAudioEssenceDescriptor const*>(descriptor);
    if (wave == nullptr || wave->audioSamplingRate() == nullptr)
        return {};
    return {valueOr<std::uint32_t>(wave->blockAlign(), 0), wave->audioSamplingRate()->value(),
            valueOr<std::uint8_t>(wave->sequenceOffset(), 0)};
}

EssenceTrack essenceTrack(SourcePackage const& package, TimelineTrack const& from) {
    EssenceTrack track;
    track.trackID = valueOr<std::uint32_t>(from.trackID(), 0);
    track.trackNumber = valueOr<std::uint32_t>(from.trackNumber(), 0);
    if (from.editRate() != nullptr)
        track.editRate = from.editRate()->value();
    track.origin = valueOr<std::int64_t>(from.origin(), 0);
    track.duration = durationOf(from);
    track.track = &from;
    track.descriptor = descriptorOf(package, track.trackID);
    track.samples = samplesOf(track.descriptor);
    if (track.descriptor != nullptr && track.descriptor->essenceContainer() != nullptr)
        track.wrapping = GenericContainer::wrappingOf(track.descriptor->essenceContainer()->key());
    return track;
}

TimecodeTrack timecodeTrack(TimelineTrack const& track) {
    TimecodeTrack found;
    if (track.editRate() != nullptr)
        found.editRate = track.editRate()->value();
    std::int64_t start = 0;
    for (auto const* const component : componentsOf(track)) {
        auto const* const timecode = dynamic_cast<TimecodeComponent const*>(component);
        auto const base = timecode != nullptr ? valueOr<unsigned>(timecode->roundedTimecodeBase(), 0) : 0u;
        if (base != 0 && timecode->startTimecode() != nullptr) {
            bool const drop = valueOr<bool>(timecode->dropFrame(), false) && Utils::TimeBase::canDrop(base);
            found.components.push_back(
                {start, Utils::TimeCode(Utils::TimeBase(base, drop), timecode->startTimecode()->value())});
        }
        std::int64_t const duration = valueOr<std::int64_t>(component->duration(), -1);
        if (duration < 0 || duration > INT64_MAX - start)
            break;
        start += duration;
    }
    return found;
}

void takeTracks(EssenceContainer& container) {
    for (auto const* const track : container.package->tracks()) {
        auto const* const timeline = dynamic_cast<TimelineTrack const*>(track);
        if (timeline == nullptr)
            continue;
        if (valueOr<std::uint32_t>(timeline->trackNumber(), 0) != 0)
            container.tracks.push_back(essenceTrack(*container.package, *timeline));
        else if (container.timecode.components.empty())
            container.timecode = timecodeTrack(*timeline);
    }
}

/// The packages by their identities.
class Packages {
public:
    explicit Packages(ContentStorage const& storage) {
        for (auto const* const package : storage.packages())
            if (package->packageUID() != nullptr)
                packages_.emplace(*package->packageUID(), package);
    }

    GenericPackage const* find(Types::UMID32 const& uid) const {
        auto const found = packages_.find(uid);
        return found != packages_.end() ? found->second : nullptr;
    }

    /// A file package that was not taken before: each has its essence in one container.
    SourcePackage const* takeFilePackage(Types::UMID32 const& uid) {
        auto const found = packages_.find(uid);
        auto const* const package =
            found != packages_.end() ? dynamic_cast<SourcePackage const*>(found->second) : nullptr;
        if (package != nullptr)
            packages_.erase(found);
        return package;
    }

private:
    Templates::map<Types::UMID32, GenericPackage const*> packages_;
};

ContentStorage const* storageOf(Metadata::PartitionMetadata const& metadata) {
    try {
        return dynamic_cast<ContentStorage const*>(&metadata.contentStorage());
    } catch (Exceptions::BaseException const&) {
        return nullptr; // the metadata is not whole
    }
}

SourceClip const* firstClip(GenericPackage const& package, std::uint32_t trackID) {
    for (auto const* const track : package.tracks())
        if (valueOr<std::uint32_t>(track->trackID(), 0) == trackID)
            for (auto const* const component : componentsOf(*track))
                if (auto const* const clip = dynamic_cast<SourceClip const*>(component))
                    return clip;
    return nullptr;
}

} // namespace

Utils::TimeCode TimecodeTrack::at(Templates::Rational<std::int64_t> const& seconds) const {
    if (editRate.numerator <= 0 || editRate.denominator <= 0)
        return {};
    std::int64_t const position = Utils::secondsToFrames(seconds, editRate);
    auto const after = std::upper_bound(
        components.begin(), components.end(), position,
        [](std::int64_t wanted, Component const& component) { return wanted < component.start; });
    if (after == components.begin())
        return components.empty() ? Utils::TimeCode() : components.front().timecode + position;
    return std::prev(after)->timecode + (position - std::prev(after)->start);
}

EssenceTrack const* EssenceContainer::trackByID(std::uint32_t trackID) const {
    auto const found = std::find_if(tracks.begin(), tracks.end(),
                                    [&](auto const& track) { return track.trackID == trackID; });
    return found != tracks.end() ? &*found : nullptr;
}

EssenceTrack const* EssenceContainer::trackByNumber(std::uint32_t trackNumber) const {
    EssenceTrack const* similar = nullptr;
    for (auto const& track : tracks) {
        if (track.trackNumber == trackNumber)
            return &track;
        if (similar == nullptr && ElementKey(track.trackNumber).isSameElement(ElementKey(trackNumber)))
            similar = &track;
    }
    return similar;
}

Wrapping EssenceContainer::wrapping() const {
    for (auto const& track : tracks)
        if (track.wrapping != Wrapping::Unknown)
            return track.wrapping;
    return Wrapping::Unknown;
}

Templates::Rational<int> EssenceContainer::editRate() const {
    for (auto const& track : tracks)
        if (track.editRate.numerator > 0 && track.editRate.denominator > 0)
            return track.editRate;
    return {};
}

Templates::vector<EssenceContainer> essenceContainers(Partition::MetadataPtr const& metadata) {
    Templates::vector<EssenceContainer> containers;
    auto const* const storage = metadata ? storageOf(*metadata) : nullptr;
    if (storage == nullptr)
        return containers;
    Packages packages(*storage);
    for (auto const* const data : storage->essenceContainerData()) {
        EssenceContainer container;
        container.metadata = metadata;
        container.bodySID = valueOr<std::uint32_t>(data->bodySID(), 0);
        container.indexSID = valueOr<std::uint32_t>(data->indexSID(), 0);
        if (container.bodySID == 0)
            continue;
        if (data->linkedPackageUID() != nullptr)
            container.package = packages.takeFilePackage(*data->linkedPackageUID());
        if (container.package != nullptr)
            takeTracks(container);
        containers.push_back(std::move(container));
    }
    return containers;
}

std::optional<FoundTrack> findTrack(Templates::vector<EssenceContainer> const& containers,
                                    Types::UMID32 const& packageUID, std::uint32_t trackID) {
    auto const* const storage = !containers.empty() && containers.front().metadata
                                    ? storageOf(*containers.front().metadata)
                                    : nullptr;
    if (storage == nullptr)
        return std::nullopt;
    Packages const packages(*storage);
    Types::UMID32 uid = packageUID;
    for (int i = 0; i < mostPackages; ++i) {
        for (auto const& container : containers) {
            if (container.package == nullptr || container.package->packageUID() == nullptr ||
                *container.package->packageUID() != uid)
                continue;
            if (auto const* const track = container.trackByID(trackID))
                return FoundTrack{&container, track};
        }
        auto const* const package = packages.find(uid);
        auto const* const clip = package != nullptr ? firstClip(*package, trackID) : nullptr;
        if (clip == nullptr || clip->sourcePackageID() == nullptr || clip->sourceTrackID() == nullptr)
            break;
        uid = *clip->sourcePackageID();
        trackID = clip->sourceTrackID()->value();
    }
    return std::nullopt;
}

} // namespace MXF::Zelm::MXFIO
