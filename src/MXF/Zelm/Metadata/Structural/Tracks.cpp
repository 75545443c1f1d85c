#include "MXF/Zelm/Metadata/Structural/Tracks.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/Timecode.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::Metadata::Structural {

namespace {

constexpr std::int64_t unknownDuration = -1;

/// The components of a sequence, those of classes without a C++ class among them.
Templates::vector<MetadataSet*> componentsOf(Sequence const& sequence) {
    return sequence.referencedSets(Properties::structuralComponents.label);
}

/// -1 when one of them is not known or the sum does not fit.
std::int64_t sumOfDurations(Sequence const& sequence) {
    std::int64_t sum = 0;
    for (auto const* const component : componentsOf(sequence)) {
        auto const* const duration = component->value<Types::Length>(Properties::duration.label);
        if (duration == nullptr || *duration < 0 ||
            *duration > std::numeric_limits<std::int64_t>::max() - sum)
            return unknownDuration;
        sum += *duration;
    }
    return sum;
}

template <class Wanted>
void gather(GenericPackage const& package, Templates::list<TimelineTrack*>& tracks, Wanted wanted) {
    for (auto* const track : package.tracks())
        if (auto* const timeline = dynamic_cast<TimelineTrack*>(track); timeline != nullptr && wanted(track))
            tracks.push_back(timeline);
}

void require(bool holds, Exceptions::Condition condition, const char* message) {
    if (!holds)
        throw Exceptions::InvalidStructure(condition, message);
}

} // namespace

Types::UniversalLabel const* dataDefinitionOf(Track const& track) {
    auto const* const sequence = track.sequence();
    if (sequence == nullptr || sequence->dataDefinition() != nullptr)
        return sequence != nullptr ? sequence->dataDefinition() : nullptr;
    for (auto const* const component : componentsOf(*sequence))
        if (auto const* const label =
                component->value<Types::UniversalLabel>(Properties::dataDefinition.label))
            return label;
    return nullptr;
}

bool isEssenceTrack(Track const* track) {
    auto const* const label = track != nullptr ? dataDefinitionOf(*track) : nullptr;
    return label != nullptr && isEssenceDataDefinition(*label);
}

bool isTimeCodeTrack(Track const* track) {
    auto const* const label = track != nullptr ? dataDefinitionOf(*track) : nullptr;
    return label != nullptr && isTimecodeDataDefinition(*label);
}

void getAllTimelineTracks(GenericPackage const& package, Templates::list<TimelineTrack*>& tracks) {
    gather(package, tracks, [](Track const*) { return true; });
}

void getAllEssenceTracks(GenericPackage const& package, Templates::list<TimelineTrack*>& tracks) {
    gather(package, tracks, isEssenceTrack);
}

TimelineTrack* getTimecodeTrack(GenericPackage const& package) {
    Templates::list<TimelineTrack*> tracks;
    gather(package, tracks, isTimeCodeTrack);
    return tracks.empty() ? nullptr : tracks.front();
}

Types::Length durationOf(Track const& track) {
    auto const* const sequence = track.sequence();
    if (sequence == nullptr)
        return Types::Length(unknownDuration);
    auto const* const duration = sequence->duration();
    return duration != nullptr && *duration >= 0 ? *duration : Types::Length(sumOfDurations(*sequence));
}

bool trackBoundsInSeconds(TimelineTrack const* track, Templates::Rational<std::int64_t>& start,
                          Templates::Rational<std::int64_t>& end) {
    if (track == nullptr || track->editRate() == nullptr)
        return false;
    std::int64_t const duration = durationOf(*track);
    std::int64_t const origin = track->origin() != nullptr ? track->origin()->value() : 0;
    if (duration < 0 || origin < duration - std::numeric_limits<std::int64_t>::max())
        return false;
    try {
        auto const rate = track->editRate()->value();
        auto const last = Utils::framesToSeconds(duration - origin, rate);
        start = Utils::framesToSeconds(-origin, rate);
        end = last;
        return true;
    } catch (Exceptions::InvalidValue const&) {
        return false; // no such rate, or beyond 64 bits
    }
}

TimecodeComponent const& timecodeComponentOf(TimelineTrack const& track) {
    auto const* const sequence = track.sequence();
    require(sequence != nullptr, {"seq != 0"}, "Timecode track has no sequence");
    auto const components = componentsOf(*sequence);
    require(!components.empty(), {"count != 0"}, "Timecode track has no timecode components");
    auto const* const component = dynamic_cast<TimecodeComponent const*>(components.front());
    require(component != nullptr, {"tc != 0"}, "Timecode component has invalid type");
    return *component;
}

bool isDropFrame(TimecodeComponent const& component) {
    auto const* const dropFrame = component.dropFrame();
    require(dropFrame != nullptr, {"tc->dropFrame () != 0"},
            "Timecode component does not have the 'dropFrame' element");
    return dropFrame->value();
}

std::optional<Utils::TimeBase> timeBaseOf(TimecodeComponent const& component) {
    bool const drops = isDropFrame(component);
    auto const* const base = component.roundedTimecodeBase();
    if (base == nullptr || *base == 0)
        return std::nullopt;
    return Utils::TimeBase(*base, drops && Utils::TimeBase::canDrop(*base));
}

bool isDropFrame(TimelineTrack const* track) {
    if (track == nullptr)
        throw Exceptions::InvalidValue("There is no track to tell whether its timecode drops frames");
    return isDropFrame(timecodeComponentOf(*track));
}

void setReferencedMetadataSet(MetadataSet* set, Types::UniversalLabel const& label,
                              MetadataSet const* target) {
    if (set == nullptr)
        throw Exceptions::InvalidValue("There is no set whose reference could be set");
    if (target != nullptr)
        set->reference(label, *target);
    else
        set->removeElement(label);
}

} // namespace MXF::Zelm::Metadata::Structural
