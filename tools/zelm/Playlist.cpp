#include "Playlist.h"

#include "Filler.h"
#include "TimeText.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/SetCopy.h>
#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Metadata/Structural/ContentStorage.h>
#include <MXF/Zelm/Metadata/Structural/EssenceContainerData.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/Utils/TimeBase.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
namespace Structural = Metadata::Structural;
namespace Properties = Metadata::Structural::Properties;

namespace {

/// Bytes 8 to 10 of the labels of stream IDs: of essence, of generic streams, of documents of timed text.
constexpr unsigned char streamIDs[] = {0x01, 0x03, 0x04};

bool isStreamID(Types::UniversalLabel const& label) {
    return std::equal(std::begin(streamIDs), std::end(streamIDs), label.rawBuffer() + 8);
}

Structural::MaterialPackage* onlyMaterial(PartitionMetadata const& metadata, std::string const& name) {
    Structural::MaterialPackage* found = nullptr;
    for (auto* const set : metadata.packages())
        if (auto* const package = dynamic_cast<Structural::MaterialPackage*>(set)) {
            if (found != nullptr)
                throw InvalidValue(name + " has several material packages: a playlist takes one");
            found = package;
        }
    if (found == nullptr)
        throw InvalidValue(name + " has no material package that could be played");
    return found;
}

std::vector<Structural::TimelineTrack*> essenceTracksOf(Structural::GenericPackage const& package) {
    Templates::list<Structural::TimelineTrack*> tracks;
    Structural::getAllEssenceTracks(package, tracks);
    return {tracks.begin(), tracks.end()};
}

/// What an essence track holds.
std::string kindOf(Structural::Track const& track) {
    namespace Definitions = Structural::DataDefinitions;
    KLV::Key definition(Structural::dataDefinitionOf(track)->rawBuffer());
    if (definition == Definitions::legacyPicture)
        return "picture";
    if (definition == Definitions::legacySound)
        return "sound";
    definition[7] = Definitions::picture[7];
    return definition == Definitions::picture ? "picture"
           : definition == Definitions::sound ? "sound"
                                              : "data";
}

Seconds longestOf(std::vector<Structural::TimelineTrack*> const& tracks) {
    Seconds longest = {0, 1};
    for (auto const* const track : tracks)
        if (auto const length = Structural::durationOf(*track); length >= 0)
            if (auto const end = Utils::framesToSeconds(length.value(), editRateOf(*track));
                end.toDouble() > longest.toDouble())
                longest = end;
    return longest;
}

} // namespace

Playlist::Playlist(PartitionMetadata& metadata, ContainerCopies& copies, StreamIDs& streams,
                   std::string firstName)
    : metadata_(metadata),
      copies_(copies),
      streams_(streams),
      firstName_(std::move(firstName)),
      material_(onlyMaterial(metadata, firstName_)) {}

void Playlist::requireTracks(Tracks const& present, Tracks const& more, PlayedFile const& file) const {
    auto const refuse = [&](std::string const& what, std::string const& here, std::string const& there) {
        throw InvalidValue("of the material package, " + what + " is " + here + " in " + firstName_ + ", " +
                           there + " in " + file.input->name);
    };
    if (present.size() != more.size())
        refuse("the number of essence tracks", std::to_string(present.size()), std::to_string(more.size()));
    for (std::size_t i = 0; i < present.size(); ++i) {
        std::string const name = "essence track " + std::to_string(i + 1);
        if (kindOf(*present[i]) != kindOf(*more[i]))
            refuse(name, kindOf(*present[i]), kindOf(*more[i]));
        if (editRateOf(*present[i]) != editRateOf(*more[i]))
            refuse("the edit rate of " + name, rateText(editRateOf(*present[i])),
                   rateText(editRateOf(*more[i])));
    }
}

MovedStreams Playlist::append(PlayedFile const& file) {
    auto const present = essenceTracksOf(*material_);
    auto const& material = *onlyMaterial(*file.metadata, file.input->name);
    auto const more = essenceTracksOf(material);
    requireTracks(present, more, file);
    renamed_.clear();
    copied_.clear();
    copyPackages(file);
    MovedStreams moved;
    for (auto* const package : copied_)
        moveStreams(*package, moved);
    alignTracks(present);
    PlayedTime const time{longestOf(present), longestOf(more)};
    TrackIDs played;
    for (std::size_t i = 0; i < present.size(); ++i)
        if (more[i]->trackID() != nullptr && present[i]->trackID() != nullptr)
            played[more[i]->trackID()->value()] = present[i]->trackID()->value();
    for (auto* const track : material.tracks())
        if (isDescriptive(*track))
            moveStreams(describe(*track, file, time, played), moved);
    addSchemes(*file.metadata);
    for (std::size_t i = 0; i < present.size(); ++i)
        playBehind(*present[i], *more[i], file);
    for (auto* const track : material_->tracks())
        if (Structural::isTimeCodeTrack(track))
            forgetLength(*track);
    return moved;
}

void Playlist::copyPackages(PlayedFile const& file) {
    for (auto const* const set : file.metadata->packages())
        if (auto const* const package = dynamic_cast<SourcePackage const*>(set);
            package != nullptr && package->packageUID() != nullptr)
            copyPackage(file, *package);
}

/// A package that both files refer to, such as a tape, is there already.
void Playlist::copyPackage(PlayedFile const& file, SourcePackage const& package) {
    auto const container = std::find_if(file.containers.begin(), file.containers.end(),
                                        [&](auto const& each) { return each->package == &package; });
    auto const uid = *package.packageUID();
    bool const isTaken = packageOf(metadata_, uid) != nullptr;
    if (isTaken && container == file.containers.end())
        return;
    auto* const copy =
        dynamic_cast<SourcePackage*>(Metadata::copyWithReferenced(package, *file.metadata, metadata_));
    if (copy == nullptr)
        throw Exceptions::InvalidStructure("a package cannot be copied");
    if (isTaken) {
        renamed_.insert_or_assign(uid, Types::UMID32::generate(uid.materialType()));
        copy->packageUID(renamed_.at(uid));
    }
    Structural::findPreface(metadata_).contentStorage()->addPackage(*copy);
    copied_.push_back(copy);
    if (container != file.containers.end())
        addContainer(file, *container, *copy);
}

void Playlist::addContainer(PlayedFile const& file, std::shared_ptr<MXFIO::EssenceContainer const> container,
                            SourcePackage& package) {
    ContainerCopy copy{
        .essence = {file.input, container, {}}, .bodySID = streams_.next(), .package = &package};
    copy.indexSID = container->indexSID != 0 ? streams_.next() : 0;
    for (auto const& track : container->tracks)
        copy.essence.tracks.push_back({&track, track.trackID});
    auto& data = Structural::create<Structural::EssenceContainerData>(metadata_);
    data.linkedPackageUID(*package.packageUID());
    data.bodySID(Types::UInt32(copy.bodySID));
    if (copy.indexSID != 0)
        data.indexSID(Types::UInt32(copy.indexSID));
    Structural::findPreface(metadata_).contentStorage()->addEssenceContainerData(data);
    copies_.push_back(std::move(copy));
}

/// In all that a copied set owns.
void Playlist::moveStreams(MetadataSet& set, MovedStreams& moved) {
    forOwned(metadata_, set, [&](MetadataSet& owned) {
        for (auto const& element : owned) {
            auto const* const sid = Types::valueCast<Types::UInt32>(element->baseValue());
            if (sid == nullptr || *sid == 0u || !isStreamID(*element->universalLabel()))
                continue;
            std::uint32_t const old = sid->value();
            if (!moved.contains(old))
                moved[old] = streams_.has(old) ? streams_.next() : old;
            streams_.take(moved[old]);
            element->baseValue(Types::UInt32(moved[old]));
        }
    });
}

/// Tracks that end before the longest play nothing until then.
void Playlist::alignTracks(Tracks const& tracks) {
    auto const longest = longestOf(tracks);
    for (auto* const track : tracks) {
        auto const length = Structural::durationOf(*track);
        auto const missing = Utils::secondsToFrames(longest, editRateOf(*track)) - length.value();
        if (length < 0 || missing <= 0 || track->sequence() == nullptr)
            continue;
        track->sequence()->addReference(
            Properties::structuralComponents.label,
            createFiller(metadata_, *Structural::dataDefinitionOf(*track), missing));
    }
}

/// What the Preface says of the schemes of both files.
void Playlist::addSchemes(PartitionMetadata const& from) {
    auto& preface = Structural::findPreface(metadata_);
    auto const* const more = Structural::findPreface(from).dmSchemes();
    auto const holds = [](Types::Batch const* schemes, Types::UniversalLabel const& scheme) {
        for (std::size_t i = 0; schemes != nullptr && i < schemes->count(); ++i)
            if (schemes->at<Types::UniversalLabel>(i) == scheme)
                return true;
        return false;
    };
    for (std::size_t i = 0; more != nullptr && i < more->count(); ++i)
        if (auto const& scheme = more->at<Types::UniversalLabel>(i); !holds(preface.dmSchemes(), scheme))
            preface.addDMScheme(scheme);
}

Metadata::MetadataSet& Playlist::describe(Structural::Track const& track, PlayedFile const& file,
                                          PlayedTime const& time, TrackIDs const& played) {
    auto* const copy =
        dynamic_cast<Structural::Track*>(Metadata::copyWithReferenced(track, *file.metadata, metadata_));
    if (copy == nullptr)
        throw Exceptions::InvalidStructure("a descriptive track cannot be copied");
    return describePlayed(metadata_, *material_, *copy, time, played);
}

void Playlist::playBehind(Structural::TimelineTrack& track, Structural::TimelineTrack const& more,
                          PlayedFile const& file) {
    auto const& label = Properties::structuralComponents.label;
    for (auto* const component : more.sequence()->referencedSets(label)) {
        auto* const copy = Metadata::copyWithReferenced(*component, *file.metadata, metadata_);
        if (copy == nullptr)
            continue;
        if (auto* const clip = dynamic_cast<Structural::SourceClip*>(copy);
            clip != nullptr && clip->sourcePackageID() != nullptr)
            if (auto const found = renamed_.find(*clip->sourcePackageID()); found != renamed_.end())
                clip->sourcePackageID(found->second);
        track.sequence()->addReference(label, *copy);
    }
    track.sequence()->duration(Types::Length(-1));
}

} // namespace Zelm
