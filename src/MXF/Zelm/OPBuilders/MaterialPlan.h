/// What a material package plays: its items, the tracks that they make, and the lengths that these get when
/// the essence has ended.
#pragma once

#include "MXF/Zelm/OPBuilders/GenericOPBuilder.h"

namespace MXF::Zelm::OPBuilders {

/// The essence tracks of a file package, in their order.
Templates::vector<Metadata::Structural::TimelineTrack*>
essenceTracks(Metadata::Structural::GenericPackage const& package);

/// Edit units a second; throws Exceptions::InvalidStructure when the track has no rate.
Templates::Rational<int> editRateOf(Metadata::Structural::TimelineTrack const& track);

class MaterialPlan {
public:
    /// Refers to the package, which outlives it.
    explicit MaterialPlan(Metadata::Structural::MaterialPackage& package) : package_(&package) {}

    void add(Templates::vector<ItemPart> item) { items_.push_back(std::move(item)); }
    void add(ForeignTrack const& track) { foreign_.push_back(track); }
    Templates::vector<Templates::vector<ItemPart>> const& items() const { return items_; }

    /// Makes the essence tracks, their clips of unknown length, and a timecode track from a defined `start`.
    /// `timecodeRate` when it is known, else the rate of the first track. Throws Exceptions::InvalidStructure
    /// when the items' tracks do not fit each other.
    void makeTracks(Metadata::PartitionMetadata& metadata, Utils::TimeCode const& start,
                    Templates::Rational<int> timecodeRate);

    /// Sets the lengths of clips and tracks, from those of the file packages.
    void setLengths() const;

    Metadata::Structural::MaterialPackage& package() const { return *package_; }

private:
    /// A clip and the track that it plays.
    struct Clip {
        Metadata::Structural::SourceClip* clip;
        Metadata::Structural::TimelineTrack const* source;
        ItemPart part;
        Templates::Rational<int> partRate; // in which the part's positions are counted
    };

    struct MadeTrack {
        Metadata::Structural::TimelineTrack* track;
        Templates::vector<Clip> clips;
    };

    void addClips(Metadata::PartitionMetadata& metadata, Templates::vector<ItemPart> const& item);
    void addClip(Metadata::PartitionMetadata& metadata, std::size_t index, Clip clip);
    void addForeignTracks(Metadata::PartitionMetadata& metadata);
    static std::int64_t lengthOf(Clip const& clip);
    static std::int64_t setLength(MadeTrack const& track);

    Metadata::Structural::MaterialPackage* package_;
    Templates::vector<Templates::vector<ItemPart>> items_;
    Templates::vector<MadeTrack> tracks_;
    Templates::vector<ForeignTrack> foreign_;

    /// Of timecode and of foreign packages: one component, as long as the first track.
    Templates::vector<Metadata::Structural::TimelineTrack*> accompanying_;
};

} // namespace MXF::Zelm::OPBuilders
