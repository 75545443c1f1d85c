#include "MXF/Zelm/MXFIO/CommonPartitionWriter.h"

#include "MXF/Zelm/MXFIO/WrittenBytes.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

CommonPartitionWriter::CommonPartitionWriter(PartitionFormat const& format,
                                             Packs::PartitionPack::PartitionKind kind,
                                             Packs::PartitionPack::PartitionStatus status)
    : BasePartitionWriter(format, Packs::buildPartitionPackKey(kind, status)) {}

CommonPartitionWriter::~CommonPartitionWriter() = default;

void CommonPartitionWriter::metadata(Metadata::PartitionMetadata& metadata, std::uint64_t reserve) {
    metadata_ = &metadata;
    reserve_ = reserve;
}

void CommonPartitionWriter::index(std::uint32_t indexSID, Templates::vector<SegmentPtr> segments) {
    pack().indexSID(segments.empty() ? 0 : indexSID);
    segments_ = std::move(segments);
    nextSegment_ = 0;
    indexLength_ = 0;
    for (auto const& segment : segments_)
        indexLength_ += segment->serializedSize();
}

DataIO::Chain CommonPartitionWriter::areas() {
    DataIO::Chain area = metadataArea();
    pack().headerByteCount(area.size());
    pack().indexByteCount(indexLength_ + alignment(indexLength_));
    return area;
}

bool CommonPartitionWriter::hasContent() { return !segments_.empty(); }

/// Segment by segment: a table of millions of entries is not held twice.
bool CommonPartitionWriter::nextContent(DataIO::Chain& out) {
    if (nextSegment_ == segments_.size())
        return false;
    auto const segment = std::move(segments_[nextSegment_++]);
    out = sliceOf(*segment);
    if (nextSegment_ == segments_.size())
        appendFill(out, alignment(indexLength_));
    return true;
}

DataIO::Chain CommonPartitionWriter::metadataArea() {
    if (metadata_ == nullptr)
        return {};
    metadata_->generateLocalTags();
    DataIO::Chain area = sliceOf(*metadata_, true, order_);
    metadataLength_ = area.size();
    if (reserve_ == 0) {
        align(area);
    } else {
        std::uint64_t const fill = std::max<std::uint64_t>(reserve_, smallestWrittenFill);
        appendFill(area, fill + alignment(area.size() + fill));
    }
    return area;
}

} // namespace MXF::Zelm::MXFIO
