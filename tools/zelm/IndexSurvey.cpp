#include "IndexSurvey.h"

#include "KlvWalk.h"
#include "Text.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexTableSegment;

namespace {

constexpr std::int64_t lastPosition = std::numeric_limits<std::int64_t>::max();

std::int64_t behind(std::int64_t start, std::uint64_t count) {
    auto const room = static_cast<std::uint64_t>(lastPosition) - static_cast<std::uint64_t>(start);
    return count > room ? lastPosition : static_cast<std::int64_t>(static_cast<std::uint64_t>(start) + count);
}

bool sameEntries(IndexTableSegment const& a, IndexTableSegment const& b) {
    auto const* const entriesA = a.indexEntryArray();
    auto const* const entriesB = b.indexEntryArray();
    for (std::size_t i = 0; i < a.indexEntryCount(); ++i)
        if (entriesA->streamOffset(i) != entriesB->streamOffset(i) ||
            entriesA->flags(i) != entriesB->flags(i) ||
            entriesA->temporalOffset(i) != entriesB->temporalOffset(i) ||
            entriesA->keyFrameOffset(i) != entriesB->keyFrameOffset(i))
            return false;
    return true;
}

FoundSegment describe(IndexTableSegment const& segment, std::uint32_t packIndexSID) {
    FoundSegment found;
    found.indexSID = segment.indexSID() != nullptr ? segment.indexSID()->value() : packIndexSID;
    found.bodySID = segment.bodySID();
    found.editRate = segment.indexEditRate().value();
    found.start = segment.indexStartPosition();
    found.duration = segment.indexDuration();
    found.editUnitByteCount =
        segment.editUnitByteCount() != nullptr ? segment.editUnitByteCount()->value() : 0;
    found.entries = segment.indexEntryCount();
    found.deltaEntries = segment.deltaEntryCount();
    found.sliceCount = segment.sliceCount() != nullptr ? segment.sliceCount()->value() : 0;
    found.posTableCount = segment.posTableCount() != nullptr ? segment.posTableCount()->value() : 0;
    return found;
}

/// An essence element that is longer than an edit unit holds several: a clip. Edit units then count from its
/// value.
void takeClip(Input& input, FoundTable& table, std::uint32_t byteCount) {
    if (!table.essenceBytes)
        return;
    auto const extent = table.map->find(0);
    KlvWalk::Packet packet;
    if (!extent || !KlvWalk(input, extent->fileOffset).next(packet) || packet.length < byteCount)
        return;
    table.clipStart = packet.valueOffset() - packet.offset;
    table.clipEnd = table.clipStart + packet.present;
}

void takeEssence(Input& input, FoundTable& table) {
    auto const bodySID = table.table->bodySID();
    try {
        auto map = std::make_unique<MXFIO::PartitionMap>(input.reader, bodySID);
        if (bodySID != 0 && map->streamLength() != 0)
            table.essenceBytes = map->streamLength();
        table.map = std::move(map);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        table.fault = {failure.message(), failure.offset().value_or(0)};
    }
    for (auto const& segment : table.segments)
        if (table.clipStart == 0 && segment.editUnitByteCount != 0 && segment.entries == 0) {
            takeClip(input, table, segment.editUnitByteCount);
            break;
        }
}

/// Behind the last edit unit from `first` to before `last` that the locator finds: at a constant rate it
/// finds all until the essence ends.
std::int64_t lastLocated(IndexTables::EditUnitLocator const& locator, std::int64_t first, std::int64_t last) {
    while (first < last) {
        auto const middle = first + static_cast<std::int64_t>(UnitRange{first, last}.count() / 2);
        if (locator.locate(middle))
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

/// What one segment serves.
UnitRange reach(FoundTable const& table, FoundTable::Locator const& locator,
                IndexTableSegment const& segment) {
    std::int64_t const start = segment.indexStartPosition(), duration = segment.indexDuration();
    std::int64_t const end =
        duration > 0 ? behind(start, static_cast<std::uint64_t>(duration)) : lastPosition;
    std::int64_t const entriesEnd = std::min(end, behind(start, segment.indexEntryCount()));
    bool const isConstant = segment.editUnitByteCount() != nullptr && *segment.editUnitByteCount() != 0;
    // Without essence in the file there is nothing to be found at a constant rate, and no end to it.
    if (!isConstant || !table.essenceBytes || (duration <= 0 && segment.indexEntryCount() != 0))
        return {start, entriesEnd};
    // Each edit unit has a byte at least: there are no more of them, whatever the segment says.
    std::int64_t const most = behind(0, *table.essenceBytes);
    return {start, lastLocated(locator, entriesEnd, std::max(entriesEnd, std::min(end, most)))};
}

void findCovered(FoundTable& table) {
    FoundTable::Locator const locator(*table.table, table.extent());
    for (auto const& [start, segment] : *table.table) {
        auto const range = reach(table, locator, *segment);
        if (range.last <= range.first)
            continue;
        if (!table.covered.empty() && range.first <= table.covered.back().last)
            table.covered.back().last = std::max(table.covered.back().last, range.last);
        else
            table.covered.push_back(range);
    }
}

class IndexSurveyor {
public:
    IndexSurveyor(Input& input, bool everywhere) : input_(input), everywhere_(everywhere) {}

    IndexSurvey survey() {
        survey_.partitions = PartitionSurveyor(input_, false).survey();
        for (std::size_t i = 0; i < survey_.partitions.partitions.size(); ++i)
            walk(i);
        if (survey_.partitions.fault)
            survey_.faults.push_back(*survey_.partitions.fault);
        for (auto& [sids, table] : tables_) {
            takeEssence(input_, table);
            findCovered(table);
            survey_.tables.push_back(std::move(table));
        }
        return std::move(survey_);
    }

private:
    void walk(std::size_t number);
    void read(KlvWalk::Packet const& packet, std::size_t number);
    void keep(std::unique_ptr<IndexTableSegment> segment, FoundSegment found);

    Input& input_;
    bool everywhere_;
    IndexSurvey survey_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, FoundTable> tables_;
    std::map<std::tuple<std::uint32_t, std::uint32_t, std::int64_t, std::int64_t>, std::size_t> firsts_;
};

/// Byte counts that are too small are passed over: segments that follow the area belong to it.
void IndexSurveyor::walk(std::size_t number) {
    auto const& partition = survey_.partitions.partitions[number];
    std::uint64_t const declaredEnd =
        everywhere_ ? partition.end : std::min(partition.end, partition.partition->bodyAbsoluteOffset());
    KlvWalk walk(input_, partition.partition->indexTableAbsoluteOffset());
    KlvWalk::Packet packet;
    while (walk.offset() < partition.end && walk.next(packet)) {
        if (IndexTableSegment::isSegmentKey(packet.key))
            read(packet, number);
        else if (!KLV::isFillItem(packet.key) && packet.offset >= declaredEnd)
            break;
    }
    if (walk.fault() && !survey_.partitions.fault)
        survey_.faults.push_back(*walk.fault());
}

void IndexSurveyor::read(KlvWalk::Packet const& packet, std::size_t number) {
    auto const& partition = survey_.partitions.partitions[number];
    std::uint64_t skipped = 0;
    input_.source.seek(packet.offset);
    try {
        if (packet.length > packet.present || packet.end() > partition.end)
            throw Exceptions::InvalidIndexSegment("An index table segment of " + grouped(packet.length) +
                                                  " bytes runs beyond the end of its partition");
        auto const klv = input_.reader.klvReader().nextKLV(skipped, 0);
        auto segment = std::make_unique<IndexTableSegment>(*klv, nullptr);
        auto found = describe(*segment, partition.pack().indexSID());
        found.offset = packet.offset;
        found.partition = number;
        keep(std::move(segment), found);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        survey_.faults.push_back({failure.message(), failure.offset().value_or(packet.offset)});
    }
}

void IndexSurveyor::keep(std::unique_ptr<IndexTableSegment> segment, FoundSegment found) {
    auto& table = tables_[{found.indexSID, found.bodySID}];
    if (!table.table)
        table.table = std::make_unique<IndexTables::IndexTable>(found.indexSID, found.bodySID);
    auto const [first, isNew] = firsts_.try_emplace(
        {found.indexSID, found.bodySID, found.start, found.duration}, table.segments.size());
    if (isNew) {
        found.segment = segment.get();
        table.table->add(std::move(segment), false);
    } else {
        auto const& other = table.segments[first->second];
        found.repeatOf = first->second;
        found.sameAsRepeated =
            found.entries == other.entries && found.editUnitByteCount == other.editUnitByteCount &&
            found.deltaEntries == other.deltaEntries && sameEntries(*segment, *other.segment);
    }
    table.segments.push_back(found);
}

} // namespace

std::vector<UnitRange> FoundTable::gaps() const {
    std::vector<UnitRange> found;
    std::int64_t next = 0;
    for (auto const& range : covered) {
        if (range.first > next)
            found.push_back({next, range.first});
        next = std::max(next, range.last);
    }
    return found;
}

std::string FoundTable::name() const {
    return "IndexSID " + std::to_string(table->indexSID()) + ", BodySID " + std::to_string(table->bodySID());
}

IndexSurvey surveyIndex(Input& input, bool everywhere) { return IndexSurveyor(input, everywhere).survey(); }

void completeTable(Input& input, FoundTable& table) {
    for (auto const& [start, segment] : *table.table) {
        table.segments.push_back(describe(*segment, table.table->indexSID()));
        table.segments.back().segment = segment.get();
    }
    takeEssence(input, table);
    findCovered(table);
}

} // namespace Zelm
