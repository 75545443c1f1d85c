#include "PatternLabel.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/OperationalPatterns.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/Sequence.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
namespace Structural = Metadata::Structural;
namespace Patterns = Metadata::Structural::OperationalPatterns;

namespace {

constexpr unsigned char atomItems = 0x10;

/// What the material packages of a file do.
struct Shape {
    std::size_t materials = 0;
    std::size_t tracks = 0;         // of the material package with most
    std::size_t mostClips = 0;      // of a track
    bool hasParts = false;          // a clip does not begin with its package
    std::size_t packagesAtOnce = 0; // file packages that begin together
    std::size_t filePackages = 0;   // with essence in the file
    std::size_t mostTracksOfPackage = 0;

    unsigned char items() const { return static_cast<unsigned char>(mostClips <= 1 ? 1 : hasParts ? 3 : 2); }
    unsigned char packages() const {
        return static_cast<unsigned char>(materials > 1 ? 3 : packagesAtOnce > 1 ? 2 : 1);
    }
};

Templates::list<Structural::TimelineTrack*> essenceTracksOf(Structural::GenericPackage const& package) {
    Templates::list<Structural::TimelineTrack*> tracks;
    Structural::getAllEssenceTracks(package, tracks);
    return tracks;
}

std::vector<Structural::SourceClip const*> clipsOf(Structural::Track const& track) {
    std::vector<Structural::SourceClip const*> clips;
    if (track.sequence() != nullptr)
        for (auto const* const component : track.sequence()->structuralComponents())
            if (auto const* const clip = dynamic_cast<Structural::SourceClip const*>(component))
                clips.push_back(clip);
    return clips;
}

void takeMaterial(Structural::MaterialPackage const& package, Shape& shape) {
    ++shape.materials;
    std::set<Types::UMID32> first;
    auto const tracks = essenceTracksOf(package);
    shape.tracks = std::max(shape.tracks, tracks.size());
    for (auto const* const track : tracks) {
        auto const clips = clipsOf(*track);
        shape.mostClips = std::max(shape.mostClips, clips.size());
        for (auto const* const clip : clips)
            shape.hasParts =
                shape.hasParts || (clip->startPosition() != nullptr && *clip->startPosition() != 0);
        if (!clips.empty() && clips.front()->sourcePackageID() != nullptr)
            first.insert(*clips.front()->sourcePackageID());
    }
    shape.packagesAtOnce = std::max(shape.packagesAtOnce, first.size());
}

Shape shapeOf(Metadata::PartitionMetadata const& metadata) {
    Shape shape;
    for (auto const* const set : metadata.packages())
        if (auto const* const material = dynamic_cast<Structural::MaterialPackage const*>(set)) {
            takeMaterial(*material, shape);
        } else if (auto const* const file = dynamic_cast<Structural::SourcePackage const*>(set);
                   file != nullptr && dynamic_cast<Structural::FileDescriptor const*>(file->descriptor()) &&
                   !Structural::isExternalEssence(metadata, *file)) {
            ++shape.filePackages;
            shape.mostTracksOfPackage = std::max(shape.mostTracksOfPackage, essenceTracksOf(*file).size());
        }
    return shape;
}

KLV::Key atomLabel(Shape const& shape) {
    bool const hasSeveral = shape.tracks > 1;
    if (shape.mostClips > 1)
        return Patterns::opAtom(hasSeveral ? Patterns::Atom::SeveralTracksSeveralClips
                                           : Patterns::Atom::OneTrackSeveralClips);
    return Patterns::opAtom(hasSeveral ? Patterns::Atom::SeveralTracksOneClipEach
                                       : Patterns::Atom::OneTrackOneClip);
}

KLV::Key generalizedLabel(Metadata::PartitionMetadata const& metadata, Shape const& shape,
                          bool isInterleaved) {
    return Patterns::generalized(static_cast<Patterns::Items>(shape.items()),
                                 static_cast<Patterns::Packages>(shape.packages()),
                                 {.externalEssence = Structural::hasExternalEssence(metadata),
                                  .streamFile = shape.filePackages <= 1 || isInterleaved,
                                  .multiTrack = shape.mostTracksOfPackage > 1});
}

std::string nameOf(unsigned char items, unsigned char packages) {
    std::string const letters = " abc";
    return "op" + std::to_string(items) + letters.substr(packages <= 3 ? packages : 0, 1);
}

void requirePattern(PatternRow const& wanted, Shape const& shape) {
    if (wanted.items == atomItems) {
        if (shape.filePackages != 1 || shape.mostTracksOfPackage != 1)
            throw Exceptions::InvalidValue("an OP-Atom file has one essence track: --track names it");
        return;
    }
    if (wanted.items != shape.items() || wanted.packages != shape.packages())
        throw Exceptions::InvalidValue("the packages are those of " +
                                       nameOf(shape.items(), shape.packages()) + ", not of " + wanted.name);
}

} // namespace

Types::UniversalLabel patternLabel(Metadata::PartitionMetadata const& metadata, PatternRow const* wanted,
                                   bool isInterleaved) {
    auto const shape = shapeOf(metadata);
    if (wanted != nullptr)
        requirePattern(*wanted, shape);
    KLV::Key const present(Structural::operationalPattern(metadata).rawBuffer());
    bool const isAtom = wanted != nullptr ? wanted->items == atomItems : present[12] == atomItems;
    bool const isGeneralized = present[12] >= 1 && present[12] <= 3 && present[13] >= 1 && present[13] <= 3;
    bool const isUnknown = wanted == nullptr && !isAtom && !isGeneralized;
    if (isUnknown || shape.materials == 0 || (isAtom && shape.filePackages != 1))
        return present;
    auto label = isAtom ? atomLabel(shape) : generalizedLabel(metadata, shape, isInterleaved);
    if (Patterns::isSamePattern(label, present))
        label[7] = present[7];
    return label;
}

} // namespace Zelm
