#include "PlayedDescriptions.h"

#include "Filler.h"

#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Metadata/Structural/DataDefinitions.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Utils/TimeBase.h>

#include <algorithm>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::PartitionMetadata;
namespace Structural = Metadata::Structural;
namespace Properties = Metadata::Structural::Properties;

namespace {

bool isRate(Templates::Rational<int> const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

/// The rate of the essence, for a track that has none of its own.
Templates::Rational<int> essenceRate(Structural::MaterialPackage const& package) {
    Templates::list<Structural::TimelineTrack*> tracks;
    Structural::getAllEssenceTracks(package, tracks);
    return tracks.empty() ? Templates::Rational<int>{0, 1} : editRateOf(*tracks.front());
}

/// A track with time, in place of one without.
Structural::TimelineTrack& withTime(PartitionMetadata& metadata, Structural::Track& fixed,
                                    Templates::Rational<int> const& rate, Seconds const& length) {
    auto& track = Structural::create<Structural::TimelineTrack>(metadata);
    if (fixed.trackNumber() != nullptr)
        track.trackNumber(*fixed.trackNumber());
    if (fixed.trackName() != nullptr)
        track.trackName(*fixed.trackName());
    track.editRate(Types::Rational(rate));
    track.origin(Types::Position(0));
    track.sequence(*fixed.sequence());
    metadata.removeMetadataSet(*fixed.instanceUID());
    setLength(track, Utils::secondsToFrames(length, rate));
    return track;
}

/// A position in a file may be any number.
std::int64_t later(std::int64_t position, std::int64_t units) {
    constexpr auto latest = std::numeric_limits<std::int64_t>::max();
    return units > 0 && position > latest - units ? latest : position + units;
}

/// Nothing is said for so long, then what was said at once.
void delaySegments(PartitionMetadata& metadata, Structural::Sequence& sequence, std::int64_t units) {
    auto const& label = Properties::structuralComponents.label;
    auto const segments = sequence.referencedSets(label);
    if (units <= 0 || sequence.dataDefinition() == nullptr)
        return;
    sequence.addReference(label, createFiller(metadata, *sequence.dataDefinition(), units));
    for (auto* const segment : segments) {
        sequence.removeReference(label, *segment);
        sequence.addReference(label, *segment);
    }
    if (auto const length = lengthOf(sequence); length >= 0)
        sequence.duration(Types::Length(later(length, units)));
}

void delayEvents(Structural::Sequence& sequence, std::int64_t units) {
    for (auto* const component : sequence.structuralComponents())
        if (auto* const event = dynamic_cast<Structural::DMSegment*>(component);
            event != nullptr && event->eventStartPosition() != nullptr)
            event->eventStartPosition(Types::Position(later(event->eventStartPosition()->value(), units)));
}

/// What is said of tracks is said of those that play them.
void renumberTracks(Structural::Sequence& sequence, TrackIDs const& tracks) {
    for (auto* const component : sequence.structuralComponents()) {
        auto* const segment = dynamic_cast<Structural::DMSegment*>(component);
        if (segment == nullptr || segment->trackIDs() == nullptr ||
            segment->trackIDs()->subType() != Types::Identifiers::UInt32)
            continue;
        auto const before = *segment->trackIDs();
        segment->resetTrackIDs();
        for (std::size_t i = 0; i < before.count(); ++i)
            if (auto const now = tracks.find(before.at<Types::UInt32>(i).value()); now != tracks.end())
                segment->addTrackID(Types::UInt32(now->second));
    }
}

std::uint32_t freeTrackID(Structural::GenericPackage const& package) {
    std::uint32_t highest = 0;
    for (auto const* const track : package.tracks())
        if (track->trackID() != nullptr)
            highest = std::max(highest, track->trackID()->value());
    return highest + 1;
}

} // namespace

bool isDescriptive(Structural::Track const& track) {
    auto const* const definition =
        track.sequence() != nullptr ? Structural::dataDefinitionOf(track) : nullptr;
    if (definition == nullptr)
        return false;
    KLV::Key key(definition->rawBuffer());
    key[7] = Structural::DataDefinitions::descriptiveMetadata[7]; // any version
    return key == Structural::DataDefinitions::descriptiveMetadata;
}

Structural::Track& describePlayed(PartitionMetadata& metadata, Structural::MaterialPackage& package,
                                  Structural::Track& copy, PlayedTime const& time, TrackIDs const& tracks) {
    auto* track = &copy;
    auto const rate = essenceRate(package);
    if (dynamic_cast<Structural::StaticTrack*>(track) != nullptr && isRate(rate))
        track = &withTime(metadata, copy, rate, time.length);
    renumberTracks(*track->sequence(), tracks);
    if (auto const* const events = dynamic_cast<Structural::EventTrack*>(track)) {
        if (events->eventEditRate() != nullptr && isRate(events->eventEditRate()->value()))
            delayEvents(*track->sequence(),
                        Utils::secondsToFrames(time.start, events->eventEditRate()->value()));
    } else if (auto const* const timeline = dynamic_cast<Structural::TimelineTrack*>(track);
               timeline != nullptr && isRate(editRateOf(*timeline))) {
        delaySegments(metadata, *track->sequence(),
                      Utils::secondsToFrames(time.start, editRateOf(*timeline)));
    }
    track->trackID(Types::UInt32(freeTrackID(package)));
    package.addTrack(*track);
    return *track;
}

} // namespace Zelm
