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

} // namespace MXF::Zelm::Metadata::Structural
