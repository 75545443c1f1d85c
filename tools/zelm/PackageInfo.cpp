/// Packages and tracks for `zelm info`.
#include "SetValues.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using Metadata::MetadataSet;

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

std::optional<TimecodeInfo> gatherTimecode(MetadataSet const& component) {
    auto const start = integer(component, u"StartTimecode");
    auto const base = count(component, u"FramesPerSecond");
    if (!start || !base || *base == 0 || *base > 0xFFFF)
        return std::nullopt;
    auto const* const drop = property<Types::Boolean>(component, u"DropFrame");
    return TimecodeInfo{*start, static_cast<std::uint16_t>(*base), drop != nullptr && drop->value()};
}

/// What the track's sequence, or the single component in its place, tells.
void takeSegment(MetadataSet const& segment, TrackInfo& track) {
    if (auto const* const definition = property<Types::UniversalLabel>(segment, u"ComponentDataDefinition"))
        track.kind = kindOf(*definition);
    track.duration = known(segment, u"ComponentLength");
    auto components = references(segment, u"ComponentObjects");
    track.segments = components.size();
    if (segment.name() != u"Sequence") {
        components = {const_cast<MetadataSet*>(&segment)};
        track.segments = 1;
    }
    for (auto const* const component : components)
        if (component->name() == u"Timecode" && !track.timecode)
            track.timecode = gatherTimecode(*component);
    if (!track.duration && components.size() == 1)
        track.duration = known(*components.front(), u"ComponentLength");
}

TrackInfo gatherTrack(MetadataSet const& set) {
    TrackInfo track;
    track.className = Platform::toUtf8(set.name());
    track.kind = "other";
    track.name = text(set, u"TrackName");
    track.id = count(set, u"TrackID");
    track.number = count(set, u"EssenceTrackNumber");
    track.editRate = rational(set, u"EditRate");
    if (!track.editRate)
        track.editRate = rational(set, u"EventTrackEditRate");
    track.origin = integer(set, u"Origin");
    for (auto const* const segment : references(set, u"TrackSegment"))
        takeSegment(*segment, track);
    return track;
}

PackageInfo gatherPackage(MetadataSet const& set, MetaMetadata::Dictionary const& dictionary) {
    PackageInfo package;
    auto const descriptors = references(set, u"EssenceDescription");
    bool const material = isA(set, u"MaterialPackage", dictionary);
    bool const file = !descriptors.empty() && isA(*descriptors.front(), u"FileDescriptor", dictionary);
    package.kind = material ? "material" : file ? "file" : "physical source";
    package.name = text(set, u"PackageName");
    if (auto const* const uid = property<Types::UMID32>(set, u"PackageID"))
        package.uid = *uid;
    package.created = text(set, u"CreationTime");
    package.modified = text(set, u"PackageLastModified");
    for (auto const* const track : references(set, u"PackageTracks"))
        if (package.tracks.size() < mostTracks)
            package.tracks.push_back(gatherTrack(*track));
    if (!descriptors.empty())
        package.descriptor = gatherDescriptor(*descriptors.front(), dictionary);
    return package;
}

bool isEssence(TrackInfo const& track) {
    return track.kind == "picture" || track.kind == "sound" || track.kind == "data";
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
                descriptor.duration != track.duration &&
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
    auto const& dictionary = *metadata.partitionDictionary().dictionary();
    std::vector<MetadataSet*> packages;
    try {
        packages = metadata.packages();
    } catch (Exceptions::BaseException const& failure) {
        info.odd.push_back("The header metadata is not whole: " + failure.message());
    }
    for (auto const* const set : packages)
        info.packages.push_back(gatherPackage(*set, dictionary));
    std::stable_partition(info.packages.begin(), info.packages.end(),
                          [](PackageInfo const& package) { return package.kind == "material"; });
    for (auto const& package : info.packages)
        compareDurations(package, info);
    if (!info.packages.empty() && info.packages.front().kind == "material")
        takeMaterial(info.packages.front(), info);
}

} // namespace Zelm
