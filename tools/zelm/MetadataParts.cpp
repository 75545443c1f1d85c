#include "MetadataParts.h"

#include "Writer.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/ContentStorage.h>
#include <MXF/Zelm/Metadata/Structural/EssenceContainerData.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/Identification.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Utils/TimeBase.h>

#include <algorithm>
#include <limits>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
namespace Structural = Metadata::Structural;
namespace Properties = Metadata::Structural::Properties;

namespace {

/// What the set owns.
std::vector<Types::UUID> ownedBy(MetadataSet const& set) {
    std::vector<Types::UUID> owned;
    for (auto const& element : set)
        if (auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(element.get());
            holder != nullptr && holder->isStrong())
            for (auto const& target : holder->targets())
                owned.push_back(target);
    return owned;
}

std::set<Types::UUID> allOwned(PartitionMetadata const& metadata) {
    std::set<Types::UUID> owned;
    for (auto const& [key, set] : metadata)
        for (auto const& target : ownedBy(*set))
            owned.insert(target);
    return owned;
}

std::int64_t sum(std::int64_t a, std::int64_t b) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    return b > 0 && a > most - b ? most : a + b;
}

bool refersTo(Structural::SourceClip const& clip, Types::UMID32 const& package, std::uint32_t trackID) {
    return clip.sourcePackageID() != nullptr && *clip.sourcePackageID() == package &&
           clip.sourceTrackID() != nullptr && *clip.sourceTrackID() == trackID;
}

/// Whether a track plays the track of that package and nothing else.
bool playsOnly(Structural::Track const& track, Types::UMID32 const& package, std::uint32_t trackID) {
    auto const* const sequence = track.sequence();
    if (sequence == nullptr)
        return false;
    bool plays = false;
    for (auto const* const component : sequence->structuralComponents())
        if (auto const* const clip = dynamic_cast<Structural::SourceClip const*>(component)) {
            if (!refersTo(*clip, package, trackID))
                return false;
            plays = true;
        }
    return plays;
}

/// In place of that track.
void playNothing(Structural::Track const& track, Types::UMID32 const& package, std::uint32_t trackID) {
    if (track.sequence() == nullptr)
        return;
    for (auto* const component : track.sequence()->structuralComponents())
        if (auto* const clip = dynamic_cast<Structural::SourceClip*>(component);
            clip != nullptr && refersTo(*clip, package, trackID)) {
            clip->sourcePackageID(Types::UMID32());
            clip->sourceTrackID(Types::UInt32(0));
        }
}

void removeTrackSet(PartitionMetadata& metadata, Structural::GenericPackage& package,
                    Structural::Track& track) {
    package.removeTrack(track);
    removeWithOwned(metadata, track);
}

/// A package with one track left has that track's descriptor alone.
void removeDescriptor(PartitionMetadata& metadata, Structural::SourcePackage& package,
                      std::uint32_t trackID) {
    auto* const several = dynamic_cast<Structural::MultipleDescriptor*>(package.descriptor());
    if (several == nullptr)
        return;
    auto const parts = several->fileDescriptors();
    for (auto* const part : parts)
        if (part->linkedTrackID() != nullptr && *part->linkedTrackID() == trackID && parts.size() > 1) {
            several->removeFileDescriptor(*part);
            removeWithOwned(metadata, *part);
            break;
        }
    auto const left = several->fileDescriptors();
    if (left.size() != 1 || !several->subDescriptors().empty())
        return;
    package.descriptor(*left.front());
    removeWithOwned(metadata, *several);
}

/// What a clip of a package that begins at `start` plays from edit unit `begin` of its own on.
void moveClip(Structural::SourceClip& clip, std::int64_t begin, Templates::Rational<int> const& rate,
              PackageStarts const& starts) {
    auto const* const source = clip.sourcePackageID();
    if (source == nullptr || source->isNull())
        return;
    auto const cut = starts.find(*source);
    std::int64_t const before = cut != starts.end() ? Utils::secondsToFrames(cut->second, rate) : 0;
    constexpr auto farthest = std::numeric_limits<std::int64_t>::max() / 2;
    auto const start = std::clamp<std::int64_t>(
        clip.startPosition() != nullptr ? clip.startPosition()->value() : 0, -farthest, farthest);
    clip.startPosition(Types::Position(sum(start, begin) - before));
}

void cutComponent(ComponentPart const& part, Templates::Rational<int> const& rate,
                  PackageStarts const& starts) {
    setLength(*part.component, part.end - part.begin);
    if (auto* const timecode = dynamic_cast<Structural::TimecodeComponent*>(part.component)) {
        auto const start = timecode->startTimecode() != nullptr ? timecode->startTimecode()->value() : 0;
        timecode->startTimecode(Types::Position(sum(start, part.begin)));
    } else if (auto* const clip = dynamic_cast<Structural::SourceClip*>(part.component)) {
        moveClip(*clip, part.begin, rate, starts);
    }
}

/// Cuts a sequence to the edit units from `from` to before `to`.
void cutSequence(PartitionMetadata& metadata, Structural::Sequence& sequence, std::int64_t from,
                 std::int64_t to, Templates::Rational<int> const& rate, PackageStarts const& starts) {
    std::int64_t length = 0;
    auto const& label = Properties::structuralComponents.label;
    for (auto const& part : partsWithin(sequence, from, to)) {
        length += part.end - part.begin;
        if (part.end > part.begin || sequence.referencedSets(label).size() == 1) {
            cutComponent(part, rate, starts);
        } else {
            sequence.removeReference(label, *part.component);
            removeWithOwned(metadata, *part.component);
        }
    }
    if (sequence.duration() != nullptr)
        sequence.duration(Types::Length(length));
}

/// Events outside of the time go, the others move.
void cutEvents(PartitionMetadata& metadata, Structural::Sequence& sequence, std::int64_t from,
               std::int64_t to) {
    for (auto* const component : sequence.structuralComponents()) {
        auto* const event = dynamic_cast<Structural::DMSegment*>(component);
        if (event == nullptr || event->eventStartPosition() == nullptr)
            continue;
        std::int64_t const start = event->eventStartPosition()->value();
        std::int64_t const length = std::max<std::int64_t>(lengthOf(*event), 1);
        if ((start >= to || sum(start, length) <= from) && sequence.structuralComponents().size() > 1) {
            sequence.removeStructuralComponent(*event);
            removeWithOwned(metadata, *event);
            continue;
        }
        event->eventStartPosition(Types::Position(std::max<std::int64_t>(start - from, 0)));
    }
}

bool isRate(Types::Rational const* rate) {
    return rate != nullptr && rate->value().numerator > 0 && rate->value().denominator > 0;
}

using Labels = std::vector<Types::UniversalLabel>;

bool holds(Labels const& labels, Types::UniversalLabel const& label) {
    return std::find(labels.begin(), labels.end(), label) != labels.end();
}

void addLabel(Labels& labels, Types::UniversalLabel const* label) {
    if (label != nullptr && !holds(labels, *label))
        labels.push_back(*label);
}

} // namespace

void forOwned(PartitionMetadata const& metadata, MetadataSet& set,
              std::function<void(MetadataSet&)> const& use) {
    std::set<MetadataSet const*> seen = {&set};
    std::vector<MetadataSet*> waiting = {&set};
    while (!waiting.empty()) {
        auto* const next = waiting.back();
        waiting.pop_back();
        use(*next);
        for (auto const& target : ownedBy(*next))
            if (auto* const owned = metadata.find(target); owned != nullptr && seen.insert(owned).second)
                waiting.push_back(owned);
    }
}

void removeWithOwned(PartitionMetadata& metadata, MetadataSet& set) {
    auto const* const uid = set.instanceUID();
    if (uid == nullptr || allOwned(metadata).contains(*uid))
        return;
    auto const owned = ownedBy(set);
    metadata.removeMetadataSet(Types::UUID(*uid));
    for (auto const& target : owned)
        if (auto* const below = metadata.find(target))
            removeWithOwned(metadata, *below);
}

void renamePackage(PartitionMetadata& metadata, Types::UMID32 const& from, Types::UMID32 const& to) {
    for (auto const& [key, set] : metadata)
        for (auto const& element : *set)
            if (auto const* const umid = Types::valueCast<Types::UMID32>(element->baseValue());
                umid != nullptr && *umid == from)
                element->baseValue(to);
}

void removeTrack(PartitionMetadata& metadata, Structural::SourcePackage& package, std::uint32_t trackID) {
    for (auto* const candidate : metadata.packages()) {
        auto* const other = dynamic_cast<Structural::GenericPackage*>(candidate);
        for (auto* const track : other != nullptr && package.packageUID() != nullptr
                                     ? other->tracks()
                                     : Templates::vector<Structural::Track*>())
            if (playsOnly(*track, *package.packageUID(), trackID))
                removeTrackSet(metadata, *other, *track);
            else
                playNothing(*track, *package.packageUID(), trackID);
    }
    for (auto* const track : package.tracks())
        if (track->trackID() != nullptr && *track->trackID() == trackID)
            removeTrackSet(metadata, package, *track);
    removeDescriptor(metadata, package, trackID);
}

Structural::GenericPackage* packageOf(PartitionMetadata const& metadata, Types::UMID32 const& uid) {
    for (auto* const set : metadata.packages())
        if (auto* const package = dynamic_cast<Structural::GenericPackage*>(set);
            package != nullptr && package->packageUID() != nullptr && *package->packageUID() == uid)
            return package;
    return nullptr;
}

void removePackage(PartitionMetadata& metadata, Structural::SourcePackage& package) {
    auto* const storage = Structural::findPreface(metadata).contentStorage();
    for (auto* const data : storage->essenceContainerData())
        if (data->linkedPackageUID() != nullptr && package.packageUID() != nullptr &&
            *data->linkedPackageUID() == *package.packageUID()) {
            storage->removeEssenceContainerData(*data);
            removeWithOwned(metadata, *data);
        }
    storage->removePackage(package);
    removeWithOwned(metadata, package);
}

std::vector<ComponentPart> partsWithin(Structural::Sequence const& sequence, std::int64_t from,
                                       std::int64_t to) {
    std::vector<ComponentPart> parts;
    std::int64_t position = 0;
    for (auto* const component : sequence.referencedSets(Properties::structuralComponents.label)) {
        std::int64_t const known = lengthOf(*component);
        std::int64_t const length = known >= 0 ? known : std::max<std::int64_t>(to - position, 0);
        std::int64_t const begin = std::clamp<std::int64_t>(from - position, 0, length);
        std::int64_t const end = std::clamp<std::int64_t>(to - position, begin, length);
        parts.push_back({component, begin, end});
        position = sum(position, length);
    }
    return parts;
}

void cutTracks(PartitionMetadata& metadata, Structural::GenericPackage& package, Seconds const& from,
               Seconds const& to, PackageStarts const& starts) {
    for (auto* const track : package.tracks()) {
        auto* const sequence = track->sequence();
        auto const* const timeline = dynamic_cast<Structural::TimelineTrack*>(track);
        auto const* const events = dynamic_cast<Structural::EventTrack*>(track);
        auto const* const rate = timeline != nullptr ? timeline->editRate()
                                 : events != nullptr ? events->eventEditRate()
                                                     : nullptr;
        if (sequence == nullptr || !isRate(rate))
            continue;
        std::int64_t const first = Utils::secondsToFrames(from, rate->value());
        std::int64_t const last = Utils::secondsToFrames(to, rate->value());
        if (events != nullptr)
            cutEvents(metadata, *sequence, first, last);
        else
            cutSequence(metadata, *sequence, first, last, rate->value(), starts);
    }
}

std::int64_t lengthOf(MetadataSet const& set) {
    auto const* const length = set.value<Types::Length>(Properties::duration.label);
    return length != nullptr ? std::max<std::int64_t>(length->value(), -1) : -1;
}

void setLength(MetadataSet& set, std::int64_t length) {
    if (dynamic_cast<Structural::StructuralComponent*>(&set) != nullptr ||
        set.findElement(Properties::duration.label) != nullptr)
        set.value(Properties::duration.label, Types::Length(length));
}

void setLength(Structural::Track& track, std::int64_t length) {
    auto* const sequence = track.sequence();
    if (sequence == nullptr)
        return;
    auto const components = sequence->referencedSets(Properties::structuralComponents.label);
    if (components.size() == 1)
        setLength(*components.front(), length);
    if (components.size() <= 1 || lengthOf(*sequence) < 0)
        sequence->duration(Types::Length(length));
}

void forgetLength(Structural::Track& track) {
    auto* const sequence = track.sequence();
    if (sequence == nullptr)
        return;
    auto const components = sequence->referencedSets(Properties::structuralComponents.label);
    if (!components.empty())
        setLength(*components.back(), -1);
    sequence->duration(Types::Length(-1));
}

void limitLength(Structural::Track& track, std::int64_t length) {
    auto* const sequence = track.sequence();
    if (sequence == nullptr)
        return;
    std::int64_t total = 0;
    for (auto const& part : partsWithin(*sequence, 0, length)) {
        total += part.end;
        if (lengthOf(*part.component) != part.end)
            setLength(*part.component, part.end);
    }
    if (lengthOf(*sequence) < 0 || lengthOf(*sequence) > length)
        sequence->duration(Types::Length(total));
}

Templates::Rational<int> editRateOf(Structural::TimelineTrack const& track) {
    return isRate(track.editRate()) ? track.editRate()->value() : Templates::Rational<int>();
}

void addGeneration(PartitionMetadata& metadata) {
    auto const product = thisProduct();
    auto& preface = Structural::findPreface(metadata);
    auto& set = Structural::create<Structural::Identification>(metadata);
    auto const now = Types::Timestamp::now();
    set.thisGenerationUID(Types::UUID::generate());
    set.companyName(Types::UTF16String(product.companyName));
    set.productName(Types::UTF16String(product.productName));
    set.versionString(Types::UTF16String(product.versionString));
    set.productUID(product.productUID);
    set.modificationDate(now);
    preface.addIdentification(set);
    preface.lastModifiedDate(now);
}

Labels containerLabels(PartitionMetadata const& metadata) {
    Labels labels;
    for (auto const& [key, set] : metadata)
        if (auto const* const descriptor = dynamic_cast<Structural::FileDescriptor const*>(set))
            addLabel(labels, descriptor->essenceContainer());
    return labels;
}

void updateContainerLabels(PartitionMetadata& metadata, Labels const& before) {
    auto const now = containerLabels(metadata);
    if (now == before)
        return;
    Labels kept;
    auto const present = Structural::essenceContainers(metadata);
    for (std::size_t i = 0; i < present->count(); ++i)
        if (auto const label = present->at<Types::UniversalLabel>(i);
            !holds(before, label) || holds(now, label))
            addLabel(kept, &label);
    for (auto const& label : now)
        addLabel(kept, &label);
    Types::Batch batch(Types::Identifiers::UniversalLabel);
    for (auto const& label : kept)
        batch.add(label);
    Structural::findPreface(metadata).essenceContainers(batch);
}

} // namespace Zelm
