#include "MXF/Zelm/MXFIO/FinalMetadata.h"

#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"

#include "MXF/Zelm/ByteCoders/BER.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

/// What the labels of durations have at bytes 8 to 10 (SMPTE RP 210).
bool isDuration(Metadata::Element const& element) {
    static constexpr unsigned char durations[] = {0x07, 0x02, 0x02};
    auto const* const label = element.universalLabel();
    return label != nullptr && std::equal(std::begin(durations), std::end(durations), label->rawBuffer() + 8);
}

/// At the end of the writing all lengths are known, and all that is required. What else is wanted as well as
/// it can be had, and is not known by now, cannot be known: lines of a raster that has none, say.
bool isComplete(Metadata::PartitionMetadata const& metadata) {
    Templates::vector<Metadata::Element*> unknown, atBest;
    metadata.openElements(unknown);
    metadata.incompleteElements(atBest);
    return unknown.empty() && std::none_of(atBest.begin(), atBest.end(),
                                           [](auto const* element) { return isDuration(*element); });
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
