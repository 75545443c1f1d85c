#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"

namespace MXF::Zelm::Metadata::Structural {

TrackableMetadataSet::TrackableMetadataSet(KLV::Key const& key,
                                           MetaMetadata::MetaMetadataSet const* definition,
                                           MetadataSetOwner* owner)
    : MetadataSet(key, definition, owner) {}
TrackableMetadataSet::~TrackableMetadataSet() = default;

Types::UUID const* TrackableMetadataSet::generationUID() const {
    return get(*this, Properties::generationUID);
}
void TrackableMetadataSet::generationUID(Types::UUID const& generation) {
    put(*this, Properties::generationUID, generation);
}
void TrackableMetadataSet::resetGenerationUID() { reset(*this, Properties::generationUID); }
Types::UniversalLabel const* TrackableMetadataSet::objectClass() const {
    return get(*this, Properties::objectClass);
}
void TrackableMetadataSet::objectClass(Types::UniversalLabel const& label) {
    put(*this, Properties::objectClass, label);
}
void TrackableMetadataSet::resetObjectClass() { reset(*this, Properties::objectClass); }
Templates::vector<MetadataSet*> TrackableMetadataSet::applicationPlugInObjects() const {
    return get(*this, Properties::applicationPlugInObjects);
}
void TrackableMetadataSet::addApplicationPlugInObject(MetadataSet const& object) {
    Structural::add(*this, Properties::applicationPlugInObjects, object);
}
bool TrackableMetadataSet::removeApplicationPlugInObject(MetadataSet const& object) {
    return remove(*this, Properties::applicationPlugInObjects, object);
}
void TrackableMetadataSet::resetApplicationPlugInObjects() {
    reset(*this, Properties::applicationPlugInObjects);
}

} // namespace MXF::Zelm::Metadata::Structural
