/// Packages and tracks for `zelm info`.
#include "SetValues.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/Sequence.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Track.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using Metadata::MetadataSet;
namespace Structural = Metadata::Structural;

namespace {

/// Tracks of one package that are shown; a file may hold any number.
constexpr std::size_t mostTracks = 4096;

struct DataDefinition {
    KLV::Key label;
    const char* kind;
};

// SMPTE RP 224. The last two are what older object models write for picture and sound.
constexpr DataDefinition dataDefinitions[] = {
    {"060E2B34.04010101.01030202.01000000"_key, "picture"},
    {"060E2B34.04010101.01030202.02000000"_key, "sound"},
    {"060E2B34.04010101.01030202.03000000"_key, "data"},
    {"060E2B34.04010101.01030201.01000000"_key, "timecode"},
    {"060E2B34.04010101.01030201.02000000"_key, "timecode"},
    {"060E2B34.04010101.01030201.03000000"_key, "timecode"},
    {"060E2B34.04010101.01030201.10000000"_key, "descriptive metadata"},
    {"807D0060.08143E6F.6F3C8CE1.6CEF11D2"_key, "picture"},
    {"807D0060.08143E6F.78E1EBE1.6CEF11D2"_key, "sound"},
};

std::string kindOf(Types::UniversalLabel const& definition) {
    for (auto const& row : dataDefinitions)
        if (KLV::equalButForVersion(row.label, definition.key()))
            return row.kind;
    std::string const name = MXF::ZelmDictionary::labelName(definition);
    return name.empty() ? "other" : name;
}

std::optional<TimecodeInfo> gatherTimecode(Structural::TimecodeComponent const& component) {
    auto const* const start = component.startTimecode();
    auto const* const base = component.roundedTimecodeBase();
    if (start == nullptr || base == nullptr || base->value() == 0)
        return std::nullopt;
    auto const* const drop = component.dropFrame();
    return TimecodeInfo{start->value(), base->value(), drop != nullptr && drop->value()};
}

/// What a sequence, or a single component in its place, tells of its track.
template <class Segment>
void takeSegment(Segment const& segment, std::vector<Structural::StructuralComponent*> const& components,
                 TrackInfo& track) {
    if (auto const* const definition = segment.dataDefinition())
        track.kind = kindOf(*definition);
    track.duration = known(segment.duration());
    track.segments = components.size();
    for (auto const* const component : components)
        if (auto const* const timecode = dynamic_cast<Structural::TimecodeComponent const*>(component))
            if (!track.timecode)
                track.timecode = gatherTimecode(*timecode);
    if (!track.duration && components.size() == 1)
        track.duration = known(components.front()->duration());
}

TrackInfo gatherTrack(Structural::Track const& set) {
    TrackInfo track;
    track.className = Platform::toUtf8(set.name());
    track.kind = "other";
    track.name = text(set.trackName());
    track.id = count(set.trackID());
    track.number = count(set.trackNumber());
    if (auto const* const timeline = dynamic_cast<Structural::TimelineTrack const*>(&set)) {
        track.editRate = rational(timeline->editRate());
        track.origin = position(timeline->origin());
    } else if (auto const* const events = dynamic_cast<Structural::EventTrack const*>(&set)) {
        track.editRate = rational(events->eventEditRate());
    }
    auto* const segment = set.referencedSet(Structural::Properties::sequence.label);
    if (auto const* const sequence = dynamic_cast<Structural::Sequence const*>(segment))
        takeSegment(*sequence, sequence->structuralComponents(), track);
    else if (auto* const component = dynamic_cast<Structural::StructuralComponent*>(segment))
        takeSegment(*component, {component}, track);
    return track;
}

/// "material", "file", or "physical source" by what describes it.
std::string kindOf(Structural::GenericPackage const& package,
                   Structural::GenericDescriptor const* descriptor) {
    if (dynamic_cast<Structural::MaterialPackage const*>(&package) != nullptr)
        return "material";
    return dynamic_cast<Structural::FileDescriptor const*>(descriptor) != nullptr ? "file"
                                                                                  : "physical source";
}

PackageInfo gatherPackage(Structural::GenericPackage const& set) {
    PackageInfo package;
    auto const* const source = dynamic_cast<Structural::SourcePackage const*>(&set);
    auto const* const descriptor = source != nullptr ? source->descriptor() : nullptr;
    package.kind = kindOf(set, descriptor);
    package.name = text(set.name());
    if (auto const* const uid = set.packageUID())
        package.uid = *uid;
    package.created = text(set.packageCreationDate());
    package.modified = text(set.packageModifiedDate());
    for (auto const* const track : set.tracks())
        if (package.tracks.size() < mostTracks)
            package.tracks.push_back(gatherTrack(*track));
    if (descriptor != nullptr)
        package.descriptor = gatherDescriptor(*descriptor);
    return package;
}

bool isEssence(TrackInfo const& track) {
    return track.kind == "picture" || track.kind == "sound" || track.kind == "data";
}

/// Most pictures that are stored behind the last one shown because it needs them.
constexpr std::uint64_t mostBehind = 16;

/// Whether a descriptor may have that duration. Of a part that was cut out, what stands before the zero point
/// and behind the end for the sake of others may count or not.
bool fits(std::int64_t duration, TrackInfo const& track) {
    auto const more = static_cast<std::uint64_t>(duration) - static_cast<std::uint64_t>(*track.duration);
    auto const origin = track.origin.value_or(0);
    return more == 0 || (origin > 0 && more <= static_cast<std::uint64_t>(origin) + mostBehind);
}

/// A track of the file package and its descriptor both tell how long the essence is.
void compareDurations(PackageInfo const& package, FileInfo& info) {
    if (!package.descriptor || package.kind != "file")
        return;
    for (auto const& track : package.tracks) {
        if (!isEssence(track) || !track.duration || !track.editRate)
            continue;
        auto const compare = [&](DescriptorInfo const& descriptor) {
            if (descriptor.duration && descriptor.sampleRate == track.editRate &&
                !fits(*descriptor.duration, track) &&
                (!descriptor.linkedTrack || descriptor.linkedTrack == track.id))
                info.odd.push_back("The " + track.kind + " track of the file package lasts " +
                                   std::to_string(*track.duration) + " edit units, its descriptor says " +
                                   std::to_string(*descriptor.duration));
        };
        compare(*package.descriptor);
        for (auto const& member : package.descriptor->descriptors)
            compare(member);
    }
}

/// The start, rate and length of the whole: those of the first material package.
void takeMaterial(PackageInfo const& package, FileInfo& info) {
    for (auto const& track : package.tracks) {
        if (track.timecode && !info.startTimecode)
            info.startTimecode = track.timecode;
        if (isEssence(track) && !info.editRate) {
            info.editRate = track.editRate;
            info.duration = track.duration;
        }
    }
}

} // namespace

void gatherPackages(Metadata::PartitionMetadata const& metadata, FileInfo& info) {
    std::vector<MetadataSet*> packages;
    try {
        packages = metadata.packages();
    } catch (Exceptions::BaseException const& failure) {
        info.odd.push_back("The header metadata is not whole: " + failure.message());
    }
    for (auto const* const set : packages)
        if (auto const* const package = dynamic_cast<Structural::GenericPackage const*>(set))
            info.packages.push_back(gatherPackage(*package));
    std::stable_partition(info.packages.begin(), info.packages.end(),
                          [](PackageInfo const& package) { return package.kind == "material"; });
    for (auto const& package : info.packages)
        compareDurations(package, info);
    if (!info.packages.empty() && info.packages.front().kind == "material")
        takeMaterial(info.packages.front(), info);
}

} // namespace Zelm
