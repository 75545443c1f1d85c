#include "MXF/Zelm/MXFIO/FinalMetadata.h"

#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"

#include "MXF/Zelm/ByteCoders/BER.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

bool isComplete(Metadata::PartitionMetadata const& metadata) {
    Templates::vector<Metadata::Element*> unknown;
    metadata.openElements(unknown);
    metadata.incompleteElements(unknown);
    return unknown.empty();
}

} // namespace

void FinalMetadata::take(Metadata::PartitionMetadata& metadata, Metadata::SerializationOrder order) {
    metadata.generateLocalTags();
    content_ = bytesOf(metadata, true, order);
    status_ =
        isComplete(metadata) ? Packs::PartitionPack::ClosedComplete : Packs::PartitionPack::ClosedIncomplete;
}

bool FinalMetadata::fits() const {
    return content_.size() <= areaLength_ && canBeFilled(areaLength_ - content_.size());
}

FileUpdate FinalMetadata::update() const {
    FileUpdate update{fileOffset_, content_};
    if (hasOldLayout())
        return update;
    if (areaLength_ > content_.size()) {
        auto const fill = fillHeader(fillKey_, areaLength_ - content_.size());
        update.bytes.insert(update.bytes.end(), fill.begin(), fill.end());
    }
    // Zeros where old sets and the head of the fill behind them stood.
    std::uint64_t const old =
        std::min(areaLength_, oldLength_ + KLV::Key::size() + ByteCoders::maximumBERSize);
    if (update.bytes.size() < old)
        update.bytes.resize(static_cast<std::size_t>(old));
    return update;
}

} // namespace MXF::Zelm::MXFIO
