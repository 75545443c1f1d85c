#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

CDCIEssenceDescriptor::CDCIEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                             MetadataSetOwner* owner)
    : CDCIEssenceDescriptor(classKey(), definition, owner) {}
CDCIEssenceDescriptor::CDCIEssenceDescriptor(KLV::Key const& key,
                                             MetaMetadata::MetaMetadataSet const* definition,
                                             MetadataSetOwner* owner)
    : GenericPictureEssenceDescriptor(key, definition, owner) {}
CDCIEssenceDescriptor::~CDCIEssenceDescriptor() = default;

KLV::Key const& CDCIEssenceDescriptor::classKey() { return StructuralMetadataKeys::cdciEssenceDescriptor(); }

Types::UInt32 const* CDCIEssenceDescriptor::componentDepth() const {
    return get(*this, Properties::componentDepth);
}
void CDCIEssenceDescriptor::componentDepth(Types::UInt32 const& depth) {
    put(*this, Properties::componentDepth, depth);
}
void CDCIEssenceDescriptor::resetComponentDepth() { reset(*this, Properties::componentDepth); }
Types::UInt32 const* CDCIEssenceDescriptor::horizontalSubsampling() const {
    return get(*this, Properties::horizontalSubsampling);
}
void CDCIEssenceDescriptor::horizontalSubsampling(Types::UInt32 const& ratio) {
    put(*this, Properties::horizontalSubsampling, ratio);
}
void CDCIEssenceDescriptor::resetHorizontalSubsampling() { reset(*this, Properties::horizontalSubsampling); }
Types::UInt32 const* CDCIEssenceDescriptor::verticalSubsampling() const {
    return get(*this, Properties::verticalSubsampling);
}
void CDCIEssenceDescriptor::verticalSubsampling(Types::UInt32 const& ratio) {
    put(*this, Properties::verticalSubsampling, ratio);
}
void CDCIEssenceDescriptor::resetVerticalSubsampling() { reset(*this, Properties::verticalSubsampling); }
Types::UInt8 const* CDCIEssenceDescriptor::colorSiting() const { return get(*this, Properties::colorSiting); }
void CDCIEssenceDescriptor::colorSiting(Types::UInt8 const& siting) {
    put(*this, Properties::colorSiting, siting);
}
void CDCIEssenceDescriptor::resetColorSiting() { reset(*this, Properties::colorSiting); }
Types::UInt32 const* CDCIEssenceDescriptor::blackRefLevel() const {
    return get(*this, Properties::blackRefLevel);
}
void CDCIEssenceDescriptor::blackRefLevel(Types::UInt32 const& level) {
    put(*this, Properties::blackRefLevel, level);
}
void CDCIEssenceDescriptor::resetBlackRefLevel() { reset(*this, Properties::blackRefLevel); }
Types::UInt32 const* CDCIEssenceDescriptor::whiteRefLevel() const {
    return get(*this, Properties::whiteRefLevel);
}
void CDCIEssenceDescriptor::whiteRefLevel(Types::UInt32 const& level) {
    put(*this, Properties::whiteRefLevel, level);
}
void CDCIEssenceDescriptor::resetWhiteRefLevel() { reset(*this, Properties::whiteRefLevel); }
Types::UInt32 const* CDCIEssenceDescriptor::colorRange() const { return get(*this, Properties::colorRange); }
void CDCIEssenceDescriptor::colorRange(Types::UInt32 const& range) {
    put(*this, Properties::colorRange, range);
}
void CDCIEssenceDescriptor::resetColorRange() { reset(*this, Properties::colorRange); }
Types::UInt32 const* CDCIEssenceDescriptor::alphaSampleDepth() const {
    return get(*this, Properties::alphaSampleDepth);
}
void CDCIEssenceDescriptor::alphaSampleDepth(Types::UInt32 const& depth) {
    put(*this, Properties::alphaSampleDepth, depth);
}
void CDCIEssenceDescriptor::resetAlphaSampleDepth() { reset(*this, Properties::alphaSampleDepth); }
Types::Int16 const* CDCIEssenceDescriptor::paddingBits() const { return get(*this, Properties::paddingBits); }
void CDCIEssenceDescriptor::paddingBits(Types::Int16 const& bits) {
    put(*this, Properties::paddingBits, bits);
}
void CDCIEssenceDescriptor::resetPaddingBits() { reset(*this, Properties::paddingBits); }
Types::Boolean const* CDCIEssenceDescriptor::reversedByteOrder() const {
    return get(*this, Properties::reversedByteOrder);
}
void CDCIEssenceDescriptor::reversedByteOrder(Types::Boolean const& reversed) {
    put(*this, Properties::reversedByteOrder, reversed);
}
void CDCIEssenceDescriptor::resetReversedByteOrder() { reset(*this, Properties::reversedByteOrder); }

MPEG2VideoDescriptor::MPEG2VideoDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                           MetadataSetOwner* owner)
    : CDCIEssenceDescriptor(classKey(), definition, owner) {}
MPEG2VideoDescriptor::~MPEG2VideoDescriptor() = default;

KLV::Key const& MPEG2VideoDescriptor::classKey() { return StructuralMetadataKeys::mpeg2VideoDescriptor(); }

Types::Boolean const* MPEG2VideoDescriptor::singleSequence() const {
    return get(*this, Properties::singleSequence);
}
void MPEG2VideoDescriptor::singleSequence(Types::Boolean const& single) {
    put(*this, Properties::singleSequence, single);
}
void MPEG2VideoDescriptor::resetSingleSequence() { reset(*this, Properties::singleSequence); }
Types::Boolean const* MPEG2VideoDescriptor::constantBFrames() const {
    return get(*this, Properties::constantBFrames);
}
void MPEG2VideoDescriptor::constantBFrames(Types::Boolean const& constant) {
    put(*this, Properties::constantBFrames, constant);
}
void MPEG2VideoDescriptor::resetConstantBFrames() { reset(*this, Properties::constantBFrames); }
Types::UInt8 const* MPEG2VideoDescriptor::codedContentType() const {
    return get(*this, Properties::codedContentType);
}
void MPEG2VideoDescriptor::codedContentType(Types::UInt8 const& type) {
    put(*this, Properties::codedContentType, type);
}
void MPEG2VideoDescriptor::resetCodedContentType() { reset(*this, Properties::codedContentType); }
Types::Boolean const* MPEG2VideoDescriptor::lowDelay() const { return get(*this, Properties::lowDelay); }
void MPEG2VideoDescriptor::lowDelay(Types::Boolean const& lowDelay) {
    put(*this, Properties::lowDelay, lowDelay);
}
void MPEG2VideoDescriptor::resetLowDelay() { reset(*this, Properties::lowDelay); }
Types::Boolean const* MPEG2VideoDescriptor::closedGOP() const { return get(*this, Properties::closedGOP); }
void MPEG2VideoDescriptor::closedGOP(Types::Boolean const& closed) {
    put(*this, Properties::closedGOP, closed);
}
void MPEG2VideoDescriptor::resetClosedGOP() { reset(*this, Properties::closedGOP); }
Types::Boolean const* MPEG2VideoDescriptor::identicalGOP() const {
    return get(*this, Properties::identicalGOP);
}
void MPEG2VideoDescriptor::identicalGOP(Types::Boolean const& identical) {
    put(*this, Properties::identicalGOP, identical);
}
void MPEG2VideoDescriptor::resetIdenticalGOP() { reset(*this, Properties::identicalGOP); }
Types::UInt16 const* MPEG2VideoDescriptor::maxGOP() const { return get(*this, Properties::maxGOP); }
void MPEG2VideoDescriptor::maxGOP(Types::UInt16 const& pictures) { put(*this, Properties::maxGOP, pictures); }
void MPEG2VideoDescriptor::resetMaxGOP() { reset(*this, Properties::maxGOP); }
Types::UInt16 const* MPEG2VideoDescriptor::bPictureCount() const {
    return get(*this, Properties::bPictureCount);
}
void MPEG2VideoDescriptor::bPictureCount(Types::UInt16 const& pictures) {
    put(*this, Properties::bPictureCount, pictures);
}
void MPEG2VideoDescriptor::resetBPictureCount() { reset(*this, Properties::bPictureCount); }
Types::UInt32 const* MPEG2VideoDescriptor::bitRate() const { return get(*this, Properties::bitRate); }
void MPEG2VideoDescriptor::bitRate(Types::UInt32 const& rate) { put(*this, Properties::bitRate, rate); }
void MPEG2VideoDescriptor::resetBitRate() { reset(*this, Properties::bitRate); }
Types::UInt8 const* MPEG2VideoDescriptor::profileAndLevel() const {
    return get(*this, Properties::profileAndLevel);
}
void MPEG2VideoDescriptor::profileAndLevel(Types::UInt8 const& indication) {
    put(*this, Properties::profileAndLevel, indication);
}
void MPEG2VideoDescriptor::resetProfileAndLevel() { reset(*this, Properties::profileAndLevel); }

} // namespace MXF::Zelm::Metadata::Structural
