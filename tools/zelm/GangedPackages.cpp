#include "GangedPackages.h"

#include "CopiedTracks.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Utils/TimeBase.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using Metadata::PartitionMetadata;
namespace Structural = Metadata::Structural;
using Structural::SourcePackage;

namespace {

/// A track of a package.
struct TrackPlace {
    SourcePackage const* package;
    std::uint32_t trackID;
};

template <class Use>
void forClips(PartitionMetadata const& metadata, Use const& use) {
    for (auto* const set : metadata.packages())
        if (auto* const package = dynamic_cast<Structural::GenericPackage*>(set))
            for (auto* const track : package->tracks())
                for (auto* const clip : clipsOf(*track))
                    use(*package, *clip);
}

/// What plays one track plays another one.
void playInstead(PartitionMetadata const& metadata, TrackPlace const& from, TrackPlace const& to) {
    forClips(metadata, [&](auto const&, Structural::SourceClip& clip) {
        if (clip.sourcePackageID() == nullptr || *clip.sourcePackageID() != *from.package->packageUID() ||
            clip.sourceTrackID() == nullptr || *clip.sourceTrackID() != from.trackID)
            return;
        clip.sourcePackageID(*to.package->packageUID());
        clip.sourceTrackID(Types::UInt32(to.trackID));
    });
}

/// A package that has one descriptor left has it without a multiple one around it.
void unwrapDescriptor(PartitionMetadata& metadata, SourcePackage& package) {
    auto* const several = dynamic_cast<Structural::MultipleDescriptor*>(package.descriptor());
    if (several == nullptr || several->fileDescriptors().size() != 1)
        return;
    package.descriptor(*several->fileDescriptors().front());
    removeWithOwned(metadata, *several);
}

void moveDescriptor(SourcePackage& from, SourcePackage& to, std::uint32_t trackID) {
    auto* const several = dynamic_cast<Structural::MultipleDescriptor*>(from.descriptor());
    auto* const descriptor = Structural::fileDescriptorForTrack(from, trackID);
    if (several == nullptr || descriptor == nullptr || descriptor == several ||
        several->fileDescriptors().size() < 2)
        throw InvalidValue("track " + std::to_string(trackID) +
                           " has no descriptor of its own, so that it cannot be in a package of its own");
    to.descriptor(*descriptor);
    several->removeFileDescriptor(*descriptor);
}

/// The timecode of one package in another that was made of it.
void copyTimecode(PartitionMetadata& metadata, SourcePackage const& from, SourcePackage& to) {
    auto const* const track = Structural::getTimecodeTrack(from);
    if (track == nullptr || !editRateOf(*track).isKnown())
        return;
    try {
        if (auto const start = Structural::startTimecode(from); start.isDefined())
            Structural::addTimecodeTrack(metadata, to, start, editRateOf(*track),
                                         static_cast<std::uint64_t>(durationOf(*track).value()));
    } catch (Exceptions::InvalidStructure const&) {
        // A timecode track that tells nothing.
    }
}

SourcePackage& moveIntoOwnPackage(PartitionMetadata& metadata, ContainerCopy const& from,
                                  ContainerCopy const& to, std::uint32_t trackID) {
    auto& old = *from.package;
    auto* const track = timelineTrack(old, trackID);
    if (track == nullptr || old.packageUID() == nullptr)
        throw Exceptions::InvalidStructure("an essence track has no timeline track");
    auto& package = Structural::createFilePackage(
        metadata, {.uid = Types::UMID32::generate(old.packageUID()->materialType()),
                   .bodySID = to.bodySID,
                   .indexSID = to.indexSID});
    if (old.name() != nullptr)
        package.name(*old.name());
    playInstead(metadata, {&old, trackID}, {&package, trackID});
    moveDescriptor(old, package, trackID);
    package.addTrack(*track);
    old.removeTrack(*track);
    copyTimecode(metadata, old, package);
    return package;
}

std::uint32_t freeTrackID(SourcePackage const& package, std::uint32_t wanted) {
    auto const isTaken = [&](std::uint32_t id) {
        auto const tracks = package.tracks();
        return std::any_of(tracks.begin(), tracks.end(), [&](auto const* track) {
            return track->trackID() != nullptr && *track->trackID() == id;
        });
    };
    while (wanted == 0 || isTaken(wanted))
        ++wanted;
    return wanted;
}

/// The package gets a multiple descriptor, unless it has one.
Structural::MultipleDescriptor& multipleDescriptor(PartitionMetadata& metadata, ContainerCopy const& copy) {
    auto* const present = dynamic_cast<Structural::FileDescriptor*>(copy.package->descriptor());
    if (auto* const several = dynamic_cast<Structural::MultipleDescriptor*>(present))
        return *several;
    auto& made = Structural::create<Structural::MultipleDescriptor>(metadata);
    if (present != nullptr) {
        made.addFileDescriptor(*present);
        if (present->linkedTrackID() == nullptr && !copy.essence.tracks.empty())
            present->linkedTrackID(Types::UInt32(copy.essence.tracks.front().trackID));
        if (present->sampleRate() != nullptr)
            made.sampleRate(*present->sampleRate());
        if (present->essenceContainer() != nullptr)
            made.essenceContainer(*present->essenceContainer()); // until the streams are put together
        made.containerDuration(Types::Length(-1));
    }
    copy.package->descriptor(made);
    return made;
}

/// All but the timecode: the leading package has its own.
void moveTracks(PartitionMetadata const& metadata, ContainerCopy& from, SourcePackage& to) {
    auto const old = from.essence.tracks;
    for (auto* const track : from.package->tracks()) {
        if (Structural::isTimeCodeTrack(track) || track->trackID() == nullptr)
            continue;
        std::uint32_t const before = track->trackID()->value(), now = freeTrackID(to, before);
        auto* const descriptor = Structural::isEssenceTrack(track)
                                     ? Structural::fileDescriptorForTrack(*from.package, before)
                                     : nullptr;
        playInstead(metadata, {from.package, before}, {&to, now});
        if (descriptor != nullptr)
            descriptor->linkedTrackID(Types::UInt32(now));
        for (std::size_t i = 0; i < old.size(); ++i)
            if (old[i].trackID == before)
                from.essence.tracks[i].trackID = now;
        track->trackID(Types::UInt32(now));
        to.addTrack(*track);
    }
}

void merge(PartitionMetadata& metadata, ContainerCopy& from, ContainerCopy& into) {
    auto& several = multipleDescriptor(metadata, into);
    moveTracks(metadata, from, *into.package);
    auto const descriptors = descriptorsOf(*from.package);
    for (auto* const descriptor : descriptors)
        if (descriptors.size() == 1 || descriptor != descriptors.front())
            several.addFileDescriptor(*descriptor);
    removePackage(metadata, *from.package);
    into.beside.push_back(std::move(from.essence));
}

/// Throws unless the packages are played together from their starts.
void requireTogether(PartitionMetadata const& metadata, ContainerCopies& copies, ContainerCopy const& into) {
    auto const packages = metadata.packages();
    if (std::count_if(packages.begin(), packages.end(), [](auto* set) {
            return dynamic_cast<Structural::MaterialPackage*>(set) != nullptr;
        }) != 1)
        throw InvalidValue("--pattern op1a: there is not one material package");
    auto const secondsBefore = [](ContainerCopy const& copy) {
        return Utils::framesToSeconds(copy.essence.origin(), copy.container().editRate());
    };
    for (auto const& copy : copies) {
        if (copy.essence.tracks.empty())
            throw InvalidValue("--pattern op1a: a package has no essence track that is known");
        if (secondsBefore(copy) != secondsBefore(into))
            throw InvalidValue("--pattern op1a: the packages have different origins");
    }
    forClips(metadata, [&](auto const& package, Structural::SourceClip const& clip) {
        auto const* const material = dynamic_cast<Structural::MaterialPackage const*>(&package);
        if (material != nullptr && copyInto(copies, clip.sourcePackageID()) != nullptr &&
            clip.startPosition() != nullptr && *clip.startPosition() != 0)
            throw InvalidValue("--pattern op1a: a part of a package is played");
    });
}

} // namespace

std::uint32_t StreamIDs::next() {
    std::uint32_t sid = 1;
    while (!taken_.insert(sid).second)
        ++sid;
    return sid;
}

bool splitPackages(PartitionMetadata& metadata, ContainerCopies& copies, StreamIDs& streams) {
    bool isAny = false;
    for (auto copy = copies.begin(); copy != copies.end(); ++copy) {
        auto const tracks = copy->essence.tracks;
        auto const behind = std::next(copy);
        for (std::size_t i = 1; i < tracks.size(); ++i) {
            ContainerCopy own{.essence = {copy->essence.input, copy->essence.container, {tracks[i]}},
                              .bodySID = streams.next(),
                              .hasSystemItem = false};
            own.indexSID = copy->indexSID != 0 ? streams.next() : 0;
            own.package = &moveIntoOwnPackage(metadata, *copy, own, tracks[i].trackID);
            updateKeys(*copies.insert(behind, std::move(own)));
        }
        if (tracks.size() < 2)
            continue;
        isAny = true;
        copy->essence.tracks.resize(1);
        unwrapDescriptor(metadata, *copy->package);
        updateKeys(*copy);
        copy = std::prev(behind);
    }
    return isAny;
}

bool mergePackages(PartitionMetadata& metadata, ContainerCopies& copies) {
    if (copies.size() < 2)
        return false;
    auto& into = leadingCopy(copies);
    requireTogether(metadata, copies, into);
    for (auto copy = copies.begin(); copy != copies.end();) {
        if (&*copy == &into) {
            ++copy;
            continue;
        }
        merge(metadata, *copy, into);
        copy = copies.erase(copy);
    }
    return true;
}

} // namespace Zelm
