#include "MXF/Zelm/Metadata/Structural/Track.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

Track::Track(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : TrackableMetadataSet(key, definition, owner) {}
Track::~Track() = default;

Types::UInt32 const* Track::trackID() const { return get(*this, Properties::trackID); }
void Track::trackID(Types::UInt32 const& id) { put(*this, Properties::trackID, id); }
Types::UInt32 const* Track::trackNumber() const { return get(*this, Properties::trackNumber); }
void Track::trackNumber(Types::UInt32 const& number) { put(*this, Properties::trackNumber, number); }
Types::UTF16String const* Track::trackName() const { return get(*this, Properties::trackName); }
void Track::trackName(Types::UTF16String const& name) { put(*this, Properties::trackName, name); }
void Track::resetTrackName() { reset(*this, Properties::trackName); }
Sequence* Track::sequence() const { return get(*this, Properties::sequence); }
void Track::sequence(Sequence const& sequence) { put(*this, Properties::sequence, sequence); }

TimelineTrack::TimelineTrack(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : Track(classKey(), definition, owner) {}
TimelineTrack::~TimelineTrack() = default;

KLV::Key const& TimelineTrack::classKey() { return StructuralMetadataKeys::timelineTrack(); }

Types::Rational const* TimelineTrack::editRate() const { return get(*this, Properties::editRate); }
void TimelineTrack::editRate(Types::Rational const& rate) { put(*this, Properties::editRate, rate); }
Types::Position const* TimelineTrack::origin() const { return get(*this, Properties::origin); }
void TimelineTrack::origin(Types::Position const& origin) { put(*this, Properties::origin, origin); }
Types::Position const* TimelineTrack::markIn() const { return get(*this, Properties::markIn); }
void TimelineTrack::markIn(Types::Position const& position) { put(*this, Properties::markIn, position); }
void TimelineTrack::resetMarkIn() { reset(*this, Properties::markIn); }
Types::Position const* TimelineTrack::markOut() const { return get(*this, Properties::markOut); }
void TimelineTrack::markOut(Types::Position const& position) { put(*this, Properties::markOut, position); }
void TimelineTrack::resetMarkOut() { reset(*this, Properties::markOut); }
Types::Position const* TimelineTrack::userPosition() const { return get(*this, Properties::userPosition); }
void TimelineTrack::userPosition(Types::Position const& position) {
    put(*this, Properties::userPosition, position);
}
void TimelineTrack::resetUserPosition() { reset(*this, Properties::userPosition); }
Types::Position const* TimelineTrack::packageMarkInPosition() const {
    return get(*this, Properties::packageMarkInPosition);
}
void TimelineTrack::packageMarkInPosition(Types::Position const& position) {
    put(*this, Properties::packageMarkInPosition, position);
}
void TimelineTrack::resetPackageMarkInPosition() { reset(*this, Properties::packageMarkInPosition); }
Types::Position const* TimelineTrack::packageMarkOutPosition() const {
    return get(*this, Properties::packageMarkOutPosition);
}
void TimelineTrack::packageMarkOutPosition(Types::Position const& position) {
    put(*this, Properties::packageMarkOutPosition, position);
}
void TimelineTrack::resetPackageMarkOutPosition() { reset(*this, Properties::packageMarkOutPosition); }

EventTrack::EventTrack(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : Track(classKey(), definition, owner) {}
EventTrack::~EventTrack() = default;

KLV::Key const& EventTrack::classKey() { return StructuralMetadataKeys::eventTrack(); }

Types::Rational const* EventTrack::eventEditRate() const { return get(*this, Properties::eventEditRate); }
void EventTrack::eventEditRate(Types::Rational const& rate) { put(*this, Properties::eventEditRate, rate); }
Types::Position const* EventTrack::eventOrigin() const { return get(*this, Properties::eventOrigin); }
void EventTrack::eventOrigin(Types::Position const& origin) { put(*this, Properties::eventOrigin, origin); }
void EventTrack::resetEventOrigin() { reset(*this, Properties::eventOrigin); }

StaticTrack::StaticTrack(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : Track(classKey(), definition, owner) {}
StaticTrack::~StaticTrack() = default;

KLV::Key const& StaticTrack::classKey() { return StructuralMetadataKeys::staticTrack(); }

} // namespace MXF::Zelm::Metadata::Structural
