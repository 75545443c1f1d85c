#include "CopiedTracks.h"

#include "TrackChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using GenericContainer::ElementKey;

namespace {

std::uint32_t withCount(std::uint32_t trackNumber, std::size_t count) {
    return (trackNumber & 0xFF00FFFFu) | static_cast<std::uint32_t>(count & 0x7F) << 16;
}

/// The containers of the file as the names count them.
std::vector<EssenceContainer> containersOf(ContainerCopies const& copies) {
    std::vector<EssenceContainer> containers;
    for (auto const& copy : copies)
        containers.push_back(copy.container());
    return containers;
}

class NamedTracks {
public:
    NamedTracks(std::vector<EssenceContainer> const& containers, std::vector<std::string> const& names) {
        for (auto const& name : names) {
            auto const found = chooseTracks(containers, name);
            if (found.empty())
                throw InvalidValue("there is no essence track " + name +
                                   "; the tracks are: " + trackNames(containers));
            for (auto const& one : found)
                named_.emplace_back(one.container->bodySID, one.track->trackID);
        }
    }

    bool empty() const { return named_.empty(); }
    bool holds(std::uint32_t bodySID, std::uint32_t trackID) const {
        return std::find(named_.begin(), named_.end(), std::pair(bodySID, trackID)) != named_.end();
    }

private:
    std::vector<std::pair<std::uint32_t, std::uint32_t>> named_; // body SID, track ID
};

std::size_t countOf(std::vector<CopiedTrack> const& tracks, std::uint8_t itemType) {
    return static_cast<std::size_t>(std::count_if(tracks.begin(), tracks.end(), [&](auto const& track) {
        return ElementKey(track.source->trackNumber).itemType() == itemType;
    }));
}

bool isLeft(std::vector<CopiedTrack> const& tracks, MXFIO::EssenceTrack const& track) {
    return std::any_of(tracks.begin(), tracks.end(), [&](auto const& left) { return left.source == &track; });
}

} // namespace

void updateKeys(ContainerCopy& copy) {
    auto const& left = copy.essence.tracks;
    copy.changes.clear();
    for (auto const& track : copy.container().tracks) {
        auto const count = countOf(left, ElementKey(track.trackNumber).itemType());
        copy.changes.push_back(
            {track.trackNumber, isLeft(left, track) ? withCount(track.trackNumber, count) : 0});
    }
    for (auto const& track : left)
        if (auto* const written = timelineTrack(*copy.package, track.trackID))
            written->trackNumber(Types::UInt32(withCount(
                track.source->trackNumber, countOf(left, ElementKey(track.source->trackNumber).itemType()))));
}

void leaveOut(Metadata::PartitionMetadata& metadata, ContainerCopy const& copy) {
    auto& package = *copy.package;
    for (auto const& track : copy.container().tracks)
        removeTrack(metadata, package, track.trackID);
    removePackage(metadata, package);
}

bool keepChosenTracks(Metadata::PartitionMetadata& metadata, ContainerCopies& copies,
                      std::vector<std::string> const& tracks, std::vector<std::string> const& without) {
    auto const containers = containersOf(copies);
    NamedTracks const chosen(containers, tracks), unwanted(containers, without);
    bool isLess = false;
    for (auto copy = copies.begin(); copy != copies.end();) {
        auto const sid = copy->bodySID;
        auto& left = copy->essence.tracks;
        std::erase_if(left, [&](CopiedTrack const& track) {
            return (!chosen.empty() && !chosen.holds(sid, track.trackID)) ||
                   unwanted.holds(sid, track.trackID);
        });
        auto const& all = copy->container().tracks;
        bool const isEmpty = left.empty() && !all.empty();
        if (isEmpty) {
            leaveOut(metadata, *copy);
        } else if (left.size() != all.size()) {
            for (auto const& track : all)
                if (!isLeft(left, track))
                    removeTrack(metadata, *copy->package, track.trackID);
            updateKeys(*copy);
        }
        isLess = isLess || left.size() != all.size();
        copy = isEmpty ? copies.erase(copy) : std::next(copy);
    }
    if (copies.empty() && !containers.empty())
        throw InvalidValue("no essence track is left; the tracks are: " + trackNames(containers));
    return isLess;
}

} // namespace Zelm
