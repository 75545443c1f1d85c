#include "MXF/Zelm/Metadata/Structural/Preface.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Identification.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

Preface::Preface(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : TrackableMetadataSet(classKey(), definition, owner) {}
Preface::~Preface() = default;

KLV::Key const& Preface::classKey() { return StructuralMetadataKeys::preface(); }

Types::Timestamp const* Preface::lastModifiedDate() const { return get(*this, Properties::lastModifiedDate); }
void Preface::lastModifiedDate(Types::Timestamp const& date) {
    put(*this, Properties::lastModifiedDate, date);
}
Types::VersionType const* Preface::version() const { return get(*this, Properties::version); }
void Preface::version(Types::VersionType const& version) { put(*this, Properties::version, version); }
Types::UInt32 const* Preface::objectModelVersion() const {
    return get(*this, Properties::objectModelVersion);
}
void Preface::objectModelVersion(Types::UInt32 const& version) {
    put(*this, Properties::objectModelVersion, version);
}
void Preface::resetObjectModelVersion() { reset(*this, Properties::objectModelVersion); }
GenericPackage* Preface::primaryPackage() const { return get(*this, Properties::primaryPackage); }
void Preface::primaryPackage(GenericPackage const& package) {
    put(*this, Properties::primaryPackage, package);
}
void Preface::resetPrimaryPackage() { reset(*this, Properties::primaryPackage); }
Templates::vector<Identification*> Preface::identifications() const {
    return get(*this, Properties::identifications);
}
void Preface::addIdentification(Identification const& identification) {
    Structural::add(*this, Properties::identifications, identification);
}
bool Preface::removeIdentification(Identification const& identification) {
    return remove(*this, Properties::identifications, identification);
}
ContentStorage* Preface::contentStorage() const { return get(*this, Properties::contentStorage); }
void Preface::contentStorage(ContentStorage const& storage) {
    put(*this, Properties::contentStorage, storage);
}
Types::UniversalLabel const* Preface::operationalPattern() const {
    return get(*this, Properties::operationalPattern);
}
void Preface::operationalPattern(Types::UniversalLabel const& pattern) {
    put(*this, Properties::operationalPattern, pattern);
}
Types::Batch const* Preface::essenceContainers() const { return get(*this, Properties::essenceContainers); }
void Preface::essenceContainers(Types::Batch const& containers) {
    put(*this, Properties::essenceContainers, containers);
}
void Preface::addEssenceContainer(Types::UniversalLabel const& container) {
    Structural::add(*this, Properties::essenceContainers, container);
}
Types::Batch const* Preface::dmSchemes() const { return get(*this, Properties::dmSchemes); }
void Preface::dmSchemes(Types::Batch const& schemes) { put(*this, Properties::dmSchemes, schemes); }
void Preface::addDMScheme(Types::UniversalLabel const& scheme) {
    Structural::add(*this, Properties::dmSchemes, scheme);
}
Types::Boolean const* Preface::isRIPPresent() const { return get(*this, Properties::isRIPPresent); }
void Preface::isRIPPresent(Types::Boolean const& isPresent) {
    put(*this, Properties::isRIPPresent, isPresent);
}
void Preface::resetIsRIPPresent() { reset(*this, Properties::isRIPPresent); }
Types::Batch const* Preface::conformsToSpecifications() const {
    return get(*this, Properties::conformsToSpecifications);
}
void Preface::conformsToSpecifications(Types::Batch const& specifications) {
    put(*this, Properties::conformsToSpecifications, specifications);
}
void Preface::addConformsToSpecification(Types::UniversalLabel const& specification) {
    Structural::add(*this, Properties::conformsToSpecifications, specification);
}
void Preface::resetConformsToSpecifications() { reset(*this, Properties::conformsToSpecifications); }

} // namespace MXF::Zelm::Metadata::Structural
