#include "CopyTime.h"

#include "CopiedTracks.h"
#include "FrameContainers.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Utils/TimeBase.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
namespace Structural = Metadata::Structural;
using Metadata::PartitionMetadata;

namespace {

/// Longer than any file, in seconds.
constexpr Seconds endless = {std::int64_t{1} << 30, 1};

std::vector<Structural::MaterialPackage*> materialPackages(PartitionMetadata const& metadata) {
    std::vector<Structural::MaterialPackage*> found;
    for (auto* const set : metadata.packages())
        if (auto* const package = dynamic_cast<Structural::MaterialPackage*>(set))
            found.push_back(package);
    return found;
}

/// Calls `use` with each timeline track of a package that has a rate and a sequence.
template <class Use>
void forTimelines(Structural::GenericPackage const& package, Use const& use) {
    for (auto* const candidate : package.tracks())
        if (auto* const track = dynamic_cast<Structural::TimelineTrack*>(candidate);
            track != nullptr && track->sequence() != nullptr && editRateOf(*track).isKnown())
            use(*track);
}

/// The same for all material packages.
template <class Use>
void forMaterialTracks(PartitionMetadata const& metadata, Use const& use) {
    for (auto const* const package : materialPackages(metadata))
        forTimelines(*package, use);
}

bool playsSeveralClips(PartitionMetadata const& metadata) {
    bool isSeveral = false;
    forMaterialTracks(metadata, [&](auto const& track) {
        isSeveral = isSeveral || (Structural::isEssenceTrack(&track) && clipsOf(track).size() > 1);
    });
    return isSeveral;
}

ContainerCopy* copyPlayedBy(ContainerCopies& copies, Metadata::MetadataSet* component) {
    auto const* const clip = dynamic_cast<Structural::SourceClip*>(component);
    return clip != nullptr ? copyInto(copies, clip->sourcePackageID()) : nullptr;
}

std::int64_t startOf(Metadata::MetadataSet const& clip) {
    auto const* const start = dynamic_cast<Structural::SourceClip const&>(clip).startPosition();
    return start != nullptr ? std::clamp<std::int64_t>(start->value(), 0, everyUnit.last / 2) : 0;
}

void widen(std::optional<TimeSpan>& span, TimeSpan const& more) {
    if (!span)
        span = more;
    if (more.first.toDouble() < span->first.toDouble())
        span->first = more.first;
    if (more.last.toDouble() > span->last.toDouble())
        span->last = more.last;
}

/// Adds what a material track plays in that time of each copy. Notes those that it plays at any time.
void widenSpans(Structural::TimelineTrack const& track, TimeSpan const& shown, ContainerCopies& copies,
                std::set<ContainerCopy const*>& played) {
    auto const rate = editRateOf(track);
    auto const first = Utils::secondsToFrames(shown.first, rate);
    auto const last = std::max(Utils::secondsToFrames(shown.last, rate), first);
    for (auto const& part : partsWithin(*track.sequence(), first, last)) {
        auto* const copy = copyPlayedBy(copies, part.component);
        if (copy == nullptr)
            continue;
        played.insert(copy);
        std::int64_t const start = startOf(*part.component);
        if (part.end > part.begin)
            widen(copy->span, {Utils::framesToSeconds(start + part.begin, rate),
                               Utils::framesToSeconds(start + part.end, rate)});
    }
}

TimeSpan shownSpan(PartitionMetadata const& metadata, ContainerCopies& copies, RangeChoice const& range) {
    auto const& leading = leadingCopy(copies);
    auto const rate = leading.container().editRate();
    auto const origin = playsSeveralClips(metadata) ? 0 : leading.essence.origin();
    UnitTimecodes const timecodes(packagesOf(leading.container().metadata), rate, origin);
    auto const units = timecodes.units(range);
    bool const isOpen = units.last == everyUnit.last;
    return {Utils::framesToSeconds(std::max(units.first, origin) - origin, rate),
            isOpen ? endless : Utils::framesToSeconds(units.last - origin, rate)};
}

/// Edit units of a package on a track with that rate: what is shown of them.
std::int64_t shownUnits(ContainerCopy const& copy, Templates::Rational<int> const& rate) {
    return inRate(std::max<std::int64_t>(copy.units() - copy.origin, 0), copy.rate, rate);
}

/// Clips play no more than there is. Returns the length of the track, -1 when it is not known.
std::int64_t finishClips(Structural::TimelineTrack& track, ContainerCopies& copies) {
    std::int64_t length = 0;
    auto& sequence = *track.sequence();
    for (auto const& part : partsWithin(sequence, 0, everyUnit.last)) {
        std::int64_t known = lengthOf(*part.component);
        if (auto const* const copy = copyPlayedBy(copies, part.component);
            copy != nullptr && copy->knowsUnits()) {
            auto const there =
                std::max<std::int64_t>(shownUnits(*copy, editRateOf(track)) - startOf(*part.component), 0);
            if (known < 0 || known > there)
                setLength(*part.component, known = there);
        }
        length = known < 0 || length < 0 || length > everyUnit.last - known ? -1 : length + known;
    }
    if (length >= 0 && (lengthOf(sequence) < 0 || lengthOf(sequence) > length))
        sequence.duration(Types::Length(length));
    return length;
}

void finishMaterial(Structural::MaterialPackage const& package, ContainerCopies& copies) {
    Seconds longest = {0, 1};
    forTimelines(package, [&](auto& track) {
        std::int64_t const length = Structural::isEssenceTrack(&track) ? finishClips(track, copies) : -1;
        if (length <= 0)
            return;
        auto const seconds = Utils::framesToSeconds(length, editRateOf(track));
        if (seconds.toDouble() > longest.toDouble())
            longest = seconds;
    });
    if (longest.numerator == 0)
        return;
    forTimelines(package, [&](auto& track) {
        if (!Structural::isEssenceTrack(&track))
            limitLength(track, Utils::secondsToFrames(longest, editRateOf(track)));
    });
}

void finishPackage(ContainerCopy const& copy) {
    forTimelines(*copy.package,
                 [&](auto& track) { limitLength(track, shownUnits(copy, editRateOf(track))); });
    for (auto* const descriptor : descriptorsOf(*copy.package)) {
        auto const* const length = descriptor->containerDuration();
        auto const* const rate = descriptor->sampleRate();
        if (length == nullptr || rate == nullptr || rate->value().denominator <= 0 ||
            rate->value().numerator <= 0)
            continue;
        std::int64_t const whole = inRate(copy.units(), copy.rate, rate->value());
        if (length->value() < 0 || length->value() > whole)
            descriptor->containerDuration(Types::Length(whole));
    }
}

void forgetContainerDurations(Structural::SourcePackage const& package) {
    for (auto* const descriptor : descriptorsOf(package))
        if (descriptor->containerDuration() != nullptr)
            descriptor->containerDuration(Types::Length(-1));
}

} // namespace

TimeSpan chooseSpans(PartitionMetadata& metadata, ContainerCopies& copies, RangeChoice const& range) {
    auto const shown = shownSpan(metadata, copies, range);
    std::set<ContainerCopy const*> played;
    forMaterialTracks(metadata, [&](auto const& track) { widenSpans(track, shown, copies, played); });
    for (auto& copy : copies)
        if (!played.contains(&copy))
            copy.span = shown;
    if (std::none_of(copies.begin(), copies.end(), [](auto const& copy) { return copy.span.has_value(); }))
        throw Exceptions::InvalidValue("nothing is played in that range");
    for (auto const& copy : copies)
        if (!copy.span)
            leaveOut(metadata, copy);
    copies.remove_if([](auto const& copy) { return !copy.span; });
    return shown;
}

void cutPackages(PartitionMetadata& metadata, ContainerCopies& copies, TimeSpan const& shown) {
    PackageStarts starts;
    for (auto const& copy : copies)
        if (copy.package->packageUID() != nullptr)
            starts[*copy.package->packageUID()] = copy.span->first;
    for (auto* const package : materialPackages(metadata))
        cutTracks(metadata, *package, shown.first, shown.last, starts);
    for (auto& copy : copies) {
        cutTracks(metadata, *copy.package, copy.span->first, copy.span->last, {});
        copy.origin = copy.preCharge;
        forTimelines(*copy.package, [&](auto& track) {
            if (track.origin() != nullptr && Structural::isEssenceTrack(&track))
                track.origin(Types::Position(inRate(copy.preCharge, copy.rate, editRateOf(track))));
        });
        forgetContainerDurations(*copy.package);
    }
}

void forgetLengths(PartitionMetadata& metadata, ContainerCopies const& copies) {
    auto const forget = [](Structural::TimelineTrack& track) {
        if (Structural::isEssenceTrack(&track) || Structural::isTimeCodeTrack(&track))
            forgetLength(track);
    };
    forMaterialTracks(metadata, forget);
    for (auto const& copy : copies) {
        forTimelines(*copy.package, forget);
        forgetContainerDurations(*copy.package);
    }
}

void finishLengths(PartitionMetadata& metadata, ContainerCopies& copies) {
    for (auto const& copy : copies)
        if (copy.knowsUnits())
            finishPackage(copy);
    for (auto const* const package : materialPackages(metadata))
        finishMaterial(*package, copies);
}

std::optional<std::int64_t> declaredUnits(CopiedEssence const& essence) {
    std::optional<std::int64_t> most;
    for (auto const& track : essence.container->tracks)
        if (track.duration >= 0 && track.origin >= 0 && track.duration < everyUnit.last - track.origin &&
            track.editRate == essence.container->editRate())
            most = std::max(most.value_or(0), track.origin + track.duration);
    return most;
}

std::optional<std::int64_t> expectedUnits(ContainerCopy const& copy) {
    auto sum = declaredUnits(copy.essence);
    for (auto const& more : copy.following) {
        auto const units = declaredUnits(more);
        sum = sum && units && *sum < everyUnit.last - *units ? std::optional(*sum + *units) : std::nullopt;
    }
    auto const wanted = copy.wanted();
    if (wanted.last != everyUnit.last && copy.span->last.toDouble() < endless.toDouble())
        sum = std::min(sum.value_or(wanted.last), wanted.last);
    if (!sum)
        return std::nullopt;
    return inRate(std::max<std::int64_t>(*sum - wanted.first, 0), copy.container().editRate(), copy.rate) +
           copy.preCharge;
}

} // namespace Zelm
