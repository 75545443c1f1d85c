#include "MXF/Zelm/MXFIO/UpdateContent.h"

namespace MXF::Zelm::MXFIO {

using Role = PartitionUpdate::Role;

UpdateContent::UpdateContent(LoadedFile& file, Metadata::PartitionMetadata& edited)
    : file_(file),
      kinships_(file.kinships()),
      changes_(compareMetadata(file.metadata(), edited)),
      content_(changes_.empty() ? file.area().content() : file.area().contentFor(edited, file.metadata())),
      labels_(file.metadata(), edited) {}

MetadataArea const* UpdateContent::areaToRewrite(std::size_t index) const {
    auto const& area = kinships_[index].area;
    return area && !changes_.empty() ? &*area : nullptr;
}

KLV::Key UpdateContent::fillKey(std::size_t index) const {
    if (auto const& area = kinships_[index].area; area && area->fillKey())
        return *area->fillKey();
    auto const& partition = partitions()[index];
    if (partition.partition->leadingFillLength() == 0)
        return KLV::fillItemKey();
    return KLV::Key(readBytes(file_.source(), partition.packEnd(), KLV::Key::size()).data());
}

/// Partitions that keep metadata of their own keep what their pack says, too.
bool UpdateContent::packFollows(std::size_t index) const {
    auto const role = kinships_[index].role;
    return (role == Role::Chosen || role == Role::Copy || role == Role::NoMetadata) &&
           labels_.concern(partitions()[index].pack());
}

PackHead UpdateContent::headFor(std::size_t index) const {
    auto const& partition = partitions()[index];
    PackHead head(file_.source(), *partition.partition);
    if (packFollows(index))
        labels_.apply(partition.pack(), head);
    return head;
}

PartitionUpdate UpdateContent::describe(std::size_t index) const {
    auto const& partition = partitions()[index];
    PartitionUpdate update;
    update.role = kinships_[index].role;
    update.remark = kinships_[index].remark;
    update.offset = update.newOffset = partition.offset();
    update.headerByteCount = update.newHeaderByteCount = partition.pack().headerByteCount();
    update.packChanges = packFollows(index);
    if (auto const& area = kinships_[index].area) {
        update.metadataBytes = area->content().size();
        update.newMetadataBytes = changes_.empty() ? update.metadataBytes : content_.size();
    }
    return update;
}

} // namespace MXF::Zelm::MXFIO
