/// Where the essence of a file package stands in the file (SMPTE 377M, EssenceContainerData set).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/UMID.h"

namespace MXF::Zelm::Metadata::Structural {

/// Ties a file package to the stream of partitions that hold its essence and index.
class MXFZELM_EXPORT EssenceContainerData : public TrackableMetadataSet {
public:
    EssenceContainerData(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~EssenceContainerData() override;

    static KLV::Key const& classKey();

    /// The file package whose essence this is.
    Types::UMID32 const* linkedPackageUID() const;
    void linkedPackageUID(Types::UMID32 const& package);

    /// The stream of the essence in the partition packs; never 0.
    Types::UInt32 const* bodySID() const;
    void bodySID(Types::UInt32 const& sid);

    /// The stream of the index table. Optional: 0 or absent when there is none.
    Types::UInt32 const* indexSID() const;
    void indexSID(Types::UInt32 const& sid);
    void resetIndexSID();

    /// Essence within the header metadata itself; not used in files of SMPTE 377M. Optional.
    Types::DataStream const* essenceStream() const;
    void essenceStream(Types::DataStream const& stream);
    void resetEssenceStream();

    /// An index of that essence. Optional.
    Types::DataStream const* sampleIndex() const;
    void sampleIndex(Types::DataStream const& index);
    void resetSampleIndex();

    /// Whether index segments stand before the essence that they index (SMPTE 377-1). Optional.
    Types::Boolean const* precedingIndexTable() const;
    void precedingIndexTable(Types::Boolean const& precedes);
    void resetPrecedingIndexTable();

    /// Whether index segments stand behind the essence that they index (SMPTE 377-1). Optional.
    Types::Boolean const* followingIndexTable() const;
    void followingIndexTable(Types::Boolean const& follows);
    void resetFollowingIndexTable();

    /// Whether the index leaves edit units out (SMPTE 377-1). Optional.
    Types::Boolean const* isSparse() const;
    void isSparse(Types::Boolean const& isSparse);
    void resetIsSparse();

    /// Whether essence and index each stand in partitions of their own (SMPTE 377-1). Optional.
    Types::Boolean const* singularPartitionUsage() const;
    void singularPartitionUsage(Types::Boolean const& isSingular);
    void resetSingularPartitionUsage();
};

} // namespace MXF::Zelm::Metadata::Structural
