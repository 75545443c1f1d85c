#include "TrackLabels.h"

#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Preface.h>
#include <MXF/Zelm/Metadata/Structural/Sequence.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Platform/Text.h>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::Metadata::Structural;

namespace {

char kindOf(Track const& track) {
    auto const* const definition = dataDefinitionOf(track);
    if (definition != nullptr && *definition == DataDefinitions::picture)
        return 'v';
    if (definition != nullptr && *definition == DataDefinitions::sound)
        return 'a';
    return 'd';
}

/// The track that a clip plays, null when it is in another file.
Track* playedTrack(Metadata::PartitionMetadata& metadata, SourceClip const& clip) {
    if (clip.sourcePackageID() == nullptr || clip.sourceTrackID() == nullptr)
        return nullptr;
    for (auto* const package : metadata.packages()) {
        auto* const generic = dynamic_cast<GenericPackage*>(package);
        if (generic == nullptr || generic->packageUID() == nullptr ||
            *generic->packageUID() != *clip.sourcePackageID())
            continue;
        for (auto* const track : generic->tracks())
            if (track->trackID() != nullptr && *track->trackID() == *clip.sourceTrackID())
                return track;
    }
    return nullptr;
}

void label(Metadata::PartitionMetadata& metadata, TimelineTrack& track, Types::UTF16String const& name) {
    track.trackName(name);
    if (track.sequence() == nullptr)
        return;
    for (auto* const component : track.sequence()->structuralComponents())
        if (auto const* const clip = dynamic_cast<SourceClip const*>(component))
            if (auto* const played = playedTrack(metadata, *clip))
                played->trackName(name);
}

MaterialPackage* firstMaterialPackage(Metadata::PartitionMetadata& metadata) {
    for (auto* const package : metadata.packages())
        if (auto* const material = dynamic_cast<MaterialPackage*>(package))
            return material;
    return nullptr;
}

} // namespace

std::vector<std::string> labelTracks(Metadata::PartitionMetadata& metadata,
                                     std::map<std::string, std::string> const& labels) {
    auto unused = labels;
    Templates::list<TimelineTrack*> tracks;
    if (auto const* const material = firstMaterialPackage(metadata))
        getAllEssenceTracks(*material, tracks);
    std::map<char, unsigned> counts;
    for (auto* const track : tracks) {
        char const kind = kindOf(*track);
        std::string const name = kind + std::to_string(++counts[kind]);
        if (auto const found = labels.find(name); found != labels.end()) {
            label(metadata, *track, Types::UTF16String(Platform::toUtf16(found->second)));
            unused.erase(name);
        }
    }
    std::vector<std::string> names;
    for (auto const& [name, text] : unused)
        names.push_back(name);
    return names;
}

} // namespace Zelm
