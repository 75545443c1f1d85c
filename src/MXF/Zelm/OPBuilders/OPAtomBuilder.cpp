#include "MXF/Zelm/OPBuilders/OPAtomBuilder.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/OPBuilders/MaterialPlan.h"

#include <algorithm>

namespace MXF::Zelm::OPBuilders {

using namespace Metadata::Structural;
using OperationalPatterns::Atom;

namespace {

BuilderOptions asOPAtom(BuilderOptions options) {
    auto& layout = options.layout;
    layout.index = MXFIO::CreatorSettings::Index::Footer;
    layout.interleaving = MXFIO::CreatorSettings::Interleaving::None;
    layout.partitions = {};
    layout.essenceInHeader = false;
    layout.runIn.clear();
    layout.metadataReserve = std::max(layout.metadataReserve, OPAtomBuilder::smallestReserve);
    return options;
}

std::size_t clipsOf(TimelineTrack const& track) {
    return track.sequence() != nullptr ? track.sequence()->structuralComponents().size() : 0;
}

} // namespace

OPAtomBuilder::OPAtomBuilder(DictionaryPtr dictionary, BuilderOptions options)
    : GenericOPBuilder(std::move(dictionary), asOPAtom(std::move(options))) {}

OPAtomBuilder::~OPAtomBuilder() = default;

SourcePackage& OPAtomBuilder::addFilePackage(FilePackageOptions const& options) {
    if (hasPackage_ || options.isExternal || !options.hasIndex)
        throw Exceptions::InvalidStructure("An OP-Atom file has one file package, its essence and its index");
    auto& package = GenericOPBuilder::addFilePackage(options);
    hasPackage_ = true;
    return package;
}

void OPAtomBuilder::addSource(SourcePackage const& package,
                              Templates::auto_ptr<GenericContainer::Source> source) {
    if (auto const tracks = essenceTracks(package).size(); tracks != 1)
        throw Exceptions::InvalidStructure("An OP-Atom file has one essence track, this has " +
                                           std::to_string(tracks));
    GenericOPBuilder::addSource(package, std::move(source));
}

Types::UniversalLabel OPAtomBuilder::pattern() const {
    std::size_t tracks = 0, mostClips = 0;
    for (auto const* const package : metadata()->packages())
        if (auto const* const material = dynamic_cast<MaterialPackage const*>(package))
            for (auto const* const track : essenceTracks(*material)) {
                ++tracks;
                mostClips = std::max(mostClips, clipsOf(*track));
            }
    if (tracks > 1)
        return OperationalPatterns::opAtom(mostClips > 1 ? Atom::SeveralTracksSeveralClips
                                                         : Atom::SeveralTracksOneClipEach);
    return OperationalPatterns::opAtom(mostClips > 1 ? Atom::OneTrackSeveralClips : Atom::OneTrackOneClip);
}

} // namespace MXF::Zelm::OPBuilders
