/// Files played one after another by one material package, each with its file packages (patterns 2a, 2b, 3a).
#pragma once

#include "ContainerCopy.h"
#include "GangedPackages.h"
#include "PlayedDescriptions.h"

#include <map>

namespace Zelm {

/// A file whose essence follows.
struct PlayedFile {
    Input* input = nullptr;
    MXF::Zelm::Metadata::PartitionMetadata const* metadata = nullptr;
    std::vector<std::shared_ptr<MXF::Zelm::MXFIO::EssenceContainer const>> containers = {};
};

/// The streams of a file under their IDs in the new one.
using MovedStreams = std::map<std::uint32_t, std::uint32_t>;

class Playlist {
public:
    /// All three outlive it. `streams` has the IDs of the first file, `firstName` names it in messages.
    Playlist(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies, StreamIDs& streams,
             std::string firstName);

    /// Lets the material package play, behind all that it plays, what that of the file does. The source
    /// packages of the file are copied with what they refer to, and get other UMIDs and stream IDs where
    /// theirs are taken; so are the descriptive tracks of its material package, for the time in which it is
    /// played. Returns the generic streams that they refer to. Throws Exceptions::InvalidValue,
    /// saying which track differs in what, when the tracks do not go on with each other.
    MovedStreams append(PlayedFile const& file);

private:
    using Material = MXF::Zelm::Metadata::Structural::MaterialPackage;
    using SourcePackage = MXF::Zelm::Metadata::Structural::SourcePackage;
    using Package = MXF::Zelm::Metadata::Structural::GenericPackage;
    using MetadataSet = MXF::Zelm::Metadata::MetadataSet;
    using UMID = MXF::Zelm::Types::UMID32;
    using Tracks = std::vector<MXF::Zelm::Metadata::Structural::TimelineTrack*>;

    void requireTracks(Tracks const& present, Tracks const& more, PlayedFile const& file) const;
    void copyPackages(PlayedFile const& file);
    void copyPackage(PlayedFile const& file, SourcePackage const& package);
    void addContainer(PlayedFile const& file,
                      std::shared_ptr<MXF::Zelm::MXFIO::EssenceContainer const> container,
                      SourcePackage& package);
    void moveStreams(MetadataSet& set, MovedStreams& moved);
    void alignTracks(Tracks const& tracks);
    void addSchemes(MXF::Zelm::Metadata::PartitionMetadata const& from);
    MetadataSet& describe(MXF::Zelm::Metadata::Structural::Track const& track, PlayedFile const& file,
                          PlayedTime const& time, TrackIDs const& played);
    void playBehind(MXF::Zelm::Metadata::Structural::TimelineTrack& track,
                    MXF::Zelm::Metadata::Structural::TimelineTrack const& more, PlayedFile const& file);

    MXF::Zelm::Metadata::PartitionMetadata& metadata_;
    ContainerCopies& copies_;
    StreamIDs& streams_;
    std::string firstName_;
    Material* material_;
    std::map<UMID, UMID> renamed_;       // packages of the file at hand
    std::vector<SourcePackage*> copied_; // the same, in the new metadata
};

} // namespace Zelm
