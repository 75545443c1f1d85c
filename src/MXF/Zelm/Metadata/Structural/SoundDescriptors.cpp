#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

GenericSoundEssenceDescriptor::GenericSoundEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                                             MetadataSetOwner* owner)
    : GenericSoundEssenceDescriptor(classKey(), definition, owner) {}
GenericSoundEssenceDescriptor::GenericSoundEssenceDescriptor(KLV::Key const& key,
                                                             MetaMetadata::MetaMetadataSet const* definition,
                                                             MetadataSetOwner* owner)
    : FileDescriptor(key, definition, owner) {}
GenericSoundEssenceDescriptor::~GenericSoundEssenceDescriptor() = default;

KLV::Key const& GenericSoundEssenceDescriptor::classKey() {
    return StructuralMetadataKeys::genericSoundEssenceDescriptor();
}

Types::Rational const* GenericSoundEssenceDescriptor::audioSamplingRate() const {
    return get(*this, Properties::audioSamplingRate);
}
void GenericSoundEssenceDescriptor::audioSamplingRate(Types::Rational const& rate) {
    put(*this, Properties::audioSamplingRate, rate);
}
void GenericSoundEssenceDescriptor::resetAudioSamplingRate() { reset(*this, Properties::audioSamplingRate); }
Types::Boolean const* GenericSoundEssenceDescriptor::locked() const { return get(*this, Properties::locked); }
void GenericSoundEssenceDescriptor::locked(Types::Boolean const& locked) {
    put(*this, Properties::locked, locked);
}
void GenericSoundEssenceDescriptor::resetLocked() { reset(*this, Properties::locked); }
Types::Int8 const* GenericSoundEssenceDescriptor::audioRefLevel() const {
    return get(*this, Properties::audioRefLevel);
}
void GenericSoundEssenceDescriptor::audioRefLevel(Types::Int8 const& level) {
    put(*this, Properties::audioRefLevel, level);
}
void GenericSoundEssenceDescriptor::resetAudioRefLevel() { reset(*this, Properties::audioRefLevel); }
Types::UInt8 const* GenericSoundEssenceDescriptor::electrospatialFormulation() const {
    return get(*this, Properties::electrospatialFormulation);
}
void GenericSoundEssenceDescriptor::electrospatialFormulation(Types::UInt8 const& formulation) {
    put(*this, Properties::electrospatialFormulation, formulation);
}
void GenericSoundEssenceDescriptor::resetElectrospatialFormulation() {
    reset(*this, Properties::electrospatialFormulation);
}
Types::UInt32 const* GenericSoundEssenceDescriptor::channelCount() const {
    return get(*this, Properties::channelCount);
}
void GenericSoundEssenceDescriptor::channelCount(Types::UInt32 const& channels) {
    put(*this, Properties::channelCount, channels);
}
void GenericSoundEssenceDescriptor::resetChannelCount() { reset(*this, Properties::channelCount); }
Types::UInt32 const* GenericSoundEssenceDescriptor::quantizationBits() const {
    return get(*this, Properties::quantizationBits);
}
void GenericSoundEssenceDescriptor::quantizationBits(Types::UInt32 const& bits) {
    put(*this, Properties::quantizationBits, bits);
}
void GenericSoundEssenceDescriptor::resetQuantizationBits() { reset(*this, Properties::quantizationBits); }
Types::Int8 const* GenericSoundEssenceDescriptor::dialNorm() const {
    return get(*this, Properties::dialNorm);
}
void GenericSoundEssenceDescriptor::dialNorm(Types::Int8 const& level) {
    put(*this, Properties::dialNorm, level);
}
void GenericSoundEssenceDescriptor::resetDialNorm() { reset(*this, Properties::dialNorm); }
Types::UniversalLabel const* GenericSoundEssenceDescriptor::soundEssenceCompression() const {
    return get(*this, Properties::soundEssenceCompression);
}
void GenericSoundEssenceDescriptor::soundEssenceCompression(Types::UniversalLabel const& label) {
    put(*this, Properties::soundEssenceCompression, label);
}
void GenericSoundEssenceDescriptor::resetSoundEssenceCompression() {
    reset(*this, Properties::soundEssenceCompression);
}
Types::Int8 const* GenericSoundEssenceDescriptor::referenceAudioAlignmentLevel() const {
    return get(*this, Properties::referenceAudioAlignmentLevel);
}
void GenericSoundEssenceDescriptor::referenceAudioAlignmentLevel(Types::Int8 const& level) {
    put(*this, Properties::referenceAudioAlignmentLevel, level);
}
void GenericSoundEssenceDescriptor::resetReferenceAudioAlignmentLevel() {
    reset(*this, Properties::referenceAudioAlignmentLevel);
}
Types::Rational const* GenericSoundEssenceDescriptor::referenceImageEditRate() const {
    return get(*this, Properties::referenceImageEditRate);
}
void GenericSoundEssenceDescriptor::referenceImageEditRate(Types::Rational const& rate) {
    put(*this, Properties::referenceImageEditRate, rate);
}
void GenericSoundEssenceDescriptor::resetReferenceImageEditRate() {
    reset(*this, Properties::referenceImageEditRate);
}

WAVEAudioEssenceDescriptor::WAVEAudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                                       MetadataSetOwner* owner)
    : WAVEAudioEssenceDescriptor(classKey(), definition, owner) {}
WAVEAudioEssenceDescriptor::WAVEAudioEssenceDescriptor(KLV::Key const& key,
                                                       MetaMetadata::MetaMetadataSet const* definition,
                                                       MetadataSetOwner* owner)
    : GenericSoundEssenceDescriptor(key, definition, owner) {}
WAVEAudioEssenceDescriptor::~WAVEAudioEssenceDescriptor() = default;

KLV::Key const& WAVEAudioEssenceDescriptor::classKey() {
    return StructuralMetadataKeys::waveAudioEssenceDescriptor();
}

Types::UInt16 const* WAVEAudioEssenceDescriptor::blockAlign() const {
    return get(*this, Properties::blockAlign);
}
void WAVEAudioEssenceDescriptor::blockAlign(Types::UInt16 const& bytes) {
    put(*this, Properties::blockAlign, bytes);
}
Types::UInt8 const* WAVEAudioEssenceDescriptor::sequenceOffset() const {
    return get(*this, Properties::sequenceOffset);
}
void WAVEAudioEssenceDescriptor::sequenceOffset(Types::UInt8 const& frames) {
    put(*this, Properties::sequenceOffset, frames);
}
void WAVEAudioEssenceDescriptor::resetSequenceOffset() { reset(*this, Properties::sequenceOffset); }
Types::UInt32 const* WAVEAudioEssenceDescriptor::avgBps() const { return get(*this, Properties::avgBps); }
void WAVEAudioEssenceDescriptor::avgBps(Types::UInt32 const& bytes) { put(*this, Properties::avgBps, bytes); }
Types::UniversalLabel const* WAVEAudioEssenceDescriptor::channelAssignment() const {
    return get(*this, Properties::channelAssignment);
}
void WAVEAudioEssenceDescriptor::channelAssignment(Types::UniversalLabel const& label) {
    put(*this, Properties::channelAssignment, label);
}
void WAVEAudioEssenceDescriptor::resetChannelAssignment() { reset(*this, Properties::channelAssignment); }
Types::UInt32 const* WAVEAudioEssenceDescriptor::peakEnvelopeVersion() const {
    return get(*this, Properties::peakEnvelopeVersion);
}
void WAVEAudioEssenceDescriptor::peakEnvelopeVersion(Types::UInt32 const& version) {
    put(*this, Properties::peakEnvelopeVersion, version);
}
void WAVEAudioEssenceDescriptor::resetPeakEnvelopeVersion() { reset(*this, Properties::peakEnvelopeVersion); }
Types::UInt32 const* WAVEAudioEssenceDescriptor::peakEnvelopeFormat() const {
    return get(*this, Properties::peakEnvelopeFormat);
}
void WAVEAudioEssenceDescriptor::peakEnvelopeFormat(Types::UInt32 const& format) {
    put(*this, Properties::peakEnvelopeFormat, format);
}
void WAVEAudioEssenceDescriptor::resetPeakEnvelopeFormat() { reset(*this, Properties::peakEnvelopeFormat); }
Types::UInt32 const* WAVEAudioEssenceDescriptor::pointsPerPeakValue() const {
    return get(*this, Properties::pointsPerPeakValue);
}
void WAVEAudioEssenceDescriptor::pointsPerPeakValue(Types::UInt32 const& points) {
    put(*this, Properties::pointsPerPeakValue, points);
}
void WAVEAudioEssenceDescriptor::resetPointsPerPeakValue() { reset(*this, Properties::pointsPerPeakValue); }
Types::UInt32 const* WAVEAudioEssenceDescriptor::peakEnvelopeBlockSize() const {
    return get(*this, Properties::peakEnvelopeBlockSize);
}
void WAVEAudioEssenceDescriptor::peakEnvelopeBlockSize(Types::UInt32 const& samples) {
    put(*this, Properties::peakEnvelopeBlockSize, samples);
}
void WAVEAudioEssenceDescriptor::resetPeakEnvelopeBlockSize() {
    reset(*this, Properties::peakEnvelopeBlockSize);
}
Types::UInt32 const* WAVEAudioEssenceDescriptor::peakChannels() const {
    return get(*this, Properties::peakChannels);
}
void WAVEAudioEssenceDescriptor::peakChannels(Types::UInt32 const& channels) {
    put(*this, Properties::peakChannels, channels);
}
void WAVEAudioEssenceDescriptor::resetPeakChannels() { reset(*this, Properties::peakChannels); }
Types::UInt32 const* WAVEAudioEssenceDescriptor::peakFrames() const {
    return get(*this, Properties::peakFrames);
}
void WAVEAudioEssenceDescriptor::peakFrames(Types::UInt32 const& frames) {
    put(*this, Properties::peakFrames, frames);
}
void WAVEAudioEssenceDescriptor::resetPeakFrames() { reset(*this, Properties::peakFrames); }
Types::Position const* WAVEAudioEssenceDescriptor::peakOfPeaksPosition() const {
    return get(*this, Properties::peakOfPeaksPosition);
}
void WAVEAudioEssenceDescriptor::peakOfPeaksPosition(Types::Position const& position) {
    put(*this, Properties::peakOfPeaksPosition, position);
}
void WAVEAudioEssenceDescriptor::resetPeakOfPeaksPosition() { reset(*this, Properties::peakOfPeaksPosition); }
Types::Timestamp const* WAVEAudioEssenceDescriptor::peakEnvelopeTimestamp() const {
    return get(*this, Properties::peakEnvelopeTimestamp);
}
void WAVEAudioEssenceDescriptor::peakEnvelopeTimestamp(Types::Timestamp const& time) {
    put(*this, Properties::peakEnvelopeTimestamp, time);
}
void WAVEAudioEssenceDescriptor::resetPeakEnvelopeTimestamp() {
    reset(*this, Properties::peakEnvelopeTimestamp);
}
Types::DataStream const* WAVEAudioEssenceDescriptor::peakEnvelopeData() const {
    return get(*this, Properties::peakEnvelopeData);
}
void WAVEAudioEssenceDescriptor::peakEnvelopeData(Types::DataStream const& data) {
    put(*this, Properties::peakEnvelopeData, data);
}
void WAVEAudioEssenceDescriptor::resetPeakEnvelopeData() { reset(*this, Properties::peakEnvelopeData); }

AES3AudioEssenceDescriptor::AES3AudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                                       MetadataSetOwner* owner)
    : WAVEAudioEssenceDescriptor(classKey(), definition, owner) {}
AES3AudioEssenceDescriptor::~AES3AudioEssenceDescriptor() = default;

KLV::Key const& AES3AudioEssenceDescriptor::classKey() {
    return StructuralMetadataKeys::aes3AudioEssenceDescriptor();
}

Types::UInt8 const* AES3AudioEssenceDescriptor::emphasis() const { return get(*this, Properties::emphasis); }
void AES3AudioEssenceDescriptor::emphasis(Types::UInt8 const& emphasis) {
    put(*this, Properties::emphasis, emphasis);
}
void AES3AudioEssenceDescriptor::resetEmphasis() { reset(*this, Properties::emphasis); }
Types::UInt16 const* AES3AudioEssenceDescriptor::blockStartOffset() const {
    return get(*this, Properties::blockStartOffset);
}
void AES3AudioEssenceDescriptor::blockStartOffset(Types::UInt16 const& frames) {
    put(*this, Properties::blockStartOffset, frames);
}
void AES3AudioEssenceDescriptor::resetBlockStartOffset() { reset(*this, Properties::blockStartOffset); }
Types::UInt8 const* AES3AudioEssenceDescriptor::auxBitsMode() const {
    return get(*this, Properties::auxBitsMode);
}
void AES3AudioEssenceDescriptor::auxBitsMode(Types::UInt8 const& mode) {
    put(*this, Properties::auxBitsMode, mode);
}
void AES3AudioEssenceDescriptor::resetAuxBitsMode() { reset(*this, Properties::auxBitsMode); }
Types::Array const* AES3AudioEssenceDescriptor::channelStatusMode() const {
    return get(*this, Properties::channelStatusMode);
}
void AES3AudioEssenceDescriptor::channelStatusMode(Types::Array const& modes) {
    put(*this, Properties::channelStatusMode, modes);
}
void AES3AudioEssenceDescriptor::addChannelStatusMode(Types::UInt8 const& mode) {
    Structural::add(*this, Properties::channelStatusMode, mode);
}
void AES3AudioEssenceDescriptor::resetChannelStatusMode() { reset(*this, Properties::channelStatusMode); }
Types::Array const* AES3AudioEssenceDescriptor::fixedChannelStatusData() const {
    return get(*this, Properties::fixedChannelStatusData);
}
void AES3AudioEssenceDescriptor::fixedChannelStatusData(Types::Array const& bytes) {
    put(*this, Properties::fixedChannelStatusData, bytes);
}
void AES3AudioEssenceDescriptor::addFixedChannelStatusData(Types::UInt8 const& byte) {
    Structural::add(*this, Properties::fixedChannelStatusData, byte);
}
void AES3AudioEssenceDescriptor::resetFixedChannelStatusData() {
    reset(*this, Properties::fixedChannelStatusData);
}
Types::Array const* AES3AudioEssenceDescriptor::userDataMode() const {
    return get(*this, Properties::userDataMode);
}
void AES3AudioEssenceDescriptor::userDataMode(Types::Array const& modes) {
    put(*this, Properties::userDataMode, modes);
}
void AES3AudioEssenceDescriptor::addUserDataMode(Types::UInt8 const& mode) {
    Structural::add(*this, Properties::userDataMode, mode);
}
void AES3AudioEssenceDescriptor::resetUserDataMode() { reset(*this, Properties::userDataMode); }
Types::Array const* AES3AudioEssenceDescriptor::fixedUserData() const {
    return get(*this, Properties::fixedUserData);
}
void AES3AudioEssenceDescriptor::fixedUserData(Types::Array const& bytes) {
    put(*this, Properties::fixedUserData, bytes);
}
void AES3AudioEssenceDescriptor::addFixedUserData(Types::UInt8 const& byte) {
    Structural::add(*this, Properties::fixedUserData, byte);
}
void AES3AudioEssenceDescriptor::resetFixedUserData() { reset(*this, Properties::fixedUserData); }

} // namespace MXF::Zelm::Metadata::Structural
