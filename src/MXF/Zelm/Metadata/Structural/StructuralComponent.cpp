#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

StructuralComponent::StructuralComponent(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                                         MetadataSetOwner* owner)
    : TrackableMetadataSet(key, definition, owner) {}
StructuralComponent::~StructuralComponent() = default;

Types::UniversalLabel const* StructuralComponent::dataDefinition() const {
    return get(*this, Properties::dataDefinition);
}
void StructuralComponent::dataDefinition(Types::UniversalLabel const& definition) {
    put(*this, Properties::dataDefinition, definition);
}
Types::Length const* StructuralComponent::duration() const { return get(*this, Properties::duration); }
void StructuralComponent::duration(Types::Length const& duration) {
    put(*this, Properties::duration, duration);
}
void StructuralComponent::resetDuration() { reset(*this, Properties::duration); }
Templates::vector<MetadataSet*> StructuralComponent::componentKLVData() const {
    return get(*this, Properties::componentKLVData);
}
void StructuralComponent::addComponentKLVData(MetadataSet const& data) {
    Structural::add(*this, Properties::componentKLVData, data);
}
bool StructuralComponent::removeComponentKLVData(MetadataSet const& data) {
    return remove(*this, Properties::componentKLVData, data);
}
void StructuralComponent::resetComponentKLVData() { reset(*this, Properties::componentKLVData); }
Templates::vector<MetadataSet*> StructuralComponent::componentUserComments() const {
    return get(*this, Properties::componentUserComments);
}
void StructuralComponent::addComponentUserComment(MetadataSet const& comment) {
    Structural::add(*this, Properties::componentUserComments, comment);
}
bool StructuralComponent::removeComponentUserComment(MetadataSet const& comment) {
    return remove(*this, Properties::componentUserComments, comment);
}
void StructuralComponent::resetComponentUserComments() { reset(*this, Properties::componentUserComments); }
Templates::vector<MetadataSet*> StructuralComponent::componentAttributes() const {
    return get(*this, Properties::componentAttributes);
}
void StructuralComponent::addComponentAttribute(MetadataSet const& attribute) {
    Structural::add(*this, Properties::componentAttributes, attribute);
}
bool StructuralComponent::removeComponentAttribute(MetadataSet const& attribute) {
    return remove(*this, Properties::componentAttributes, attribute);
}
void StructuralComponent::resetComponentAttributes() { reset(*this, Properties::componentAttributes); }

SourceClip::SourceClip(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                       MetadataSetOwner* owner)
    : StructuralComponent(key, definition, owner) {}
SourceClip::SourceClip(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : StructuralComponent(classKey(), definition, owner) {}
SourceClip::~SourceClip() = default;

KLV::Key const& SourceClip::classKey() { return StructuralMetadataKeys::sourceClip(); }

Types::Position const* SourceClip::startPosition() const { return get(*this, Properties::startPosition); }
void SourceClip::startPosition(Types::Position const& position) {
    put(*this, Properties::startPosition, position);
}
Types::UMID32 const* SourceClip::sourcePackageID() const { return get(*this, Properties::sourcePackageID); }
void SourceClip::sourcePackageID(Types::UMID32 const& package) {
    put(*this, Properties::sourcePackageID, package);
}
Types::UInt32 const* SourceClip::sourceTrackID() const { return get(*this, Properties::sourceTrackID); }
void SourceClip::sourceTrackID(Types::UInt32 const& id) { put(*this, Properties::sourceTrackID, id); }
Types::Array const* SourceClip::channelIDs() const { return get(*this, Properties::channelIDs); }
void SourceClip::channelIDs(Types::Array const& channels) { put(*this, Properties::channelIDs, channels); }
void SourceClip::addChannelID(Types::UInt32 const& channel) {
    Structural::add(*this, Properties::channelIDs, channel);
}
void SourceClip::resetChannelIDs() { reset(*this, Properties::channelIDs); }
Types::Array const* SourceClip::monoSourceTrackIDs() const {
    return get(*this, Properties::monoSourceTrackIDs);
}
void SourceClip::monoSourceTrackIDs(Types::Array const& tracks) {
    put(*this, Properties::monoSourceTrackIDs, tracks);
}
void SourceClip::addMonoSourceTrackID(Types::UInt32 const& track) {
    Structural::add(*this, Properties::monoSourceTrackIDs, track);
}
void SourceClip::resetMonoSourceTrackIDs() { reset(*this, Properties::monoSourceTrackIDs); }

DMSourceClip::DMSourceClip(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : SourceClip(classKey(), definition, owner) {}
DMSourceClip::~DMSourceClip() = default;

KLV::Key const& DMSourceClip::classKey() { return StructuralMetadataKeys::dmSourceClip(); }

Types::Batch const* DMSourceClip::dmSourceClipTrackIDs() const {
    return get(*this, Properties::dmSourceClipTrackIDs);
}
void DMSourceClip::dmSourceClipTrackIDs(Types::Batch const& tracks) {
    put(*this, Properties::dmSourceClipTrackIDs, tracks);
}
void DMSourceClip::addDMSourceClipTrackID(Types::UInt32 const& track) {
    Structural::add(*this, Properties::dmSourceClipTrackIDs, track);
}
void DMSourceClip::resetDMSourceClipTrackIDs() { reset(*this, Properties::dmSourceClipTrackIDs); }

TimecodeComponent::TimecodeComponent(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : StructuralComponent(classKey(), definition, owner) {}
TimecodeComponent::~TimecodeComponent() = default;

KLV::Key const& TimecodeComponent::classKey() { return StructuralMetadataKeys::timecodeComponent(); }

Types::Position const* TimecodeComponent::startTimecode() const {
    return get(*this, Properties::startTimecode);
}
void TimecodeComponent::startTimecode(Types::Position const& frames) {
    put(*this, Properties::startTimecode, frames);
}
Types::UInt16 const* TimecodeComponent::roundedTimecodeBase() const {
    return get(*this, Properties::roundedTimecodeBase);
}
void TimecodeComponent::roundedTimecodeBase(Types::UInt16 const& base) {
    put(*this, Properties::roundedTimecodeBase, base);
}
Types::Boolean const* TimecodeComponent::dropFrame() const { return get(*this, Properties::dropFrame); }
void TimecodeComponent::dropFrame(Types::Boolean const& isDropFrame) {
    put(*this, Properties::dropFrame, isDropFrame);
}

DMSegment::DMSegment(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : StructuralComponent(classKey(), definition, owner) {}
DMSegment::~DMSegment() = default;

KLV::Key const& DMSegment::classKey() { return StructuralMetadataKeys::dmSegment(); }

Types::Position const* DMSegment::eventStartPosition() const {
    return get(*this, Properties::eventStartPosition);
}
void DMSegment::eventStartPosition(Types::Position const& position) {
    put(*this, Properties::eventStartPosition, position);
}
void DMSegment::resetEventStartPosition() { reset(*this, Properties::eventStartPosition); }
Types::UTF16String const* DMSegment::eventComment() const { return get(*this, Properties::eventComment); }
void DMSegment::eventComment(Types::UTF16String const& comment) {
    put(*this, Properties::eventComment, comment);
}
void DMSegment::resetEventComment() { reset(*this, Properties::eventComment); }
MetadataSet* DMSegment::annotationSource() const { return get(*this, Properties::annotationSource); }
void DMSegment::annotationSource(MetadataSet const& source) {
    put(*this, Properties::annotationSource, source);
}
void DMSegment::resetAnnotationSource() { reset(*this, Properties::annotationSource); }
Types::Batch const* DMSegment::trackIDs() const { return get(*this, Properties::trackIDs); }
void DMSegment::trackIDs(Types::Batch const& tracks) { put(*this, Properties::trackIDs, tracks); }
void DMSegment::addTrackID(Types::UInt32 const& track) {
    Structural::add(*this, Properties::trackIDs, track);
}
void DMSegment::resetTrackIDs() { reset(*this, Properties::trackIDs); }
MetadataSet* DMSegment::dmFramework() const { return get(*this, Properties::dmFramework); }
void DMSegment::dmFramework(MetadataSet const& framework) { put(*this, Properties::dmFramework, framework); }
void DMSegment::resetDMFramework() { reset(*this, Properties::dmFramework); }
Types::UUID const* DMSegment::descriptiveMetadataPlugInID() const {
    return get(*this, Properties::descriptiveMetadataPlugInID);
}
void DMSegment::descriptiveMetadataPlugInID(Types::UUID const& plugIn) {
    put(*this, Properties::descriptiveMetadataPlugInID, plugIn);
}
void DMSegment::resetDescriptiveMetadataPlugInID() { reset(*this, Properties::descriptiveMetadataPlugInID); }
Types::UniversalLabel const* DMSegment::descriptiveMetadataScheme() const {
    return get(*this, Properties::descriptiveMetadataScheme);
}
void DMSegment::descriptiveMetadataScheme(Types::UniversalLabel const& scheme) {
    put(*this, Properties::descriptiveMetadataScheme, scheme);
}
void DMSegment::resetDescriptiveMetadataScheme() { reset(*this, Properties::descriptiveMetadataScheme); }
Types::UTF16String const* DMSegment::descriptiveMetadataApplicationEnvironmentID() const {
    return get(*this, Properties::descriptiveMetadataApplicationEnvironmentID);
}
void DMSegment::descriptiveMetadataApplicationEnvironmentID(Types::UTF16String const& environment) {
    put(*this, Properties::descriptiveMetadataApplicationEnvironmentID, environment);
}
void DMSegment::resetDescriptiveMetadataApplicationEnvironmentID() {
    reset(*this, Properties::descriptiveMetadataApplicationEnvironmentID);
}

} // namespace MXF::Zelm::Metadata::Structural
