#include "PartitionChecks.h"

#include "KlvWalk.h"
#include "Text.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Packs::PartitionPack;

namespace {

bool isPrimer(KLV::Key const& key) { return key == Packs::PrimerPack::key(); }
bool isRandomIndex(KLV::Key const& key) { return key == Packs::RandomIndexPack::key(); }

/// Sets of any kind, dark ones among them, and fill.
bool isHeaderMetadata(KLV::Key const& key) {
    return !Packs::isPartitionPack(key) && !isRandomIndex(key) && !KLV::isIndexTableKlvSegment(key) &&
           !KLV::isEssence(key);
}

bool isMetadataSetOrPrimer(KLV::Key const& key) { return KLV::isMetadataSet(key) || isPrimer(key); }

bool isIndexTable(KLV::Key const& key) { return KLV::isIndexTableKlvSegment(key) || KLV::isFillItem(key); }

} // namespace

void PartitionChecks::run() {
    if (survey_.partitions.empty())
        return;
    checkOrder();
    for (std::size_t i = 0; i < survey_.partitions.size(); ++i) {
        auto const& partition = survey_.partitions[i];
        checkOffsets(i);
        checkFooterOffset(partition);
        checkStatus(partition);
        if (checkAreas(partition))
            checkBody(partition);
        else
            miscounted_.insert(&partition);
    }
    checkBodyOffsets();
    checkLabels();
    checkFooterIsThere();
    checkRandomIndex();
}

void PartitionChecks::disagree(SurveyedPartition const& partition, const char* field, std::string message) {
    disagreements_.push_back({partition.offset(), field, std::move(message)});
}

void PartitionChecks::checkOrder() {
    auto const& partitions = survey_.partitions;
    for (auto const& partition : partitions) {
        bool const first = &partition == &partitions.front();
        auto const kind = partition.pack().partitionKind();
        if (first != (kind == PartitionPack::Header))
            disagree(partition, "kind",
                     first ? "the first partition is no header partition" : "a second header partition");
        if (kind == PartitionPack::Footer && &partition != &partitions.back())
            disagree(partition, "kind", "a footer partition that is not the last partition");
    }
}

void PartitionChecks::checkOffsets(std::size_t index) {
    auto const& partition = survey_.partitions[index];
    auto const& pack = partition.pack();
    std::uint64_t const here = relative(partition.offset());
    if (pack.thisPartition() != here)
        disagree(partition, "this_partition",
                 "ThisPartition is " + hex(pack.thisPartition()) + ", the partition stands at " + hex(here));
    std::uint64_t const before = index == 0 ? 0 : relative(survey_.partitions[index - 1].offset());
    if (pack.previousPartition() != before)
        disagree(partition, "previous_partition",
                 "PreviousPartition is " + hex(pack.previousPartition()) +
                     (index == 0 ? ", that of the first partition is 0"
                                 : ", the partition before stands at " + hex(before)));
}

void PartitionChecks::checkFooterOffset(SurveyedPartition const& partition) {
    auto const* const footer = survey_.footer();
    std::uint64_t const said = partition.pack().footerPartition();
    bool const mayBeUnknown = partition.pack().isOpen() || footer == nullptr;
    if ((said == 0 && mayBeUnknown) || (footer != nullptr && said == relative(footer->offset())))
        return;
    disagree(partition, "footer_partition",
             "FooterPartition is " + hex(said) +
                 (footer != nullptr ? ", the footer partition stands at " + hex(relative(footer->offset()))
                                    : ", no footer partition was found"));
}

void PartitionChecks::checkStatus(SurveyedPartition const& partition) {
    if (partition.isFooter() && partition.pack().isOpen())
        disagree(partition, "status", "a footer partition cannot be open");
    if (&partition == &survey_.partitions.front() && !partition.pack().isOpen() &&
        !partition.partition->isGenericStream() && partition.pack().headerByteCount() == 0)
        disagree(partition, "status", "the header partition is closed, but has no header metadata");
}

/// The key of the packet at an offset, none when no packet begins there.
std::optional<KLV::Key> PartitionChecks::keyAt(std::uint64_t offset) {
    std::uint64_t skipped = 0;
    if (input_.source.seek(offset) != offset)
        return std::nullopt;
    try {
        return input_.reader.klvReader().peekNextKey(skipped, 0);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return std::nullopt;
    }
}

/// Stops at the first area that is wrong: those after it begin where it ends.
bool PartitionChecks::checkAreas(SurveyedPartition const& partition) {
    auto const& p = *partition.partition;
    std::uint64_t const headerStart = p.metadataAbsoluteOffset() + p.leadingFillLength();
    Area const header{
        "header_byte_count", "header metadata",    headerStart, p.partitionPack().headerByteCount(), isPrimer,
        isHeaderMetadata,    isMetadataSetOrPrimer};
    if (!checkArea(partition, header))
        return false;
    Area const index{"index_byte_count",           "index table",
                     p.indexTableAbsoluteOffset(), p.partitionPack().indexByteCount(),
                     KLV::isIndexTableKlvSegment,  isIndexTable,
                     KLV::isIndexTableKlvSegment};
    if (!checkArea(partition, index))
        return false;
    if (p.partitionPack().indexSID() == 0 && index.count != 0)
        disagree(partition, "index_sid", "IndexSID is 0, but there is an index table");
    return true;
}

/// Walks the packets of an area: it has to begin with the right one, to hold no others, and to end, with a
/// packet, where its byte count says.
bool PartitionChecks::checkArea(SurveyedPartition const& partition, Area const& area) {
    std::string const name = area.name;
    auto const wrong = [&](std::string message) {
        disagree(partition, area.field, std::move(message));
        return false;
    };
    if (area.count > partition.end - std::min(partition.end, area.start))
        return wrong("the " + name + " of " + grouped(area.count) + " bytes at " + hex(area.start) +
                     " runs beyond the partition's end at " + hex(partition.end));
    std::uint64_t const end = area.start + area.count;
    auto const first = keyAt(area.start);
    if (area.count != 0 && !(first && area.begins(*first)))
        return wrong("no " + name + " begins at " + hex(area.start));

    KlvWalk walk(input_, area.start);
    KlvWalk::Packet packet;
    while (walk.offset() < end) {
        std::uint64_t const at = walk.offset();
        if (!walk.next(packet))
            return wrong("the " + name + " cannot be read at " + hex(at));
        if (!area.belongs(packet.key))
            return wrong("the " + name + " ends at " + hex(at) + ", its byte count leads to " + hex(end));
    }
    if (walk.offset() != end)
        return wrong("the byte count of the " + name + " leads to " + hex(end) + ", into the packet at " +
                     hex(packet.offset));
    auto const next = end < partition.end ? keyAt(end) : std::nullopt;
    if (next && area.onlyHere(*next))
        return wrong("the " + name + (area.count == 0 ? " at " : " goes on at ") + hex(end) +
                     (area.count == 0 ? " is not counted" : ", where its byte count ends"));
    return true;
}

void PartitionChecks::checkBody(SurveyedPartition const& partition) {
    std::uint64_t const body = partition.partition->bodyAbsoluteOffset();
    if (body >= partition.end)
        return;
    auto const key = keyAt(body);
    if (!key)
        disagree(partition, "body_sid", "no packet begins at " + hex(body) + ", where the body begins");
    else if (partition.pack().bodySID() == 0 && KLV::isEssence(*key))
        disagree(partition, "body_sid", "BodySID is 0, but essence stands at " + hex(body));
}

/// Where the body ends, fill at its end left out.
std::uint64_t PartitionChecks::contentEnd(SurveyedPartition const& partition) {
    std::uint64_t end = partition.partition->bodyAbsoluteOffset();
    KlvWalk walk(input_, end);
    KlvWalk::Packet packet;
    while (walk.offset() < partition.end && walk.next(packet))
        if (!KLV::isFillItem(packet.key))
            end = packet.end();
    return end;
}

/// The body offset of each partition is what the earlier ones of its stream hold. Fill at the end of a
/// partition is counted by some writers and not by others.
void PartitionChecks::checkBodyOffsets() {
    struct Stream {
        SurveyedPartition const* last;
        std::uint64_t position; // where `last` begins in the stream
    };
    std::map<std::uint32_t, Stream> streams;
    for (auto const& partition : survey_.partitions) {
        std::uint64_t const said = partition.pack().bodyOffset();
        std::uint32_t const sid = partition.pack().bodySID();
        auto const found = sid != 0 ? streams.find(sid) : streams.end();
        std::uint64_t expected = 0;
        if (found != streams.end()) {
            auto const& [last, position] = found->second;
            std::uint64_t const body = std::min(last->partition->bodyAbsoluteOffset(), last->end);
            expected = position + (last->end - body);
            if (miscounted_.contains(last) ||
                (said != expected && said == position + (std::max(contentEnd(*last), body) - body)))
                expected = said;
        }
        if (said != expected)
            disagree(partition, "body_offset",
                     "BodyOffset is " + hex(said) +
                         (sid == 0 ? " without a BodySID"
                                   : ", the partitions before hold " + hex(expected) + " bytes of stream " +
                                         std::to_string(sid)));
        if (sid != 0)
            streams.insert_or_assign(sid, Stream{&partition, expected});
    }
}

/// Operational pattern and essence containers are those of the file, the same in all its partitions. Those
/// that most partitions have are taken to be right.
void PartitionChecks::checkLabels() {
    using Labels = std::vector<KLV::Key>;
    auto const pattern = [](PartitionPack const& pack) { return Labels{pack.operationalPattern().key()}; };
    auto const containers = [](PartitionPack const& pack) {
        Labels labels;
        for (std::size_t i = 0; i < pack.essenceContainers().count(); ++i)
            labels.push_back(pack.essenceContainers().at<Types::UniversalLabel>(i).key());
        std::sort(labels.begin(), labels.end());
        return labels;
    };
    auto const check = [this](auto labelsOf, const char* field, const char* message) {
        std::map<Labels, std::size_t> counts;
        Labels usual = labelsOf(survey_.partitions.front().pack());
        for (auto const& partition : survey_.partitions)
            ++counts[labelsOf(partition.pack())];
        for (auto const& [labels, count] : counts)
            if (count > counts[usual])
                usual = labels;
        for (auto const& partition : survey_.partitions)
            if (labelsOf(partition.pack()) != usual)
                disagree(partition, field, message);
    };
    check(pattern, "operational_pattern", "the operational pattern is not that of the other partitions");
    check(containers, "essence_containers", "the essence containers are not those of the other partitions");
}

void PartitionChecks::checkFooterIsThere() {
    if (survey_.footer() != nullptr)
        return;
    auto const& header = survey_.partitions.front().pack();
    if (header.isOpen())
        notes_.push_back("there is no footer partition: the file was not finished");
    else
        disagreements_.push_back({std::nullopt, "footer_partition",
                                  "the header partition is closed, but there is no footer partition"});
}

void PartitionChecks::checkRandomIndex() {
    if (!survey_.randomIndex) {
        notes_.push_back("there is no random index pack");
        return;
    }
    auto const& index = *survey_.randomIndex;
    auto const wrong = [this](std::string message) {
        disagreements_.push_back({std::nullopt, "random_index_pack", std::move(message)});
    };
    if (index.lengthWord != index.length)
        wrong("the random index pack gives its length as " + grouped(index.lengthWord) + " bytes, it has " +
              grouped(index.length));
    if (index.valueLength != index.entries.size() * 12 + 4)
        wrong("the random index pack's value of " + grouped(index.valueLength) +
              " bytes does not end with an entry and the length word");
    std::uint64_t const end = index.offset + index.length;
    if (end < input_.source.size())
        wrong("the random index pack is followed by " + grouped(input_.source.size() - end) + " bytes");
    checkRandomIndexEntries(index);
}

void PartitionChecks::checkRandomIndexEntries(RandomIndex const& index) {
    auto const wrong = [this](std::optional<std::uint64_t> offset, std::string message) {
        disagreements_.push_back({offset, "random_index_pack", std::move(message)});
    };
    std::map<std::uint64_t, SurveyedPartition const*> missing;
    for (auto const& partition : survey_.partitions)
        missing.emplace(relative(partition.offset()), &partition);
    auto const all = missing;
    for (std::size_t i = 0; i < index.entries.size(); ++i) {
        auto const& entry = index.entries[i];
        std::string const name = "entry " + std::to_string(i) + " of the random index pack";
        auto const found = all.find(entry.byteOffset);
        if (found == all.end()) {
            wrong(std::nullopt,
                  name + " leads to " + hex(entry.byteOffset) + ", where no partition was found");
            continue;
        }
        std::uint64_t const offset = found->second->offset();
        if (missing.erase(entry.byteOffset) == 0)
            wrong(offset, name + " repeats the partition at " + hex(entry.byteOffset));
        else if (entry.bodySID != found->second->pack().bodySID())
            wrong(offset, name + " gives BodySID " + std::to_string(entry.bodySID) + ", the partition has " +
                              std::to_string(found->second->pack().bodySID()));
    }
    for (auto const& [offset, partition] : missing)
        wrong(partition->offset(), "the random index pack does not list the partition at " + hex(offset));
}

} // namespace Zelm
