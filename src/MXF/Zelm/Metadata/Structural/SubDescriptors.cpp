#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

SubDescriptor::SubDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                             MetadataSetOwner* owner)
    : TrackableMetadataSet(key, definition, owner) {}
SubDescriptor::~SubDescriptor() = default;

JPEG2000PictureSubDescriptor::JPEG2000PictureSubDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                                           MetadataSetOwner* owner)
    : SubDescriptor(classKey(), definition, owner) {}
JPEG2000PictureSubDescriptor::~JPEG2000PictureSubDescriptor() = default;

KLV::Key const& JPEG2000PictureSubDescriptor::classKey() {
    return StructuralMetadataKeys::jpeg2000PictureSubDescriptor();
}

Types::UInt16 const* JPEG2000PictureSubDescriptor::rsiz() const { return get(*this, Properties::rsiz); }
void JPEG2000PictureSubDescriptor::rsiz(Types::UInt16 const& capabilities) {
    put(*this, Properties::rsiz, capabilities);
}
Types::UInt32 const* JPEG2000PictureSubDescriptor::xsiz() const { return get(*this, Properties::xsiz); }
void JPEG2000PictureSubDescriptor::xsiz(Types::UInt32 const& width) { put(*this, Properties::xsiz, width); }
Types::UInt32 const* JPEG2000PictureSubDescriptor::ysiz() const { return get(*this, Properties::ysiz); }
void JPEG2000PictureSubDescriptor::ysiz(Types::UInt32 const& height) { put(*this, Properties::ysiz, height); }
Types::UInt32 const* JPEG2000PictureSubDescriptor::xOsiz() const { return get(*this, Properties::xOsiz); }
void JPEG2000PictureSubDescriptor::xOsiz(Types::UInt32 const& offset) {
    put(*this, Properties::xOsiz, offset);
}
Types::UInt32 const* JPEG2000PictureSubDescriptor::yOsiz() const { return get(*this, Properties::yOsiz); }
void JPEG2000PictureSubDescriptor::yOsiz(Types::UInt32 const& offset) {
    put(*this, Properties::yOsiz, offset);
}
Types::UInt32 const* JPEG2000PictureSubDescriptor::xTsiz() const { return get(*this, Properties::xTsiz); }
void JPEG2000PictureSubDescriptor::xTsiz(Types::UInt32 const& width) { put(*this, Properties::xTsiz, width); }
Types::UInt32 const* JPEG2000PictureSubDescriptor::yTsiz() const { return get(*this, Properties::yTsiz); }
void JPEG2000PictureSubDescriptor::yTsiz(Types::UInt32 const& height) {
    put(*this, Properties::yTsiz, height);
}
Types::UInt32 const* JPEG2000PictureSubDescriptor::xTOsiz() const { return get(*this, Properties::xTOsiz); }
void JPEG2000PictureSubDescriptor::xTOsiz(Types::UInt32 const& offset) {
    put(*this, Properties::xTOsiz, offset);
}
Types::UInt32 const* JPEG2000PictureSubDescriptor::yTOsiz() const { return get(*this, Properties::yTOsiz); }
void JPEG2000PictureSubDescriptor::yTOsiz(Types::UInt32 const& offset) {
    put(*this, Properties::yTOsiz, offset);
}
Types::UInt16 const* JPEG2000PictureSubDescriptor::csiz() const { return get(*this, Properties::csiz); }
void JPEG2000PictureSubDescriptor::csiz(Types::UInt16 const& components) {
    put(*this, Properties::csiz, components);
}
Types::Array const* JPEG2000PictureSubDescriptor::pictureComponentSizing() const {
    return get(*this, Properties::pictureComponentSizing);
}
void JPEG2000PictureSubDescriptor::pictureComponentSizing(Types::Array const& components) {
    put(*this, Properties::pictureComponentSizing, components);
}
void JPEG2000PictureSubDescriptor::addPictureComponentSizing(Types::J2KPictureComponent const& component) {
    Structural::add(*this, Properties::pictureComponentSizing, component);
}
Types::J2KCodingStyleDefault const* JPEG2000PictureSubDescriptor::codingStyleDefault() const {
    return get(*this, Properties::codingStyleDefault);
}
void JPEG2000PictureSubDescriptor::codingStyleDefault(Types::J2KCodingStyleDefault const& style) {
    put(*this, Properties::codingStyleDefault, style);
}
void JPEG2000PictureSubDescriptor::resetCodingStyleDefault() { reset(*this, Properties::codingStyleDefault); }
Types::J2KQuantisationDefault const* JPEG2000PictureSubDescriptor::quantizationDefault() const {
    return get(*this, Properties::quantizationDefault);
}
void JPEG2000PictureSubDescriptor::quantizationDefault(Types::J2KQuantisationDefault const& quantisation) {
    put(*this, Properties::quantizationDefault, quantisation);
}
void JPEG2000PictureSubDescriptor::resetQuantizationDefault() {
    reset(*this, Properties::quantizationDefault);
}
Types::RGBALayout const* JPEG2000PictureSubDescriptor::j2cLayout() const {
    return get(*this, Properties::j2cLayout);
}
void JPEG2000PictureSubDescriptor::j2cLayout(Types::RGBALayout const& layout) {
    put(*this, Properties::j2cLayout, layout);
}
void JPEG2000PictureSubDescriptor::resetJ2cLayout() { reset(*this, Properties::j2cLayout); }
Types::DataValue const* JPEG2000PictureSubDescriptor::j2kExtendedCapabilities() const {
    return get(*this, Properties::j2kExtendedCapabilities);
}
void JPEG2000PictureSubDescriptor::j2kExtendedCapabilities(Types::DataValue const& capabilities) {
    put(*this, Properties::j2kExtendedCapabilities, capabilities);
}
void JPEG2000PictureSubDescriptor::resetJ2kExtendedCapabilities() {
    reset(*this, Properties::j2kExtendedCapabilities);
}
Types::Array const* JPEG2000PictureSubDescriptor::j2kProfile() const {
    return get(*this, Properties::j2kProfile);
}
void JPEG2000PictureSubDescriptor::j2kProfile(Types::Array const& profile) {
    put(*this, Properties::j2kProfile, profile);
}
void JPEG2000PictureSubDescriptor::addJ2kProfile(Types::UInt16 const& part) {
    Structural::add(*this, Properties::j2kProfile, part);
}
void JPEG2000PictureSubDescriptor::resetJ2kProfile() { reset(*this, Properties::j2kProfile); }
Types::Array const* JPEG2000PictureSubDescriptor::j2kCorrespondingProfile() const {
    return get(*this, Properties::j2kCorrespondingProfile);
}
void JPEG2000PictureSubDescriptor::j2kCorrespondingProfile(Types::Array const& profile) {
    put(*this, Properties::j2kCorrespondingProfile, profile);
}
void JPEG2000PictureSubDescriptor::addJ2kCorrespondingProfile(Types::UInt16 const& part) {
    Structural::add(*this, Properties::j2kCorrespondingProfile, part);
}
void JPEG2000PictureSubDescriptor::resetJ2kCorrespondingProfile() {
    reset(*this, Properties::j2kCorrespondingProfile);
}

} // namespace MXF::Zelm::Metadata::Structural
