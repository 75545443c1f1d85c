#include "MXF/Zelm/MXFIO/MeasuredContainer.h"

#include "MXF/Zelm/MXFIO/ClipUnits.h"
#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/MXFIO/Updater.h"
#include "MXF/Zelm/MXFIO/WalkedIndex.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using Index = MeasuredContainer::Index;

namespace {

/// Bytes at the start of a clip that are looked for again, and how far.
constexpr std::size_t patternSize = 6;
constexpr std::uint64_t mostSearched = 8 << 20;

/// Edit units that must begin in the same way, and the most that are looked at.
constexpr std::uint64_t fewestUnits = 3, mostUnits = 64;

bool isPositive(Templates::Rational<int> const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

/// Whether the edit units of a clip, if they have `size` bytes, begin as the first does: as many as there
/// are, or some at even distances.
bool beginsAlike(DataIO::RandomAccessDataSource& source, std::uint64_t offset, std::uint64_t length,
                 std::uint64_t size, Bytes const& pattern) {
    std::uint64_t const units = length / size;
    if (units < fewestUnits)
        return false;
    std::uint64_t const step = std::max<std::uint64_t>(units / mostUnits, 1);
    for (std::uint64_t unit = 1; unit < units; unit += unit < fewestUnits ? 1 : step)
        if (readBytes(source, offset + unit * size, patternSize) != pattern)
            return false;
    return true;
}

} // namespace

ClipUnitSize clipUnitSize(EssenceTrack const& track, std::uint64_t declaredLength) {
    auto const& samples = track.samples;
    if (samples.bytes != 0 && isPositive(samples.rate)) {
        if (!isPositive(track.editRate))
            return {samples.bytes, samples.rate};
        auto const over = std::int64_t{samples.rate.numerator} * track.editRate.denominator;
        auto const under = std::int64_t{samples.rate.denominator} * track.editRate.numerator;
        return over % under == 0
                   ? ClipUnitSize{samples.bytes * static_cast<std::uint64_t>(over / under), track.editRate}
                   : ClipUnitSize{samples.bytes, samples.rate};
    }
    auto const units = static_cast<std::uint64_t>(std::max<std::int64_t>(track.duration, 0));
    return units != 0 && declaredLength != 0 && declaredLength % units == 0
               ? ClipUnitSize{declaredLength / units, track.editRate}
               : ClipUnitSize{};
}

std::uint64_t repeatedUnitSize(DataIO::RandomAccessDataSource& source, std::uint64_t offset,
                               std::uint64_t length) {
    auto const bytes = readBytes(source, offset, std::min(length, mostSearched));
    if (bytes.size() < patternSize)
        return 0;
    Bytes const pattern(bytes.begin(), bytes.begin() + patternSize);
    if (std::count(pattern.begin(), pattern.end(), pattern.front()) == patternSize)
        return 0; // silence or black tells nothing
    for (auto found = bytes.begin() + 1;; ++found) {
        found = std::search(found, bytes.end(), pattern.begin(), pattern.end());
        if (found == bytes.end())
            return 0;
        auto const size = static_cast<std::uint64_t>(found - bytes.begin());
        if (length / size < fewestUnits)
            return 0;
        if (beginsAlike(source, offset, length, size, pattern))
            return size;
    }
}

ContainerMeasurer::ContainerMeasurer(Reader2& reader, EssenceContainer const& container, bool wholeUnits,
                                     ClipUnitSize const* clip)
    : container_(container),
      wholeUnits_(wholeUnits),
      isClip_(clip != nullptr),
      clip_(isClip_ ? *clip : ClipUnitSize()),
      essence_(reader, container) {}

MeasuredContainer
ContainerMeasurer::measure(std::function<bool(std::uint64_t, std::uint64_t)> const& progress) {
    if (essence_.stream().length() == 0)
        measureNothing();
    else if (isClip_ || essence_.wrapping() == GenericContainer::Wrapping::Clip)
        measureClip();
    else
        measureFrames(progress);
    return std::move(measured_);
}

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
    auto& stream = essence_.stream();
    stream.seek(0);
    std::optional<PacketHead> head;
    do
        head = stream.nextPacket();
    while (head && !ElementKey::isContent(head->key));
    if (!head)
        return;
    auto const* const track = container_.trackByNumber(ElementKey(head->key).trackNumber());
    if (track != nullptr && clip_.bytes == 0)
        clip_ = clipUnitSize(*track, head->length);
    SampleGrid const grid =
        track != nullptr ? SampleGrid(track->samples, container_.editRate()) : SampleGrid();
    if (grid.isKnown())
        measured_.units = static_cast<std::int64_t>(grid.unitsIn(head->length, wholeUnits_));
    else if (clip_.bytes != 0)
        measured_.units = static_cast<std::int64_t>(head->length / clip_.bytes);
    std::uint64_t const first = head->streamOffset + head->headLength;
    bool const isCut = clip_.bytes != 0 && clip_.bytes <= UINT32_MAX;
    if (!isCut)
        return; // an index table that is there is the only one there can be
    judge({first + head->length, first}, {});
    if (!lacksIndex())
        return;
    auto segment = std::make_unique<IndexTables::IndexTableSegment>(std::uint8_t{4});
    segment->indexEditRate(Types::Rational(clip_.rate));
    segment->indexDuration(Types::Length(static_cast<std::int64_t>(head->length / clip_.bytes)));
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
