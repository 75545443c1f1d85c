#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

PhysicalDescriptor::PhysicalDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                                       MetadataSetOwner* owner)
    : GenericDescriptor(key, definition, owner) {}
PhysicalDescriptor::~PhysicalDescriptor() = default;

UnknownChunkSet::UnknownChunkSet(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : TrackableMetadataSet(classKey(), definition, owner) {}
UnknownChunkSet::~UnknownChunkSet() = default;

KLV::Key const& UnknownChunkSet::classKey() { return StructuralMetadataKeys::unknownChunkSet(); }

Types::UInt32 const* UnknownChunkSet::chunkID() const { return get(*this, Properties::chunkID); }
void UnknownChunkSet::chunkID(Types::UInt32 const& id) { put(*this, Properties::chunkID, id); }
Types::UInt32 const* UnknownChunkSet::chunkLength() const { return get(*this, Properties::chunkLength); }
void UnknownChunkSet::chunkLength(Types::UInt32 const& bytes) { put(*this, Properties::chunkLength, bytes); }
Types::DataStream const* UnknownChunkSet::chunkData() const { return get(*this, Properties::chunkData); }
void UnknownChunkSet::chunkData(Types::DataStream const& data) { put(*this, Properties::chunkData, data); }

WAVEAudioPhysicalDescriptor::WAVEAudioPhysicalDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                                         MetadataSetOwner* owner)
    : PhysicalDescriptor(classKey(), definition, owner) {}
WAVEAudioPhysicalDescriptor::~WAVEAudioPhysicalDescriptor() = default;

KLV::Key const& WAVEAudioPhysicalDescriptor::classKey() {
    return StructuralMetadataKeys::waveAudioPhysicalDescriptor();
}

Types::UTF16String const* WAVEAudioPhysicalDescriptor::bextCodingHistory() const {
    return get(*this, Properties::bextCodingHistory);
}
void WAVEAudioPhysicalDescriptor::bextCodingHistory(Types::UTF16String const& history) {
    put(*this, Properties::bextCodingHistory, history);
}
void WAVEAudioPhysicalDescriptor::resetBextCodingHistory() { reset(*this, Properties::bextCodingHistory); }
Types::UInt32 const* WAVEAudioPhysicalDescriptor::qltyFileSecurityReport() const {
    return get(*this, Properties::qltyFileSecurityReport);
}
void WAVEAudioPhysicalDescriptor::qltyFileSecurityReport(Types::UInt32 const& code) {
    put(*this, Properties::qltyFileSecurityReport, code);
}
void WAVEAudioPhysicalDescriptor::resetQltyFileSecurityReport() {
    reset(*this, Properties::qltyFileSecurityReport);
}
Types::UInt32 const* WAVEAudioPhysicalDescriptor::qltyFileSecurityWave() const {
    return get(*this, Properties::qltyFileSecurityWave);
}
void WAVEAudioPhysicalDescriptor::qltyFileSecurityWave(Types::UInt32 const& code) {
    put(*this, Properties::qltyFileSecurityWave, code);
}
void WAVEAudioPhysicalDescriptor::resetQltyFileSecurityWave() {
    reset(*this, Properties::qltyFileSecurityWave);
}
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyBasicData() const {
    return get(*this, Properties::qltyBasicData);
}
void WAVEAudioPhysicalDescriptor::qltyBasicData(Types::UTF16String const& text) {
    put(*this, Properties::qltyBasicData, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyBasicData() { reset(*this, Properties::qltyBasicData); }
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyStartOfModulation() const {
    return get(*this, Properties::qltyStartOfModulation);
}
void WAVEAudioPhysicalDescriptor::qltyStartOfModulation(Types::UTF16String const& text) {
    put(*this, Properties::qltyStartOfModulation, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyStartOfModulation() {
    reset(*this, Properties::qltyStartOfModulation);
}
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyQualityEvent() const {
    return get(*this, Properties::qltyQualityEvent);
}
void WAVEAudioPhysicalDescriptor::qltyQualityEvent(Types::UTF16String const& text) {
    put(*this, Properties::qltyQualityEvent, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyQualityEvent() { reset(*this, Properties::qltyQualityEvent); }
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyEndOfModulation() const {
    return get(*this, Properties::qltyEndOfModulation);
}
void WAVEAudioPhysicalDescriptor::qltyEndOfModulation(Types::UTF16String const& text) {
    put(*this, Properties::qltyEndOfModulation, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyEndOfModulation() {
    reset(*this, Properties::qltyEndOfModulation);
}
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyQualityParameter() const {
    return get(*this, Properties::qltyQualityParameter);
}
void WAVEAudioPhysicalDescriptor::qltyQualityParameter(Types::UTF16String const& text) {
    put(*this, Properties::qltyQualityParameter, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyQualityParameter() {
    reset(*this, Properties::qltyQualityParameter);
}
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyOperatorComment() const {
    return get(*this, Properties::qltyOperatorComment);
}
void WAVEAudioPhysicalDescriptor::qltyOperatorComment(Types::UTF16String const& text) {
    put(*this, Properties::qltyOperatorComment, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyOperatorComment() {
    reset(*this, Properties::qltyOperatorComment);
}
Types::UTF16String const* WAVEAudioPhysicalDescriptor::qltyCueSheet() const {
    return get(*this, Properties::qltyCueSheet);
}
void WAVEAudioPhysicalDescriptor::qltyCueSheet(Types::UTF16String const& text) {
    put(*this, Properties::qltyCueSheet, text);
}
void WAVEAudioPhysicalDescriptor::resetQltyCueSheet() { reset(*this, Properties::qltyCueSheet); }
Templates::vector<UnknownChunkSet*> WAVEAudioPhysicalDescriptor::unknownBWFChunks() const {
    return get(*this, Properties::unknownBWFChunks);
}
void WAVEAudioPhysicalDescriptor::addUnknownBWFChunk(UnknownChunkSet const& chunk) {
    Structural::add(*this, Properties::unknownBWFChunks, chunk);
}
bool WAVEAudioPhysicalDescriptor::removeUnknownBWFChunk(UnknownChunkSet const& chunk) {
    return remove(*this, Properties::unknownBWFChunks, chunk);
}
void WAVEAudioPhysicalDescriptor::resetUnknownBWFChunks() { reset(*this, Properties::unknownBWFChunks); }

} // namespace MXF::Zelm::Metadata::Structural
