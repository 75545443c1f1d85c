#include "PlayedAsOne.h"

#include "Likeness.h"
#include "MetadataParts.h"
#include "PlayedDescriptions.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::PartitionMetadata;
namespace Structural = Metadata::Structural;

namespace {

auto const& componentsLabel = Structural::Properties::structuralComponents.label;

[[noreturn]] void refuse(std::string const& why) {
    throw Exceptions::InvalidValue("--pattern op1a: the packages cannot be one: " + why);
}

using Tracks = Templates::list<Structural::TimelineTrack*>;
using Copies = std::vector<ContainerCopy*>;

Tracks onlyMaterialTracks(PartitionMetadata const& metadata) {
    Tracks tracks;
    std::size_t packages = 0;
    for (auto* const set : metadata.packages())
        if (auto const* const package = dynamic_cast<Structural::MaterialPackage*>(set)) {
            ++packages;
            Structural::getAllEssenceTracks(*package, tracks);
        }
    if (packages != 1)
        refuse("there are several material packages");
    return tracks;
}

/// A clip plays its track from the start, where all that is there is shown, to the end.
bool isWhole(Structural::SourceClip const& clip, Structural::TimelineTrack const& track) {
    auto const length = lengthOf(clip);
    std::int64_t const there = Structural::durationOf(track).value();
    return (clip.startPosition() == nullptr || *clip.startPosition() == 0) &&
           (track.origin() == nullptr || *track.origin() == 0) &&
           (length < 0 || there < 0 || length == there);
}

/// The place of a track among those of its container.
std::size_t placeOf(ContainerCopy const& copy, std::uint32_t trackID) {
    auto const& tracks = copy.essence.tracks;
    auto const found = std::find_if(tracks.begin(), tracks.end(),
                                    [&](CopiedTrack const& track) { return track.trackID == trackID; });
    return static_cast<std::size_t>(found - tracks.begin());
}

/// What a track of the material package plays: the same track of one package after another.
Copies playedBy(Structural::TimelineTrack const& track, ContainerCopies& copies) {
    Copies played;
    std::optional<std::size_t> place;
    for (auto* const component : track.sequence()->referencedSets(componentsLabel)) {
        auto const* const clip = dynamic_cast<Structural::SourceClip const*>(component);
        auto* const copy = clip != nullptr ? copyInto(copies, clip->sourcePackageID()) : nullptr;
        if (copy == nullptr || clip->sourceTrackID() == nullptr)
            refuse("something else is played, or nothing at times");
        auto const id = clip->sourceTrackID()->value();
        auto const* const source = timelineTrack(*copy->package, id);
        if (source == nullptr || !isWhole(*clip, *source))
            refuse("parts of packages are played");
        auto const here = placeOf(*copy, id);
        if (here == copy->essence.tracks.size())
            refuse("a track is played that has no essence");
        if (place.value_or(here) != here)
            refuse("tracks are played in another order");
        place = here;
        played.push_back(copy);
    }
    return played;
}

Copies playedByAll(Tracks const& tracks, ContainerCopies& copies) {
    if (tracks.empty())
        refuse("nothing is played");
    auto const played = playedBy(*tracks.front(), copies);
    for (auto const* const track : tracks)
        if (playedBy(*track, copies) != played)
            refuse("not all tracks play the same packages");
    for (auto& copy : copies)
        if (std::count(played.begin(), played.end(), &copy) != 1)
            refuse("not each package is played once");
    return played;
}

void requireNothingSaid(Structural::SourcePackage const& package) {
    for (auto const* const track : package.tracks())
        if (isDescriptive(*track))
            refuse("one that would go has descriptive metadata");
}

bool isReferredTo(PartitionMetadata const& metadata, Types::UMID32 const& package) {
    for (auto* const set : metadata.packages())
        if (auto const* const each = dynamic_cast<Structural::GenericPackage*>(set))
            for (auto const* const track : each->tracks())
                for (auto const* const clip : clipsOf(*track))
                    if (clip->sourcePackageID() != nullptr && *clip->sourcePackageID() == package)
                        return true;
    return false;
}

std::vector<Types::UMID32> originsOf(Structural::SourcePackage const& package) {
    std::vector<Types::UMID32> origins;
    for (auto const* const track : package.tracks())
        for (auto const* const clip : clipsOf(*track))
            if (clip->sourcePackageID() != nullptr)
                origins.push_back(*clip->sourcePackageID());
    return origins;
}

/// Removes packages, and those from which nothing but they was made.
void removeWithOrigins(PartitionMetadata& metadata, std::vector<Structural::SourcePackage*> waiting) {
    std::set<Structural::SourcePackage const*> taken(waiting.begin(), waiting.end());
    while (!waiting.empty()) {
        auto& package = *waiting.back();
        waiting.pop_back();
        auto const origins = originsOf(package);
        removePackage(metadata, package);
        for (auto const& origin : origins)
            if (auto* const found = dynamic_cast<Structural::SourcePackage*>(packageOf(metadata, origin));
                found != nullptr && !isReferredTo(metadata, origin) && taken.insert(found).second)
                waiting.push_back(found);
    }
}

void playFirstOnly(PartitionMetadata& metadata, Structural::TimelineTrack const& track) {
    auto const clips = track.sequence()->referencedSets(componentsLabel);
    for (std::size_t i = 1; i < clips.size(); ++i) {
        track.sequence()->removeReference(componentsLabel, *clips[i]);
        removeWithOwned(metadata, *clips[i]);
    }
}

} // namespace

void playAsOne(PartitionMetadata& metadata, ContainerCopies& copies, std::string const& name) {
    auto const tracks = onlyMaterialTracks(metadata);
    auto const played = playedByAll(tracks, copies);
    auto& first = *played.front();
    for (auto const* const copy : played) {
        requireAlike({first.container()}, name, {copy->container()}, name);
        if (copy->essence.tracks.size() != first.essence.tracks.size())
            refuse("of one of them tracks are left out");
        if (copy != &first)
            requireNothingSaid(*copy->package);
    }
    for (auto const* const track : tracks)
        playFirstOnly(metadata, *track);
    std::vector<Structural::SourcePackage*> gone;
    for (auto* const copy : played)
        if (copy != &first) {
            first.following.push_back(copy->essence);
            gone.push_back(copy->package);
        }
    removeWithOrigins(metadata, std::move(gone));
    copies.remove_if([&](ContainerCopy const& copy) { return &copy != &first; });
}

} // namespace Zelm
