#include "MXF/Zelm/Metadata/Structural/GenericPictureEssenceDescriptor.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

GenericPictureEssenceDescriptor::GenericPictureEssenceDescriptor(
    MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : GenericPictureEssenceDescriptor(classKey(), definition, owner) {}
GenericPictureEssenceDescriptor::GenericPictureEssenceDescriptor(
    KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : FileDescriptor(key, definition, owner) {}
GenericPictureEssenceDescriptor::~GenericPictureEssenceDescriptor() = default;

KLV::Key const& GenericPictureEssenceDescriptor::classKey() {
    return StructuralMetadataKeys::genericPictureEssenceDescriptor();
}

Types::UInt8 const* GenericPictureEssenceDescriptor::frameLayout() const {
    return get(*this, Properties::frameLayout);
}
void GenericPictureEssenceDescriptor::frameLayout(Types::UInt8 const& layout) {
    put(*this, Properties::frameLayout, layout);
}
void GenericPictureEssenceDescriptor::resetFrameLayout() { reset(*this, Properties::frameLayout); }
Types::UInt32 const* GenericPictureEssenceDescriptor::storedWidth() const {
    return get(*this, Properties::storedWidth);
}
void GenericPictureEssenceDescriptor::storedWidth(Types::UInt32 const& width) {
    put(*this, Properties::storedWidth, width);
}
void GenericPictureEssenceDescriptor::resetStoredWidth() { reset(*this, Properties::storedWidth); }
Types::UInt32 const* GenericPictureEssenceDescriptor::storedHeight() const {
    return get(*this, Properties::storedHeight);
}
void GenericPictureEssenceDescriptor::storedHeight(Types::UInt32 const& height) {
    put(*this, Properties::storedHeight, height);
}
void GenericPictureEssenceDescriptor::resetStoredHeight() { reset(*this, Properties::storedHeight); }
Types::Int32 const* GenericPictureEssenceDescriptor::storedF2Offset() const {
    return get(*this, Properties::storedF2Offset);
}
void GenericPictureEssenceDescriptor::storedF2Offset(Types::Int32 const& offset) {
    put(*this, Properties::storedF2Offset, offset);
}
void GenericPictureEssenceDescriptor::resetStoredF2Offset() { reset(*this, Properties::storedF2Offset); }
Types::UInt32 const* GenericPictureEssenceDescriptor::sampledWidth() const {
    return get(*this, Properties::sampledWidth);
}
void GenericPictureEssenceDescriptor::sampledWidth(Types::UInt32 const& width) {
    put(*this, Properties::sampledWidth, width);
}
void GenericPictureEssenceDescriptor::resetSampledWidth() { reset(*this, Properties::sampledWidth); }
Types::UInt32 const* GenericPictureEssenceDescriptor::sampledHeight() const {
    return get(*this, Properties::sampledHeight);
}
void GenericPictureEssenceDescriptor::sampledHeight(Types::UInt32 const& height) {
    put(*this, Properties::sampledHeight, height);
}
void GenericPictureEssenceDescriptor::resetSampledHeight() { reset(*this, Properties::sampledHeight); }
Types::Int32 const* GenericPictureEssenceDescriptor::sampledXOffset() const {
    return get(*this, Properties::sampledXOffset);
}
void GenericPictureEssenceDescriptor::sampledXOffset(Types::Int32 const& offset) {
    put(*this, Properties::sampledXOffset, offset);
}
void GenericPictureEssenceDescriptor::resetSampledXOffset() { reset(*this, Properties::sampledXOffset); }
Types::Int32 const* GenericPictureEssenceDescriptor::sampledYOffset() const {
    return get(*this, Properties::sampledYOffset);
}
void GenericPictureEssenceDescriptor::sampledYOffset(Types::Int32 const& offset) {
    put(*this, Properties::sampledYOffset, offset);
}
void GenericPictureEssenceDescriptor::resetSampledYOffset() { reset(*this, Properties::sampledYOffset); }
Types::UInt32 const* GenericPictureEssenceDescriptor::displayWidth() const {
    return get(*this, Properties::displayWidth);
}
void GenericPictureEssenceDescriptor::displayWidth(Types::UInt32 const& width) {
    put(*this, Properties::displayWidth, width);
}
void GenericPictureEssenceDescriptor::resetDisplayWidth() { reset(*this, Properties::displayWidth); }
Types::UInt32 const* GenericPictureEssenceDescriptor::displayHeight() const {
    return get(*this, Properties::displayHeight);
}
void GenericPictureEssenceDescriptor::displayHeight(Types::UInt32 const& height) {
    put(*this, Properties::displayHeight, height);
}
void GenericPictureEssenceDescriptor::resetDisplayHeight() { reset(*this, Properties::displayHeight); }
Types::Int32 const* GenericPictureEssenceDescriptor::displayXOffset() const {
    return get(*this, Properties::displayXOffset);
}
void GenericPictureEssenceDescriptor::displayXOffset(Types::Int32 const& offset) {
    put(*this, Properties::displayXOffset, offset);
}
void GenericPictureEssenceDescriptor::resetDisplayXOffset() { reset(*this, Properties::displayXOffset); }
Types::Int32 const* GenericPictureEssenceDescriptor::displayYOffset() const {
    return get(*this, Properties::displayYOffset);
}
void GenericPictureEssenceDescriptor::displayYOffset(Types::Int32 const& offset) {
    put(*this, Properties::displayYOffset, offset);
}
void GenericPictureEssenceDescriptor::resetDisplayYOffset() { reset(*this, Properties::displayYOffset); }
Types::Int32 const* GenericPictureEssenceDescriptor::displayF2Offset() const {
    return get(*this, Properties::displayF2Offset);
}
void GenericPictureEssenceDescriptor::displayF2Offset(Types::Int32 const& offset) {
    put(*this, Properties::displayF2Offset, offset);
}
void GenericPictureEssenceDescriptor::resetDisplayF2Offset() { reset(*this, Properties::displayF2Offset); }
Types::UInt32 const* GenericPictureEssenceDescriptor::activeWidth() const {
    return get(*this, Properties::activeWidth);
}
void GenericPictureEssenceDescriptor::activeWidth(Types::UInt32 const& width) {
    put(*this, Properties::activeWidth, width);
}
void GenericPictureEssenceDescriptor::resetActiveWidth() { reset(*this, Properties::activeWidth); }
Types::UInt32 const* GenericPictureEssenceDescriptor::activeHeight() const {
    return get(*this, Properties::activeHeight);
}
void GenericPictureEssenceDescriptor::activeHeight(Types::UInt32 const& height) {
    put(*this, Properties::activeHeight, height);
}
void GenericPictureEssenceDescriptor::resetActiveHeight() { reset(*this, Properties::activeHeight); }
Types::UInt32 const* GenericPictureEssenceDescriptor::activeXOffset() const {
    return get(*this, Properties::activeXOffset);
}
void GenericPictureEssenceDescriptor::activeXOffset(Types::UInt32 const& offset) {
    put(*this, Properties::activeXOffset, offset);
}
void GenericPictureEssenceDescriptor::resetActiveXOffset() { reset(*this, Properties::activeXOffset); }
Types::UInt32 const* GenericPictureEssenceDescriptor::activeYOffset() const {
    return get(*this, Properties::activeYOffset);
}
void GenericPictureEssenceDescriptor::activeYOffset(Types::UInt32 const& offset) {
    put(*this, Properties::activeYOffset, offset);
}
void GenericPictureEssenceDescriptor::resetActiveYOffset() { reset(*this, Properties::activeYOffset); }
Types::Rational const* GenericPictureEssenceDescriptor::aspectRatio() const {
    return get(*this, Properties::aspectRatio);
}
void GenericPictureEssenceDescriptor::aspectRatio(Types::Rational const& ratio) {
    put(*this, Properties::aspectRatio, ratio);
}
void GenericPictureEssenceDescriptor::resetAspectRatio() { reset(*this, Properties::aspectRatio); }
Types::UInt8 const* GenericPictureEssenceDescriptor::activeFormatDescriptor() const {
    return get(*this, Properties::activeFormatDescriptor);
}
void GenericPictureEssenceDescriptor::activeFormatDescriptor(Types::UInt8 const& code) {
    put(*this, Properties::activeFormatDescriptor, code);
}
void GenericPictureEssenceDescriptor::resetActiveFormatDescriptor() {
    reset(*this, Properties::activeFormatDescriptor);
}
Types::Batch const* GenericPictureEssenceDescriptor::alternativeCenterCuts() const {
    return get(*this, Properties::alternativeCenterCuts);
}
void GenericPictureEssenceDescriptor::alternativeCenterCuts(Types::Batch const& labels) {
    put(*this, Properties::alternativeCenterCuts, labels);
}
void GenericPictureEssenceDescriptor::addAlternativeCenterCut(Types::UniversalLabel const& label) {
    Structural::add(*this, Properties::alternativeCenterCuts, label);
}
void GenericPictureEssenceDescriptor::resetAlternativeCenterCuts() {
    reset(*this, Properties::alternativeCenterCuts);
}
Types::Array const* GenericPictureEssenceDescriptor::videoLineMap() const {
    return get(*this, Properties::videoLineMap);
}
void GenericPictureEssenceDescriptor::videoLineMap(Types::Array const& lines) {
    put(*this, Properties::videoLineMap, lines);
}
void GenericPictureEssenceDescriptor::addVideoLineMap(Types::Int32 const& line) {
    Structural::add(*this, Properties::videoLineMap, line);
}
void GenericPictureEssenceDescriptor::videoLineMap(std::int32_t field1, std::int32_t field2) {
    Types::Array lines(Types::Int32::typeIdentifier);
    lines.add(Types::Int32(field1));
    lines.add(Types::Int32(field2));
    videoLineMap(lines);
}
void GenericPictureEssenceDescriptor::resetVideoLineMap() { reset(*this, Properties::videoLineMap); }
Types::UInt8 const* GenericPictureEssenceDescriptor::fieldDominance() const {
    return get(*this, Properties::fieldDominance);
}
void GenericPictureEssenceDescriptor::fieldDominance(Types::UInt8 const& field) {
    put(*this, Properties::fieldDominance, field);
}
void GenericPictureEssenceDescriptor::resetFieldDominance() { reset(*this, Properties::fieldDominance); }
Types::SignalStandard const* GenericPictureEssenceDescriptor::signalStandard() const {
    return get(*this, Properties::signalStandard);
}
void GenericPictureEssenceDescriptor::signalStandard(Types::SignalStandard const& standard) {
    put(*this, Properties::signalStandard, standard);
}
void GenericPictureEssenceDescriptor::resetSignalStandard() { reset(*this, Properties::signalStandard); }
Types::UniversalLabel const* GenericPictureEssenceDescriptor::pictureEssenceCoding() const {
    return get(*this, Properties::pictureEssenceCoding);
}
void GenericPictureEssenceDescriptor::pictureEssenceCoding(Types::UniversalLabel const& label) {
    put(*this, Properties::pictureEssenceCoding, label);
}
void GenericPictureEssenceDescriptor::resetPictureEssenceCoding() {
    reset(*this, Properties::pictureEssenceCoding);
}
Types::UniversalLabel const* GenericPictureEssenceDescriptor::transferCharacteristic() const {
    return get(*this, Properties::transferCharacteristic);
}
void GenericPictureEssenceDescriptor::transferCharacteristic(Types::UniversalLabel const& label) {
    put(*this, Properties::transferCharacteristic, label);
}
void GenericPictureEssenceDescriptor::resetTransferCharacteristic() {
    reset(*this, Properties::transferCharacteristic);
}
Types::UniversalLabel const* GenericPictureEssenceDescriptor::codingEquations() const {
    return get(*this, Properties::codingEquations);
}
void GenericPictureEssenceDescriptor::codingEquations(Types::UniversalLabel const& label) {
    put(*this, Properties::codingEquations, label);
}
void GenericPictureEssenceDescriptor::resetCodingEquations() { reset(*this, Properties::codingEquations); }
Types::UniversalLabel const* GenericPictureEssenceDescriptor::colorPrimaries() const {
    return get(*this, Properties::colorPrimaries);
}
void GenericPictureEssenceDescriptor::colorPrimaries(Types::UniversalLabel const& label) {
    put(*this, Properties::colorPrimaries, label);
}
void GenericPictureEssenceDescriptor::resetColorPrimaries() { reset(*this, Properties::colorPrimaries); }
Types::UInt8 const* GenericPictureEssenceDescriptor::alphaTransparency() const {
    return get(*this, Properties::alphaTransparency);
}
void GenericPictureEssenceDescriptor::alphaTransparency(Types::UInt8 const& transparency) {
    put(*this, Properties::alphaTransparency, transparency);
}
void GenericPictureEssenceDescriptor::resetAlphaTransparency() {
    reset(*this, Properties::alphaTransparency);
}
Types::UInt32 const* GenericPictureEssenceDescriptor::imageAlignmentOffset() const {
    return get(*this, Properties::imageAlignmentOffset);
}
void GenericPictureEssenceDescriptor::imageAlignmentOffset(Types::UInt32 const& offset) {
    put(*this, Properties::imageAlignmentOffset, offset);
}
void GenericPictureEssenceDescriptor::resetImageAlignmentOffset() {
    reset(*this, Properties::imageAlignmentOffset);
}
Types::UInt32 const* GenericPictureEssenceDescriptor::imageStartOffset() const {
    return get(*this, Properties::imageStartOffset);
}
void GenericPictureEssenceDescriptor::imageStartOffset(Types::UInt32 const& offset) {
    put(*this, Properties::imageStartOffset, offset);
}
void GenericPictureEssenceDescriptor::resetImageStartOffset() { reset(*this, Properties::imageStartOffset); }
Types::UInt32 const* GenericPictureEssenceDescriptor::imageEndOffset() const {
    return get(*this, Properties::imageEndOffset);
}
void GenericPictureEssenceDescriptor::imageEndOffset(Types::UInt32 const& offset) {
    put(*this, Properties::imageEndOffset, offset);
}
void GenericPictureEssenceDescriptor::resetImageEndOffset() { reset(*this, Properties::imageEndOffset); }
Types::DataValue const* GenericPictureEssenceDescriptor::masteringDisplayPrimaries() const {
    return get(*this, Properties::masteringDisplayPrimaries);
}
void GenericPictureEssenceDescriptor::masteringDisplayPrimaries(Types::DataValue const& primaries) {
    put(*this, Properties::masteringDisplayPrimaries, primaries);
}
void GenericPictureEssenceDescriptor::resetMasteringDisplayPrimaries() {
    reset(*this, Properties::masteringDisplayPrimaries);
}
Types::DataValue const* GenericPictureEssenceDescriptor::masteringDisplayWhitePointChromaticity() const {
    return get(*this, Properties::masteringDisplayWhitePointChromaticity);
}
void GenericPictureEssenceDescriptor::masteringDisplayWhitePointChromaticity(Types::DataValue const& white) {
    put(*this, Properties::masteringDisplayWhitePointChromaticity, white);
}
void GenericPictureEssenceDescriptor::resetMasteringDisplayWhitePointChromaticity() {
    reset(*this, Properties::masteringDisplayWhitePointChromaticity);
}
Types::UInt32 const* GenericPictureEssenceDescriptor::masteringDisplayMaximumLuminance() const {
    return get(*this, Properties::masteringDisplayMaximumLuminance);
}
void GenericPictureEssenceDescriptor::masteringDisplayMaximumLuminance(Types::UInt32 const& luminance) {
    put(*this, Properties::masteringDisplayMaximumLuminance, luminance);
}
void GenericPictureEssenceDescriptor::resetMasteringDisplayMaximumLuminance() {
    reset(*this, Properties::masteringDisplayMaximumLuminance);
}
Types::UInt32 const* GenericPictureEssenceDescriptor::masteringDisplayMinimumLuminance() const {
    return get(*this, Properties::masteringDisplayMinimumLuminance);
}
void GenericPictureEssenceDescriptor::masteringDisplayMinimumLuminance(Types::UInt32 const& luminance) {
    put(*this, Properties::masteringDisplayMinimumLuminance, luminance);
}
void GenericPictureEssenceDescriptor::resetMasteringDisplayMinimumLuminance() {
    reset(*this, Properties::masteringDisplayMinimumLuminance);
}

} // namespace MXF::Zelm::Metadata::Structural
