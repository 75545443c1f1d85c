#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

ContentStorage::ContentStorage(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : TrackableMetadataSet(classKey(), definition, owner) {}
ContentStorage::~ContentStorage() = default;

KLV::Key const& ContentStorage::classKey() { return StructuralMetadataKeys::contentStorage(); }

Templates::vector<GenericPackage*> ContentStorage::packages() const {
    return get(*this, Properties::packages);
}
void ContentStorage::addPackage(GenericPackage const& package) {
    Structural::add(*this, Properties::packages, package);
}
bool ContentStorage::removePackage(GenericPackage const& package) {
    return remove(*this, Properties::packages, package);
}
Templates::vector<EssenceContainerData*> ContentStorage::essenceContainerData() const {
    return get(*this, Properties::essenceContainerData);
}
void ContentStorage::addEssenceContainerData(EssenceContainerData const& data) {
    Structural::add(*this, Properties::essenceContainerData, data);
}
bool ContentStorage::removeEssenceContainerData(EssenceContainerData const& data) {
    return remove(*this, Properties::essenceContainerData, data);
}
void ContentStorage::resetEssenceContainerData() { reset(*this, Properties::essenceContainerData); }

} // namespace MXF::Zelm::Metadata::Structural
