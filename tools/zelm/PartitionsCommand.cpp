/// `zelm partitions FILE`: a table of the partitions and of the random index pack, with what does not agree.
#include "Json.h"
#include "PartitionChecks.h"
#include "Text.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <iostream>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using Packs::PartitionPack;

namespace {

std::string kindText(SurveyedPartition const& partition) {
    if (partition.partition->isGenericStream())
        return "generic stream";
    switch (partition.pack().partitionKind()) {
    case PartitionPack::Header:
        return "header";
    case PartitionPack::Body:
        return "body";
    case PartitionPack::Footer:
        break;
    }
    return "footer";
}

/// None for generic stream partitions, which have no status.
std::optional<std::string> statusText(SurveyedPartition const& partition) {
    if (partition.partition->isGenericStream())
        return std::nullopt;
    return std::string(partition.pack().isOpen() ? "open " : "closed ") +
           (partition.pack().isComplete() ? "complete" : "incomplete");
}

std::string versionText(PartitionPack const& pack) {
    return std::to_string(pack.majorVersion()) + "." + std::to_string(pack.minorVersion());
}

std::string labelText(Types::UniversalLabel const& label) {
    std::string const name = MXF::ZelmDictionary::labelName(label);
    return name.empty() ? Platform::toUtf8(label.toString()) : name;
}

std::vector<Types::UniversalLabel> containers(PartitionPack const& pack) {
    std::vector<Types::UniversalLabel> labels;
    for (std::size_t i = 0; i < pack.essenceContainers().count(); ++i)
        labels.push_back(pack.essenceContainers().at<Types::UniversalLabel>(i));
    return labels;
}

Json partitionJson(SurveyedPartition const& partition) {
    auto const& pack = partition.pack();
    Json labels = Json::array(), names = Json::array();
    for (auto const& label : containers(pack)) {
        labels.push_back(toJson(&label));
        names.push_back(labelText(label));
    }
    return {{"offset", partition.offset()},
            {"length", partition.partition->partitionPackLength()},
            {"kind", kindText(partition)},
            {"status", orNull(statusText(partition))},
            {"version", versionText(pack)},
            {"kag_size", pack.kagSize()},
            {"this_partition", pack.thisPartition()},
            {"previous_partition", pack.previousPartition()},
            {"footer_partition", pack.footerPartition()},
            {"header_byte_count", pack.headerByteCount()},
            {"index_byte_count", pack.indexByteCount()},
            {"index_sid", pack.indexSID()},
            {"body_offset", pack.bodyOffset()},
            {"body_sid", pack.bodySID()},
            {"operational_pattern", toJson(&pack.operationalPattern())},
            {"operational_pattern_name", labelText(pack.operationalPattern())},
            {"essence_containers", std::move(labels)},
            {"essence_container_names", std::move(names)}};
}

Json randomIndexJson(std::optional<RandomIndex> const& index) {
    if (!index)
        return nullptr;
    Json entries = Json::array();
    for (auto const& entry : index->entries)
        entries.push_back({{"body_sid", entry.bodySID}, {"byte_offset", entry.byteOffset}});
    return {{"offset", index->offset}, {"length", index->length}, {"entries", std::move(entries)}};
}

/// Rows of text, with a mark after each value that something does not agree with.
class TextReport {
public:
    TextReport(PartitionSurvey const& survey, PartitionChecks const& checks)
        : survey_(survey), checks_(checks) {
        for (auto const& disagreement : checks.disagreements())
            if (disagreement.partitionOffset)
                marks_.emplace(*disagreement.partitionOffset, disagreement.field);
    }

    void print() const {
        if (!survey_.partitions.empty()) {
            printPartitions();
            printLabels();
        }
        if (survey_.randomIndex)
            printRandomIndex(*survey_.randomIndex);
        if (!checks_.disagreements().empty() || !checks_.notes().empty())
            std::cout << "\n";
        for (auto const& [offset, field, message] : checks_.disagreements())
            std::cout << "! " << (offset ? "partition at " + hex(*offset) + ": " : "") << message << "\n";
        for (auto const& note : checks_.notes())
            std::cout << "note: " << note << "\n";
    }

private:
    using Column = Table::Column;
    static constexpr auto right = Table::Align::Right;

    std::string marked(std::uint64_t offset, const char* field, std::string text) const {
        return text + (marks_.contains({offset, field}) ? "!" : " ");
    }

    void printPartitions() const {
        Table table({{"no", right},
                     {"offset", right},
                     {"kind"},
                     {"status"},
                     {"BodySID", right},
                     {"IndexSID", right},
                     {"header bytes", right},
                     {"index bytes", right},
                     {"body offset", right},
                     {"this", right},
                     {"previous", right},
                     {"footer", right},
                     {"KAG", right},
                     {"version"}});
        std::size_t number = 0; // what zelm dump --partition calls it
        for (auto const& partition : survey_.partitions)
            table.add(row(number++, partition));
        table.print(std::cout);
    }

    std::vector<std::string> row(std::size_t number, SurveyedPartition const& partition) const {
        auto const& pack = partition.pack();
        auto const cell = [&](const char* field, std::string text) {
            return marked(partition.offset(), field, std::move(text));
        };
        return {std::to_string(number),
                marked(partition.offset(), "random_index_pack", hex(partition.offset())),
                cell("kind", kindText(partition)),
                cell("status", statusText(partition).value_or("-")),
                cell("body_sid", std::to_string(pack.bodySID())),
                cell("index_sid", std::to_string(pack.indexSID())),
                cell("header_byte_count", grouped(pack.headerByteCount())),
                cell("index_byte_count", grouped(pack.indexByteCount())),
                cell("body_offset", hex(pack.bodyOffset())),
                cell("this_partition", hex(pack.thisPartition())),
                cell("previous_partition", hex(pack.previousPartition())),
                cell("footer_partition", hex(pack.footerPartition())),
                std::to_string(pack.kagSize()),
                versionText(pack)};
    }

    /// Those of the header partition; where others differ, a disagreement says so.
    void printLabels() const {
        auto const& pack = survey_.partitions.front().pack();
        std::cout << "\noperational pattern  " << labelText(pack.operationalPattern()) << "\n";
        for (auto const& label : containers(pack))
            std::cout << "essence container    " << labelText(label) << "\n";
    }

    void printRandomIndex(RandomIndex const& index) const {
        std::cout << "\nrandom index pack at " << hex(index.offset) << ", " << grouped(index.length)
                  << " bytes, " << grouped(index.entries.size())
                  << (index.entries.size() == 1 ? " entry\n" : " entries\n");
        Table table({{"entry", right}, {"BodySID", right}, {"offset", right}});
        for (std::size_t i = 0; i < index.entries.size(); ++i)
            table.add({std::to_string(i), std::to_string(index.entries[i].bodySID),
                       hex(index.entries[i].byteOffset)});
        table.print(std::cout);
    }

    PartitionSurvey const& survey_;
    PartitionChecks const& checks_;
    std::set<std::pair<std::uint64_t, std::string>> marks_;
};

class PartitionsCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        parser.add_flag("--walk", walk_, "Go through all packets, whatever the random index pack says");
        parser.add_flag("--json", json_, "Print one JSON object instead of text");
    }

    ExitStatus run() override {
        Input input(file_, std::make_shared<MetaMetadata::Dictionary>());
        auto const survey = PartitionSurveyor(input, walk_).survey();
        PartitionChecks checks(input, survey);
        checks.run();
        if (json_)
            printJson(input, survey, checks);
        else
            TextReport(survey, checks).print();
        if (survey.fault) {
            reportFault(file_, survey.fault->message, survey.fault->offset);
            return NotMXF;
        }
        return checks.disagreements().empty() ? Done : FoundSomething;
    }

private:
    void printJson(Input const& input, PartitionSurvey const& survey, PartitionChecks const& checks) const {
        Json report = jsonReport();
        report["file"] = file_;
        report["size"] = input.source.size();
        report["run_in"] = input.reader.runInLength();
        report["partitions"] = Json::array();
        for (auto const& partition : survey.partitions)
            report["partitions"].push_back(partitionJson(partition));
        report["random_index_pack"] = randomIndexJson(survey.randomIndex);
        report["disagreements"] = Json::array();
        for (auto const& [offset, field, message] : checks.disagreements())
            report["disagreements"].push_back(
                {{"partition_offset", orNull(offset)}, {"field", field}, {"message", message}});
        report["notes"] = checks.notes();
        report["fault"] = toJson(survey.fault);
        print(report);
    }

    std::string file_;
    bool walk_ = false;
    bool json_ = false;
};

} // namespace

std::unique_ptr<Command> makePartitionsCommand() { return std::make_unique<PartitionsCommand>(); }

} // namespace Zelm
