#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"

namespace MXF::Zelm::Metadata::Structural {

GenericPackage::GenericPackage(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                               MetadataSetOwner* owner)
    : TrackableMetadataSet(key, definition, owner) {}
GenericPackage::~GenericPackage() = default;

Types::UMID32 const* GenericPackage::packageUID() const { return get(*this, Properties::packageUID); }
void GenericPackage::packageUID(Types::UMID32 const& uid) { put(*this, Properties::packageUID, uid); }
Types::UTF16String const* GenericPackage::name() const { return get(*this, Properties::name); }
void GenericPackage::name(Types::UTF16String const& name) { put(*this, Properties::name, name); }
void GenericPackage::resetName() { reset(*this, Properties::name); }
Templates::vector<Track*> GenericPackage::tracks() const { return get(*this, Properties::tracks); }
void GenericPackage::addTrack(Track const& track) { Structural::add(*this, Properties::tracks, track); }
bool GenericPackage::removeTrack(Track const& track) { return remove(*this, Properties::tracks, track); }
Types::Timestamp const* GenericPackage::packageModifiedDate() const {
    return get(*this, Properties::packageModifiedDate);
}
void GenericPackage::packageModifiedDate(Types::Timestamp const& date) {
    put(*this, Properties::packageModifiedDate, date);
}
Types::Timestamp const* GenericPackage::packageCreationDate() const {
    return get(*this, Properties::packageCreationDate);
}
void GenericPackage::packageCreationDate(Types::Timestamp const& date) {
    put(*this, Properties::packageCreationDate, date);
}
Templates::vector<MetadataSet*> GenericPackage::packageUserComments() const {
    return get(*this, Properties::packageUserComments);
}
void GenericPackage::addPackageUserComment(MetadataSet const& comment) {
    Structural::add(*this, Properties::packageUserComments, comment);
}
bool GenericPackage::removePackageUserComment(MetadataSet const& comment) {
    return remove(*this, Properties::packageUserComments, comment);
}
void GenericPackage::resetPackageUserComments() { reset(*this, Properties::packageUserComments); }
Templates::vector<MetadataSet*> GenericPackage::packageKLVData() const {
    return get(*this, Properties::packageKLVData);
}
void GenericPackage::addPackageKLVData(MetadataSet const& data) {
    Structural::add(*this, Properties::packageKLVData, data);
}
bool GenericPackage::removePackageKLVData(MetadataSet const& data) {
    return remove(*this, Properties::packageKLVData, data);
}
void GenericPackage::resetPackageKLVData() { reset(*this, Properties::packageKLVData); }
Templates::vector<MetadataSet*> GenericPackage::packageAttributes() const {
    return get(*this, Properties::packageAttributes);
}
void GenericPackage::addPackageAttribute(MetadataSet const& attribute) {
    Structural::add(*this, Properties::packageAttributes, attribute);
}
bool GenericPackage::removePackageAttribute(MetadataSet const& attribute) {
    return remove(*this, Properties::packageAttributes, attribute);
}
void GenericPackage::resetPackageAttributes() { reset(*this, Properties::packageAttributes); }
Types::UniversalLabel const* GenericPackage::packageUsage() const {
    return get(*this, Properties::packageUsage);
}
void GenericPackage::packageUsage(Types::UniversalLabel const& usage) {
    put(*this, Properties::packageUsage, usage);
}
void GenericPackage::resetPackageUsage() { reset(*this, Properties::packageUsage); }

MaterialPackage::MaterialPackage(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : GenericPackage(classKey(), definition, owner) {}
MaterialPackage::~MaterialPackage() = default;

KLV::Key const& MaterialPackage::classKey() { return StructuralMetadataKeys::materialPackage(); }

SourcePackage::SourcePackage(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : GenericPackage(classKey(), definition, owner) {}
SourcePackage::~SourcePackage() = default;

KLV::Key const& SourcePackage::classKey() { return StructuralMetadataKeys::sourcePackage(); }

GenericDescriptor* SourcePackage::descriptor() const { return get(*this, Properties::descriptor); }
void SourcePackage::descriptor(GenericDescriptor const& descriptor) {
    put(*this, Properties::descriptor, descriptor);
}
void SourcePackage::resetDescriptor() { reset(*this, Properties::descriptor); }

} // namespace MXF::Zelm::Metadata::Structural
