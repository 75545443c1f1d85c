#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

GenericDataEssenceDescriptor::GenericDataEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                                           MetadataSetOwner* owner)
    : GenericDataEssenceDescriptor(classKey(), definition, owner) {}
GenericDataEssenceDescriptor::GenericDataEssenceDescriptor(KLV::Key const& key,
                                                           MetaMetadata::MetaMetadataSet const* definition,
                                                           MetadataSetOwner* owner)
    : FileDescriptor(key, definition, owner) {}
GenericDataEssenceDescriptor::~GenericDataEssenceDescriptor() = default;

KLV::Key const& GenericDataEssenceDescriptor::classKey() {
    return StructuralMetadataKeys::genericDataEssenceDescriptor();
}

Types::UniversalLabel const* GenericDataEssenceDescriptor::dataEssenceCoding() const {
    return get(*this, Properties::dataEssenceCoding);
}
void GenericDataEssenceDescriptor::dataEssenceCoding(Types::UniversalLabel const& label) {
    put(*this, Properties::dataEssenceCoding, label);
}
void GenericDataEssenceDescriptor::resetDataEssenceCoding() { reset(*this, Properties::dataEssenceCoding); }

ANCPacketsDescriptor::ANCPacketsDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                           MetadataSetOwner* owner)
    : GenericDataEssenceDescriptor(classKey(), definition, owner) {}
ANCPacketsDescriptor::~ANCPacketsDescriptor() = default;

KLV::Key const& ANCPacketsDescriptor::classKey() { return StructuralMetadataKeys::ancPacketsDescriptor(); }

VBIDataDescriptor::VBIDataDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : GenericDataEssenceDescriptor(classKey(), definition, owner) {}
VBIDataDescriptor::~VBIDataDescriptor() = default;

KLV::Key const& VBIDataDescriptor::classKey() { return StructuralMetadataKeys::vbiDataDescriptor(); }

SMPTE331MTimeDateItemDescriptor::SMPTE331MTimeDateItemDescriptor(
    MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : FileDescriptor(classKey(), definition, owner) {}
SMPTE331MTimeDateItemDescriptor::~SMPTE331MTimeDateItemDescriptor() = default;

KLV::Key const& SMPTE331MTimeDateItemDescriptor::classKey() {
    return StructuralMetadataKeys::smpte331MTimeDateItemDescriptor();
}

Types::Rational const* SMPTE331MTimeDateItemDescriptor::dateTimeRate() const {
    return get(*this, Properties::dateTimeRate);
}
void SMPTE331MTimeDateItemDescriptor::dateTimeRate(Types::Rational const& rate) {
    put(*this, Properties::dateTimeRate, rate);
}
void SMPTE331MTimeDateItemDescriptor::resetDateTimeRate() { reset(*this, Properties::dateTimeRate); }
Types::Boolean const* SMPTE331MTimeDateItemDescriptor::dateTimeDropFrame() const {
    return get(*this, Properties::dateTimeDropFrame);
}
void SMPTE331MTimeDateItemDescriptor::dateTimeDropFrame(Types::Boolean const& dropFrame) {
    put(*this, Properties::dateTimeDropFrame, dropFrame);
}
void SMPTE331MTimeDateItemDescriptor::resetDateTimeDropFrame() {
    reset(*this, Properties::dateTimeDropFrame);
}
Types::Boolean const* SMPTE331MTimeDateItemDescriptor::dateTimeEmbedded() const {
    return get(*this, Properties::dateTimeEmbedded);
}
void SMPTE331MTimeDateItemDescriptor::dateTimeEmbedded(Types::Boolean const& embedded) {
    put(*this, Properties::dateTimeEmbedded, embedded);
}
void SMPTE331MTimeDateItemDescriptor::resetDateTimeEmbedded() { reset(*this, Properties::dateTimeEmbedded); }
Types::UniversalLabel const* SMPTE331MTimeDateItemDescriptor::dateTimeKind() const {
    return get(*this, Properties::dateTimeKind);
}
void SMPTE331MTimeDateItemDescriptor::dateTimeKind(Types::UniversalLabel const& label) {
    put(*this, Properties::dateTimeKind, label);
}

} // namespace MXF::Zelm::Metadata::Structural
