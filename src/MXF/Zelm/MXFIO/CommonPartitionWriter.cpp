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
}

DataIO::Chain CommonPartitionWriter::areas() {
    DataIO::Chain areas = metadataArea();
    pack().headerByteCount(areas.size());
    DataIO::Chain index = indexArea();
    pack().indexByteCount(index.size());
    areas.append(std::move(index));
    return areas;
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

DataIO::Chain CommonPartitionWriter::indexArea() const {
    DataIO::Chain area;
    for (auto const& segment : segments_)
        area.append(sliceOf(*segment));
    align(area);
    return area;
}

} // namespace MXF::Zelm::MXFIO
