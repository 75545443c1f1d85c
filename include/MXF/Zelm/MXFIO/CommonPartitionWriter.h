/// Writing a header, body or footer partition with header metadata and index table segments, as far as it has
/// them. A partition that is to have essence is a PartitionWriter.
#pragma once

#include "MXF/Zelm/IndexTables/IndexTableSegment.h"
#include "MXF/Zelm/MXFIO/BasePartitionWriter.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT CommonPartitionWriter : public BasePartitionWriter {
public:
    using SegmentPtr = Templates::SharedPtr<IndexTables::IndexTableSegment, Templates::LockedCounter>;

    CommonPartitionWriter(PartitionFormat const& format, Packs::PartitionPack::PartitionKind kind,
                          Packs::PartitionPack::PartitionStatus status);
    ~CommonPartitionWriter() override;

    /// Writes header metadata, which is read at the first `next` and not owned, and leaves at least `reserve`
    /// bytes of fill behind it (none for 0), so that it can grow later. Every label in use gets a local tag.
    void metadata(Metadata::PartitionMetadata& metadata, std::uint64_t reserve);

    /// `ForwardReferences` unless it is set.
    Metadata::SerializationOrder serializationOrder() const { return order_; }
    void serializationOrder(Metadata::SerializationOrder order) { order_ = order; }

    /// Writes index table segments, in their order; nothing when there are none.
    void index(std::uint32_t indexSID, Templates::vector<SegmentPtr> segments);

    /// Bytes of primer and sets without the fill behind them; 0 before the first `next`.
    std::uint64_t metadataLength() const { return metadataLength_; }

protected:
    DataIO::Chain areas() override;
    bool hasContent() override;
    bool nextContent(DataIO::Chain& out) override;

private:
    DataIO::Chain metadataArea();

    Metadata::PartitionMetadata* metadata_ = nullptr;
    std::uint64_t reserve_ = 0;
    Metadata::SerializationOrder order_ = Metadata::SerializationOrder::ForwardReferences;
    std::uint64_t metadataLength_ = 0;
    Templates::vector<SegmentPtr> segments_; // null behind those that were written
    std::size_t nextSegment_ = 0;
    std::uint64_t indexLength_ = 0; // of all of them, without fill
};

} // namespace MXF::Zelm::MXFIO
