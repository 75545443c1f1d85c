/// Tracks of packages (SMPTE 377M): with a time axis, with events, or without time.
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/Strings.h"

namespace MXF::Zelm::Metadata::Structural {

class Sequence;

/// What all tracks have.
class MXFZELM_EXPORT Track : public TrackableMetadataSet {
public:
    ~Track() override;

    /// The track's number within its package, by which clips refer to it; never 0.
    Types::UInt32 const* trackID() const;
    void trackID(Types::UInt32 const& id);

    /// In a file package, bytes 12 to 15 of the keys of the track's essence elements (SMPTE 379M). 0 for
    /// tracks without essence in the container, and in other packages.
    Types::UInt32 const* trackNumber() const;
    void trackNumber(Types::UInt32 const& number);

    /// What people call the track. Optional.
    Types::UTF16String const* trackName() const;
    void trackName(Types::UTF16String const& name);
    void resetTrackName();

    /// What the track holds.
    Sequence* sequence() const;
    void sequence(Sequence const& sequence);

protected:
    Track(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
};

/// A track without gaps or overlaps.
class MXFZELM_EXPORT TimelineTrack : public Track {
public:
    TimelineTrack(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~TimelineTrack() override;

    static KLV::Key const& classKey();

    /// Edit units a second.
    Types::Rational const* editRate() const;
    void editRate(Types::Rational const& rate);

    /// Edit units that stand before the track's zero point; normally 0.
    Types::Position const* origin() const;
    void origin(Types::Position const& origin);

    /// Where an application set its mark in. Optional.
    Types::Position const* markIn() const;
    void markIn(Types::Position const& position);
    void resetMarkIn();

    /// Where an application set its mark out. Optional.
    Types::Position const* markOut() const;
    void markOut(Types::Position const& position);
    void resetMarkOut();

    /// Where an application had its cursor. Optional.
    Types::Position const* userPosition() const;
    void userPosition(Types::Position const& position);
    void resetUserPosition();

    /// Where the part begins that is meant to be used, in edit units of this track (SMPTE 377-1). Optional.
    Types::Position const* packageMarkInPosition() const;
    void packageMarkInPosition(Types::Position const& position);
    void resetPackageMarkInPosition();

    /// Where that part ends. Optional.
    Types::Position const* packageMarkOutPosition() const;
    void packageMarkOutPosition(Types::Position const& position);
    void resetPackageMarkOutPosition();
};

/// A track of events, which may overlap and leave gaps.
class MXFZELM_EXPORT EventTrack : public Track {
public:
    EventTrack(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~EventTrack() override;

    static KLV::Key const& classKey();

    /// Edit units a second.
    Types::Rational const* eventEditRate() const;
    void eventEditRate(Types::Rational const& rate);

    /// Edit units that stand before the track's zero point. Optional, 0 when absent.
    Types::Position const* eventOrigin() const;
    void eventOrigin(Types::Position const& origin);
    void resetEventOrigin();
};

/// A track of what holds for the whole package.
class MXFZELM_EXPORT StaticTrack : public Track {
public:
    StaticTrack(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~StaticTrack() override;

    static KLV::Key const& classKey();
};

} // namespace MXF::Zelm::Metadata::Structural
