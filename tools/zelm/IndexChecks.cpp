#include "IndexChecks.h"

#include "KlvWalk.h"
#include "SetValues.h"
#include "Text.h"
#include "TimeText.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/ContentStorage.h>
#include <MXF/Zelm/Metadata/Structural/EssenceContainerData.h>
#include <MXF/Zelm/Metadata/Structural/Preface.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
namespace Structural = Metadata::Structural;

namespace {

class IndexChecks {
public:
    IndexChecks(Input& input, IndexSurvey const& survey) : input_(input), survey_(survey) {}

    std::vector<IndexDisagreement> run(Metadata::PartitionMetadata const* metadata) {
        for (auto const& table : survey_.tables) {
            table_ = &table;
            rate_ = table.table->editRate();
            for (auto const& segment : table.segments)
                checkSegment(segment);
            checkEssence();
        }
        if (metadata != nullptr)
            checkMetadata(*metadata);
        return std::move(found_);
    }

private:
    void checkSegment(FoundSegment const& segment);
    void checkCount(FoundSegment const& segment);
    void checkEntries(FoundSegment const& segment);
    void checkEssence();
    void checkConstantEnd(FoundSegment const& segment);
    bool isFill(std::uint64_t streamOffset);
    void checkMetadata(Metadata::PartitionMetadata const& metadata);
    void checkTables(std::map<std::uint32_t, std::uint32_t> const& indexSIDs);

    void add(FoundSegment const& segment, std::string message) {
        found_.push_back({segment.indexSID, segment.bodySID, segment.offset, std::move(message)});
    }
    void add(FoundTable const& table, std::string message) {
        found_.push_back({table.table->indexSID(), table.table->bodySID(), std::nullopt, std::move(message)});
    }

    Input& input_;
    IndexSurvey const& survey_;
    FoundTable const* table_ = nullptr; // the one that is checked
    EditRate rate_;                     // its edit rate
    std::vector<IndexDisagreement> found_;
};

void IndexChecks::checkSegment(FoundSegment const& segment) {
    auto const& partition = survey_.partitions.partitions[segment.partition];
    if (partition.pack().indexSID() != segment.indexSID)
        add(segment, "the partition pack at " + hex(partition.offset()) + " says IndexSID " +
                         std::to_string(partition.pack().indexSID()));
    if (segment.repeatOf) {
        if (!segment.sameAsRepeated)
            add(segment, "the segment repeats that at " + hex(table_->segments[*segment.repeatOf].offset) +
                             ", with another content");
        return;
    }
    if (segment.editRate.numerator != 0 && segment.editRate != rate_)
        add(segment,
            "the edit rate is " + rateText(segment.editRate) + ", that of the table " + rateText(rate_));
    if (segment.start < 0)
        add(segment, "the segment starts at edit unit " + std::to_string(segment.start));
    if (segment.duration < 0)
        add(segment, "the duration is " + std::to_string(segment.duration));
    checkCount(segment);
    checkEntries(segment);
}

/// As many entries as edit units. Writers may add one that says where the essence ends.
void IndexChecks::checkCount(FoundSegment const& segment) {
    if (segment.editUnitByteCount != 0 || segment.duration < 0)
        return;
    auto const duration = static_cast<std::uint64_t>(segment.duration);
    if (segment.entries < duration || segment.entries - duration > 1)
        add(segment, "the duration is " + grouped(duration) + ", the number of index entries " +
                         grouped(segment.entries));
}

/// Entries stand in stored order, so that each begins behind the one before.
void IndexChecks::checkEntries(FoundSegment const& segment) {
    auto const* const entries = segment.segment->indexEntryArray();
    std::optional<std::size_t> back, beyond;
    std::size_t beyondCount = 0;
    for (std::size_t i = 0; i < segment.entries; ++i) {
        if (!back && i != 0 && entries->streamOffset(i) < entries->streamOffset(i - 1))
            back = i;
        bool const isEnd = segment.duration > 0 && i == static_cast<std::uint64_t>(segment.duration);
        if (!isEnd && table_->essenceBytes && entries->streamOffset(i) >= *table_->essenceBytes) {
            if (!beyond)
                beyond = i;
            ++beyondCount;
        }
    }
    if (back)
        add(segment, "entry " + grouped(*back) + " begins at " + hex(entries->streamOffset(*back)) +
                         " of the essence, before the one before it");
    if (beyond)
        add(segment, grouped(beyondCount) + (beyondCount == 1 ? " entry leads" : " entries lead") +
                         " beyond the essence, which has " + grouped(*table_->essenceBytes) +
                         " bytes: the first is entry " + grouped(*beyond) + ", which says " +
                         hex(entries->streamOffset(*beyond)));
}

void IndexChecks::checkEssence() {
    if (table_->table->bodySID() == 0)
        add(*table_, "BodySID 0 names no essence");
    else if (table_->map && !table_->essenceBytes)
        add(*table_, "the file has no essence of BodySID " + std::to_string(table_->table->bodySID()));
    if (table_->table->size() == 1 && table_->segments.front().start == 0 &&
        table_->segments.front().entries == 0 && table_->segments.front().editUnitByteCount != 0)
        checkConstantEnd(table_->segments.front());
}

/// The one segment of a table of constant rate: as many bytes as there are?
void IndexChecks::checkConstantEnd(FoundSegment const& segment) {
    if (!table_->essenceBytes || segment.duration <= 0)
        return;
    std::uint64_t const bytes = (table_->clipStart != 0 ? table_->clipEnd : *table_->essenceBytes);
    std::uint64_t const present = bytes - table_->clipStart;
    auto const duration = static_cast<std::uint64_t>(segment.duration);
    std::string const says = grouped(duration) + (duration == 1 ? " edit unit of " : " edit units of ") +
                             grouped(segment.editUnitByteCount) + " bytes, but the essence has " +
                             grouped(present) + " bytes";
    // The last edit unit may be shorter.
    if (duration - 1 > present / segment.editUnitByteCount ||
        (duration - 1) * segment.editUnitByteCount >= present)
        add(segment, says);
    else if (duration * segment.editUnitByteCount < present &&
             present - duration * segment.editUnitByteCount >= segment.editUnitByteCount &&
             (table_->clipStart != 0 || !isFill(duration * segment.editUnitByteCount)))
        add(segment, says);
}

/// Whether a fill item, which may stand behind the last edit unit, begins at an offset of the essence.
bool IndexChecks::isFill(std::uint64_t streamOffset) {
    auto const extent = table_->map->find(streamOffset);
    KlvWalk::Packet packet;
    return extent && KlvWalk(input_, extent->fileOffset).next(packet) && KLV::isFillItem(packet.key);
}

void IndexChecks::checkMetadata(Metadata::PartitionMetadata const& metadata) {
    std::map<std::uint32_t, std::uint32_t> indexSIDs; // by body SID
    try {
        auto const* const preface = dynamic_cast<Structural::Preface const*>(&metadata.preface());
        auto const* const storage = preface != nullptr ? preface->contentStorage() : nullptr;
        if (storage == nullptr)
            return;
        for (auto const* const data : storage->essenceContainerData())
            if (auto const bodySID = count(data->bodySID()))
                indexSIDs.emplace(*bodySID, count(data->indexSID()).value_or(0));
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return; // there is no telling which of several Prefaces counts
    }
    checkTables(indexSIDs);
}

void IndexChecks::checkTables(std::map<std::uint32_t, std::uint32_t> const& indexSIDs) {
    for (auto const& table : survey_.tables) {
        auto const data = indexSIDs.find(table.table->bodySID());
        if (data == indexSIDs.end())
            add(table, "the header metadata has no EssenceContainerData of BodySID " +
                           std::to_string(table.table->bodySID()));
        else if (data->second != table.table->indexSID())
            add(table, "the EssenceContainerData of BodySID " + std::to_string(data->first) +
                           " says IndexSID " + std::to_string(data->second));
    }
    for (auto const& [bodySID, indexSID] : indexSIDs) {
        auto const isIt = [sid = bodySID](FoundTable const& table) { return table.table->bodySID() == sid; };
        if (indexSID != 0 && std::none_of(survey_.tables.begin(), survey_.tables.end(), isIt))
            found_.push_back({indexSID, bodySID, std::nullopt,
                              "the EssenceContainerData of BodySID " + std::to_string(bodySID) +
                                  " says IndexSID " + std::to_string(indexSID) +
                                  ", but the file has no such index table"});
    }
}

} // namespace

std::vector<IndexDisagreement> checkIndex(Input& input, IndexSurvey const& survey,
                                          Metadata::PartitionMetadata const* metadata) {
    return IndexChecks(input, survey).run(metadata);
}

} // namespace Zelm
