#include "MXF/Zelm/OPBuilders/MaterialPlan.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"

#include <algorithm>

namespace MXF::Zelm::OPBuilders {

using namespace Metadata::Structural;

namespace {

constexpr std::int64_t unknown = -1;

/// Edit units at another rate.
std::int64_t converted(std::int64_t units, Templates::Rational<int> const& from,
                       Templates::Rational<int> const& to) {
    return from == to ? units : Utils::secondsToFrames(Utils::framesToSeconds(units, from), to);
}

std::int64_t trackLength(TimelineTrack const& track) {
    auto const* const sequence = track.sequence();
    auto const* const duration = sequence != nullptr ? sequence->duration() : nullptr;
    return duration != nullptr && *duration >= 0 ? duration->value() : unknown;
}

Types::UniversalLabel dataDefinitionOf(TimelineTrack const& track) {
    auto const* const sequence = track.sequence();
    auto const* const definition = sequence != nullptr ? sequence->dataDefinition() : nullptr;
    return definition != nullptr ? *definition : Types::UniversalLabel();
}

/// A track like one of a file package, without clips.
TimelineTrack& createTrackFor(Metadata::PartitionMetadata& metadata, GenericPackage& package,
                              TimelineTrack const& source) {
    auto& track = createTimelineTrack(metadata, package, dataDefinitionOf(source), 0, 0, editRateOf(source));
    if (source.trackName() != nullptr)
        track.trackName(*source.trackName());
    return track;
}

} // namespace

Templates::Rational<int> editRateOf(TimelineTrack const& track) {
    if (track.editRate() == nullptr)
        throw Exceptions::InvalidStructure("A track has no edit rate");
    return track.editRate()->value();
}

Templates::vector<TimelineTrack*> essenceTracks(GenericPackage const& package) {
    Templates::vector<TimelineTrack*> found;
    for (auto* const track : package.tracks())
        if (auto* const timeline = dynamic_cast<TimelineTrack*>(track);
            timeline != nullptr && isEssenceDataDefinition(dataDefinitionOf(*timeline)))
            found.push_back(timeline);
    return found;
}

void MaterialPlan::makeTracks(Metadata::PartitionMetadata& metadata, Utils::TimeCode const& start,
                              Templates::Rational<int> timecodeRate) {
    auto const tracks =
        items_.empty() ? Templates::vector<TimelineTrack*>() : essenceTracks(*items_.front().front().package);
    if (!timecodeRate.isKnown() && !tracks.empty())
        timecodeRate = editRateOf(*tracks.front());
    if (start.isDefined() && timecodeRate.isKnown())
        accompanying_.push_back(&addTimecodeTrack(metadata, *package_, start, timecodeRate));
    for (auto const& item : items_)
        addClips(metadata, item);
    addForeignTracks(metadata);
}

/// The first item makes the tracks.
void MaterialPlan::addClips(Metadata::PartitionMetadata& metadata, Templates::vector<ItemPart> const& item) {
    bool const isFirst = tracks_.empty();
    std::size_t index = 0;
    for (auto const& part : item) {
        auto const sources = essenceTracks(*part.package);
        for (auto const* const source : sources) {
            if (isFirst)
                tracks_.push_back({&createTrackFor(metadata, *package_, *source), {}});
            addClip(metadata, index++, {nullptr, source, part, editRateOf(*sources.front())});
        }
    }
    if (index != tracks_.size())
        throw Exceptions::InvalidStructure("An item has " + std::to_string(index) + " tracks, those before " +
                                           std::to_string(tracks_.size()));
}

void MaterialPlan::addClip(Metadata::PartitionMetadata& metadata, std::size_t index, Clip clip) {
    auto const rate = editRateOf(*clip.source);
    auto const definition = dataDefinitionOf(*clip.source);
    if (index >= tracks_.size() || editRateOf(*tracks_[index].track) != rate ||
        dataDefinitionOf(*tracks_[index].track) != definition)
        throw Exceptions::InvalidStructure("Track " + std::to_string(index + 1) +
                                           " of an item does not go on with what the item before has");
    clip.clip = &addSourceClip(metadata, tracks_[index].track->sequence(), definition, unknownLength,
                               converted(clip.part.start, clip.partRate, rate));
    linkSourceClip(*clip.clip, *clip.part.package, *clip.source);
    tracks_[index].clips.push_back(clip);
}

void MaterialPlan::addForeignTracks(Metadata::PartitionMetadata& metadata) {
    for (auto const& foreign : foreign_) {
        auto& track = createTimelineTrack(metadata, *package_, foreign.dataDefinition, 0, 0, foreign.editRate,
                                          foreign.name);
        auto& clip = addSourceClip(metadata, track.sequence(), foreign.dataDefinition, unknownLength, 0);
        clip.sourcePackageID(foreign.packageUID);
        clip.sourceTrackID(Types::UInt32(foreign.trackID));
        accompanying_.push_back(&track);
    }
}

/// In edit units of the clip's track: what the source has from the start on, or less.
std::int64_t MaterialPlan::lengthOf(Clip const& clip) {
    std::int64_t length = trackLength(*clip.source);
    if (length != unknown)
        length = std::max<std::int64_t>(length - clip.clip->startPosition()->value(), 0);
    if (!clip.part.length)
        return length;
    std::int64_t const wanted = converted(*clip.part.length, clip.partRate, editRateOf(*clip.source));
    return length == unknown ? wanted : std::min(length, wanted);
}

std::int64_t MaterialPlan::setLength(MadeTrack const& track) {
    std::int64_t sum = 0;
    for (auto const& clip : track.clips) {
        std::int64_t const length = lengthOf(clip);
        clip.clip->duration(Types::Length(length));
        sum = length == unknown || sum == unknown ? unknown : sum + length;
    }
    track.track->sequence()->duration(Types::Length(sum));
    return sum;
}

void MaterialPlan::setLengths() const {
    Templates::vector<std::int64_t> lengths;
    for (auto const& track : tracks_)
        lengths.push_back(setLength(track));
    if (lengths.empty() || lengths.front() == unknown)
        return;
    auto const rate = editRateOf(*tracks_.front().track);
    for (auto* const track : accompanying_)
        setTrackLength(*track,
                       static_cast<std::uint64_t>(converted(lengths.front(), rate, editRateOf(*track))));
}

} // namespace MXF::Zelm::OPBuilders
