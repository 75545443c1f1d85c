#include "MXF/Zelm/Metadata/Structural/Packages.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"
#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/Preface.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/Timecode.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"

#include <algorithm>
#include <set>

namespace MXF::Zelm::Metadata::Structural {

namespace {

using Seconds = Templates::Rational<std::int64_t>;

constexpr double fastestFrameRate = 120;

ContentStorage const& contentStorageOf(PartitionMetadata const& metadata) {
    auto const* const storage = findPreface(metadata).contentStorage();
    if (storage == nullptr)
        throw Exceptions::InvalidStructure(Exceptions::Condition{"contentStorage != 0"},
                                           "Preface has no ContentStorage");
    return *storage;
}

Types::UMID32 const& uidOf(GenericPackage const& package) {
    auto const* const uid = package.packageUID();
    if (uid == nullptr)
        throw Exceptions::InvalidStructure(Exceptions::Condition{"package.packageUID () != 0"},
                                           "Package has no packageUID");
    return *uid;
}

bool isFilePackage(SourcePackage const& package) {
    return dynamic_cast<FileDescriptor const*>(package.descriptor()) != nullptr;
}

/// The packages that the clips of a package's timeline tracks play.
std::set<Types::UMID32> playedBy(GenericPackage const& package) {
    std::set<Types::UMID32> played;
    Templates::list<TimelineTrack*> tracks;
    getAllEssenceTracks(package, tracks);
    for (auto const* const track : tracks)
        for (auto const* const component : track->sequence()->structuralComponents())
            if (auto const* const clip = dynamic_cast<SourceClip const*>(component))
                if (auto const* const source = clip->sourcePackageID();
                    source != nullptr && !source->isNull())
                    played.insert(*source);
    return played;
}

std::set<Types::UMID32> packageUIDs(ContentStorage const& storage) {
    std::set<Types::UMID32> uids;
    for (auto const* const package : storage.packages())
        if (auto const* const uid = package->packageUID())
            uids.insert(*uid);
    return uids;
}

bool playsOthers(GenericPackage const& package, std::set<Types::UMID32> const& present) {
    auto const played = playedBy(package);
    return !std::includes(present.begin(), present.end(), played.begin(), played.end());
}

/// The file descriptors below `root`, itself among them; a descriptor that is met again is passed over.
Templates::vector<FileDescriptor*> fileDescriptorsBelow(FileDescriptor& root) {
    Templates::vector<FileDescriptor*> found{&root};
    std::set<FileDescriptor const*> met{&root};
    for (std::size_t i = 0; i < found.size(); ++i)
        if (auto const* const several = dynamic_cast<MultipleDescriptor const*>(found[i]))
            for (auto* const each : several->fileDescriptors())
                if (met.insert(each).second)
                    found.push_back(each);
    return found;
}

bool isEssenceTrackOf(GenericPackage const& package, unsigned int trackID) {
    auto const tracks = package.tracks();
    return std::any_of(tracks.begin(), tracks.end(), [&](Track const* track) {
        return track->trackID() != nullptr && *track->trackID() == trackID && isEssenceTrack(track);
    });
}

/// How long a track is; 0/0 when that is not known or does not fit in 64 bits.
Seconds secondsOf(TimelineTrack const& track) {
    std::int64_t const duration = durationOf(track);
    if (duration < 0 || track.editRate() == nullptr)
        return {};
    try {
        return Utils::framesToSeconds(duration, track.editRate()->value());
    } catch (Exceptions::InvalidValue const&) {
        return {};
    }
}

/// The longest of some tracks, with its duration; null when none is known.
std::pair<TimelineTrack const*, Seconds> longest(Templates::list<TimelineTrack*> const& tracks) {
    std::pair<TimelineTrack const*, Seconds> found{nullptr, {}};
    for (auto const* const track : tracks) {
        auto const seconds = secondsOf(*track);
        if (seconds.isKnown() && (found.first == nullptr || seconds.toDouble() > found.second.toDouble()))
            found = {track, seconds};
    }
    return found;
}

std::pair<TimelineTrack const*, Seconds> longestTrack(GenericPackage const& package) {
    Templates::list<TimelineTrack*> tracks;
    getAllEssenceTracks(package, tracks);
    if (tracks.empty())
        getAllTimelineTracks(package, tracks);
    return longest(tracks);
}

} // namespace

Preface& findPreface(PartitionMetadata const& metadata) {
    auto* const preface = dynamic_cast<Preface*>(&metadata.preface());
    if (preface == nullptr)
        throw Exceptions::InvalidMetadataSet(
            "The Preface was made before the structural classes were registered");
    return *preface;
}

Types::UniversalLabel operationalPattern(PartitionMetadata const& metadata) {
    auto const* const pattern = findPreface(metadata).operationalPattern();
    if (pattern == nullptr)
        throw Exceptions::InvalidStructure("Preface has no OperationalPattern");
    return *pattern;
}

Templates::auto_ptr<Types::Batch> essenceContainers(PartitionMetadata const& metadata) {
    auto const* const labels = findPreface(metadata).essenceContainers();
    return labels != nullptr ? std::make_unique<Types::Batch>(*labels)
                             : std::make_unique<Types::Batch>(Types::Identifiers::UniversalLabel);
}

bool hasExternalEssence(PartitionMetadata const& metadata) {
    auto const& storage = contentStorageOf(metadata);
    auto const packages = storage.packages();
    auto const present = packageUIDs(storage);
    return std::any_of(packages.begin(), packages.end(), [&](GenericPackage const* package) {
        auto const* const source = dynamic_cast<SourcePackage const*>(package);
        return source != nullptr ? isExternalEssence(metadata, *source) : playsOthers(*package, present);
    });
}

bool isExternalEssence(PartitionMetadata const& metadata, SourcePackage const& package) {
    auto const containers = contentStorageOf(metadata).essenceContainerData();
    auto const& uid = uidOf(package);
    return isFilePackage(package) &&
           std::none_of(containers.begin(), containers.end(), [&](EssenceContainerData const* data) {
               return data->linkedPackageUID() != nullptr && *data->linkedPackageUID() == uid;
           });
}

FileDescriptor* fileDescriptorForTrack(SourcePackage const& package, unsigned int trackID) {
    auto* const root = dynamic_cast<FileDescriptor*>(package.descriptor());
    if (root == nullptr)
        return nullptr;
    for (auto* const descriptor : fileDescriptorsBelow(*root))
        if (descriptor->linkedTrackID() != nullptr && *descriptor->linkedTrackID() == trackID)
            return descriptor;
    bool const standsAlone = dynamic_cast<MultipleDescriptor*>(root) == nullptr;
    return standsAlone && root->linkedTrackID() == nullptr && isEssenceTrackOf(package, trackID) ? root
                                                                                                 : nullptr;
}

Types::UniversalLabel const* essenceULOfTrack(SourcePackage const& package, TimelineTrack const* track) {
    if (track == nullptr || track->trackID() == nullptr)
        return nullptr;
    auto const* const descriptor = fileDescriptorForTrack(package, *track->trackID());
    return descriptor != nullptr ? descriptor->essenceContainer() : nullptr;
}

Seconds packageDurationInSeconds(GenericPackage const& package) { return longestTrack(package).second; }

Utils::TimeCode packageDurationAsTimeCode(GenericPackage const& package) {
    auto const [track, seconds] = longestTrack(package);
    if (track == nullptr)
        return {};
    auto const* const timecode = getTimecodeTrack(package);
    auto const base = timecode != nullptr ? timeBaseOf(timecodeComponentOf(*timecode)) : std::nullopt;
    auto const* const counting = base && timecode->editRate() != nullptr ? timecode : track;
    try {
        auto const rate = counting->editRate()->value();
        if (rate.toDouble() > fastestFrameRate)
            return {}; // of samples
        return {base ? *base : Utils::TimeBase::ofEditRate(rate), Utils::secondsToFrames(seconds, rate)};
    } catch (Exceptions::InvalidValue const&) {
        return {}; // a rate that timecode does not count
    }
}

Utils::TimeCode startTimecode(GenericPackage const& package) {
    auto const* const track = getTimecodeTrack(package);
    if (track == nullptr)
        return {};
    auto const& component = timecodeComponentOf(*track);
    auto const base = timeBaseOf(component);
    auto const* const start = component.startTimecode();
    return base && start != nullptr ? Utils::TimeCode(*base, *start) : Utils::TimeCode();
}

} // namespace MXF::Zelm::Metadata::Structural
