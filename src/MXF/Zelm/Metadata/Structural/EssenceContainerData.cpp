#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

EssenceContainerData::EssenceContainerData(MetaMetadata::MetaMetadataSet const* definition,
                                           MetadataSetOwner* owner)
    : TrackableMetadataSet(classKey(), definition, owner) {}
EssenceContainerData::~EssenceContainerData() = default;

KLV::Key const& EssenceContainerData::classKey() { return StructuralMetadataKeys::essenceContainerData(); }

Types::UMID32 const* EssenceContainerData::linkedPackageUID() const {
    return get(*this, Properties::linkedPackageUID);
}
void EssenceContainerData::linkedPackageUID(Types::UMID32 const& package) {
    put(*this, Properties::linkedPackageUID, package);
}
Types::UInt32 const* EssenceContainerData::bodySID() const { return get(*this, Properties::bodySID); }
void EssenceContainerData::bodySID(Types::UInt32 const& sid) { put(*this, Properties::bodySID, sid); }
Types::UInt32 const* EssenceContainerData::indexSID() const { return get(*this, Properties::indexSID); }
void EssenceContainerData::indexSID(Types::UInt32 const& sid) { put(*this, Properties::indexSID, sid); }
void EssenceContainerData::resetIndexSID() { reset(*this, Properties::indexSID); }
Types::DataStream const* EssenceContainerData::essenceStream() const {
    return get(*this, Properties::essenceStream);
}
void EssenceContainerData::essenceStream(Types::DataStream const& stream) {
    put(*this, Properties::essenceStream, stream);
}
void EssenceContainerData::resetEssenceStream() { reset(*this, Properties::essenceStream); }
Types::DataStream const* EssenceContainerData::sampleIndex() const {
    return get(*this, Properties::sampleIndex);
}
void EssenceContainerData::sampleIndex(Types::DataStream const& index) {
    put(*this, Properties::sampleIndex, index);
}
void EssenceContainerData::resetSampleIndex() { reset(*this, Properties::sampleIndex); }
Types::Boolean const* EssenceContainerData::precedingIndexTable() const {
    return get(*this, Properties::precedingIndexTable);
}
void EssenceContainerData::precedingIndexTable(Types::Boolean const& precedes) {
    put(*this, Properties::precedingIndexTable, precedes);
}
void EssenceContainerData::resetPrecedingIndexTable() { reset(*this, Properties::precedingIndexTable); }
Types::Boolean const* EssenceContainerData::followingIndexTable() const {
    return get(*this, Properties::followingIndexTable);
}
void EssenceContainerData::followingIndexTable(Types::Boolean const& follows) {
    put(*this, Properties::followingIndexTable, follows);
}
void EssenceContainerData::resetFollowingIndexTable() { reset(*this, Properties::followingIndexTable); }
Types::Boolean const* EssenceContainerData::isSparse() const { return get(*this, Properties::isSparse); }
void EssenceContainerData::isSparse(Types::Boolean const& isSparse) {
    put(*this, Properties::isSparse, isSparse);
}
void EssenceContainerData::resetIsSparse() { reset(*this, Properties::isSparse); }
Types::Boolean const* EssenceContainerData::singularPartitionUsage() const {
    return get(*this, Properties::singularPartitionUsage);
}
void EssenceContainerData::singularPartitionUsage(Types::Boolean const& isSingular) {
    put(*this, Properties::singularPartitionUsage, isSingular);
}
void EssenceContainerData::resetSingularPartitionUsage() { reset(*this, Properties::singularPartitionUsage); }

} // namespace MXF::Zelm::Metadata::Structural
