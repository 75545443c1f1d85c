#include "MXF/Zelm/MXFIO/MeasuredContainer.h"

#include "MXF/Zelm/MXFIO/ClipUnits.h"
#include "MXF/Zelm/MXFIO/Updater.h"
#include "MXF/Zelm/MXFIO/WalkedIndex.h"

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using Index = MeasuredContainer::Index;

ContainerMeasurer::ContainerMeasurer(DataIO::RandomAccessDataSource& source, Reader2& reader,
                                     EssenceContainer const& container, bool wholeUnits, CutClip const* cut)
    : source_(source),
      container_(container),
      wholeUnits_(wholeUnits),
      cut_(cut),
      clip_(cut_ != nullptr ? cut_->unit : ClipUnitSize()),
      essence_(reader, container) {}

MeasuredContainer
ContainerMeasurer::measure(std::function<bool(std::uint64_t, std::uint64_t)> const& progress) {
    if (essence_.stream().length() == 0)
        measureNothing();
    else if (isClip())
        measureClip();
    else
        measureFrames(progress);
    return std::move(measured_);
}

// Clips or edit units.

bool ContainerMeasurer::isClip() {
    using GenericContainer::Wrapping;
    if (cut_ != nullptr)
        return cut_->holdsSeveral;
    if (wholeUnits_ && container_.wrapping() == Wrapping::Frame)
        return isOneClip();
    return essence_.wrapping() == Wrapping::Clip;
}

/// Whether there is one element alone, and it holds several edit units. A duration does not prove it: the
/// others may have been cut off.
bool ContainerMeasurer::isOneClip() {
    essence_.stream().seek(0);
    auto const only = nextElement();
    if (!only || nextElement())
        return false;
    if (auto const* const table = essence_.seeker().table(); table != nullptr && table->size() != 0) {
        auto const second = IndexTables::EditUnitLocator(*table, {std::nullopt, only->headLength}).locate(1);
        return second && second->streamOffset < only->end();
    }
    return holdsSeveralUnits(source_, container_, placeOf(*only));
}

std::optional<PacketHead> ContainerMeasurer::nextElement() {
    auto head = essence_.stream().nextPacket();
    while (head && !ElementKey::isContent(head->key))
        head = essence_.stream().nextPacket();
    return head;
}

ElementPlace ContainerMeasurer::placeOf(PacketHead const& head) {
    return {head.key, head.fileOffset + head.headLength, head.length, head.length};
}

// Measuring.

/// The essence may stand in another file; of one that was cut off it is not there.
void ContainerMeasurer::measureNothing() {
    measured_.units = 0;
    auto const* const table = essence_.seeker().table();
    if (wholeUnits_ && container_.indexSID != 0 && table != nullptr && table->size() != 0 &&
        IndexTables::EditUnitLocator(*table, {}).end().value_or(0) > 0)
        measured_.index = Index::Wrong;
}

bool ContainerMeasurer::lacksIndex() const {
    return measured_.index == Index::Missing || measured_.index == Index::Short ||
           measured_.index == Index::Wrong;
}

void ContainerMeasurer::measureFrames(std::function<bool(std::uint64_t, std::uint64_t)> const& progress) {
    WalkedIndex walked(essence_.stream(), 0, 0, WalkedIndex::Learn::Pictures);
    if (!walked.walk(progress))
        throw UpdateCancelled("The walk over the essence was ended before it was done");
    measured_.units = walked.end();
    if (walked.end() == 0)
        return;
    judge({essence_.stream().length()}, [&](std::int64_t position) { return walked.streamOffset(position); });
    if (lacksIndex())
        take(*walked.table(container_.indexSID, container_.editRate(), measured_.good));
}

void ContainerMeasurer::measureClip() {
    essence_.stream().seek(0);
    auto const head = nextElement();
    if (!head)
        return;
    if (clip_.bytes == 0)
        clip_ = clipUnitSize(source_, container_, placeOf(*head));
    auto const* const track = container_.trackByNumber(ElementKey(head->key).trackNumber());
    SampleGrid const grid =
        track != nullptr ? SampleGrid(track->samples, container_.editRate()) : SampleGrid();
    if (grid.isKnown())
        measured_.units = static_cast<std::int64_t>(grid.unitsIn(head->length, wholeUnits_));
    else if (clip_.bytes != 0)
        measured_.units = static_cast<std::int64_t>(head->length / clip_.bytes);
    std::uint64_t const first = head->streamOffset + head->headLength;
    if (clip_.bytes == 0 || clip_.bytes > UINT32_MAX)
        return; // an index table that is there is the only one there can be
    judge({first + head->length, first}, {});
    if (lacksIndex())
        makeClipIndex(head->length);
}

void ContainerMeasurer::makeClipIndex(std::uint64_t length) {
    auto segment = std::make_unique<IndexTables::IndexTableSegment>(std::uint8_t{4});
    segment->indexEditRate(Types::Rational(clip_.rate));
    segment->indexDuration(Types::Length(static_cast<std::int64_t>(length / clip_.bytes)));
    segment->indexSID(Types::UInt32(container_.indexSID));
    segment->bodySID(Types::UInt32(container_.bodySID));
    segment->editUnitByteCount(Types::UInt32(static_cast<std::uint32_t>(clip_.bytes)));
    IndexTables::IndexTable table(container_.indexSID, container_.bodySID);
    table.add(std::move(segment), false);
    measured_.good = 0;
    measured_.index = measured_.index == Index::Missing ? Index::Missing : Index::Wrong;
    take(table);
}

/// Holds the file's own index table against where edit units begin. Without `offsetOf`, which stands for a
/// clip, it has to reach as far as the clip does.
void ContainerMeasurer::judge(IndexTables::EssenceExtent const& extent, Offsets const& offsetOf) {
    if (container_.indexSID == 0)
        return;
    auto const* const table = essence_.seeker().table();
    if (table == nullptr || table->size() == 0) {
        measured_.index = Index::Missing;
        return;
    }
    IndexTables::EditUnitLocator const locator(*table, extent);
    std::int64_t const end = locator.end().value_or(0);
    if (!offsetOf) {
        auto const bytes = essence_.stream().length();
        bool const isInside = end > 0 && locator.locate(end - 1) && !locator.locate(end) &&
                              locator.locate(end - 1)->streamOffset < bytes;
        measured_.index = isInside ? Index::Good : Index::Wrong;
        return;
    }
    std::int64_t const units = measured_.units.value_or(0);
    while (measured_.good < units) {
        auto const location = locator.locate(measured_.good);
        if (!location || location->streamOffset != offsetOf(measured_.good))
            break;
        ++measured_.good;
    }
    if (measured_.good == units && end <= units)
        measured_.index = Index::Good;
    else if (measured_.good == end)
        measured_.index = Index::Short;
    else
        measured_.index = Index::Wrong;
    if (measured_.index == Index::Wrong)
        measured_.good = 0;
}

void ContainerMeasurer::take(IndexTables::IndexTable const& table) {
    for (auto const& [start, segment] : table) {
        measured_.made += segment->indexDuration();
        measured_.segments.push_back(std::make_shared<IndexTables::IndexTableSegment>(*segment));
    }
}

} // namespace MXF::Zelm::MXFIO
