/// The report of `zelm index`: tables, segments, coverage, disagreements.
#include "IndexReport.h"

#include "Text.h"
#include "TimeText.h"

#include <algorithm>
#include <iostream>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

std::string rationalText(EditRate const& rate) {
    return std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
}

/// Edit units with a key frame offset of 0 that are not predicted. An entry behind the last edit unit, which
/// says where the essence ends, is none.
std::uint64_t keyFrames(FoundTable const& table) {
    using IndexTables::IndexEntry;
    constexpr unsigned predicted = IndexEntry::ForwardPrediction | IndexEntry::BackwardPrediction;
    std::uint64_t count = 0;
    for (auto const& [start, segment] : *table.table)
        for (std::size_t i = 0; i < segment->indexEntryCount(); ++i) {
            std::int64_t const duration = segment->indexDuration();
            if (duration > 0 && i >= static_cast<std::uint64_t>(duration))
                break;
            auto const* const entries = segment->indexEntryArray();
            if (entries->keyFrameOffset(i) == 0 && (entries->flags(i) & predicted) == 0)
                ++count;
        }
    return count;
}

std::uint64_t entryCount(FoundTable const& table) {
    std::uint64_t count = 0;
    for (auto const& [start, segment] : *table.table)
        count += segment->indexEntryCount();
    return count;
}

std::uint64_t coveredCount(FoundTable const& table) {
    std::uint64_t count = 0;
    for (auto const& range : table.covered)
        count += range.count();
    return count;
}

/// The bytes of every edit unit when all segments say the same, else none.
std::optional<std::uint32_t> constantBytes(FoundTable const& table) {
    std::set<std::uint32_t> sizes;
    for (auto const& segment : table.segments)
        sizes.insert(segment.entries != 0 ? 0 : segment.editUnitByteCount);
    return sizes.size() == 1 && *sizes.begin() != 0 ? std::optional(*sizes.begin()) : std::nullopt;
}

std::string rangesText(std::vector<UnitRange> const& ranges) {
    constexpr std::size_t mostShown = 20;
    std::string text;
    for (std::size_t i = 0; i < std::min(ranges.size(), mostShown); ++i)
        text += (i == 0 ? "" : ", ") + std::to_string(ranges[i].first) + " to " +
                std::to_string(ranges[i].last - 1);
    if (ranges.size() > mostShown)
        text += " and " + grouped(ranges.size() - mostShown) + " more";
    return text.empty() ? "none" : text;
}

Json rangesJson(std::vector<UnitRange> const& ranges) {
    Json json = Json::array();
    for (auto const& range : ranges)
        json.push_back({{"start", range.first}, {"duration", range.count()}});
    return json;
}

Json segmentJson(FoundTable const& table, FoundSegment const& segment) {
    Json repeatOf = nullptr;
    if (segment.repeatOf)
        repeatOf = table.segments[*segment.repeatOf].offset;
    return {{"index_sid", segment.indexSID},
            {"body_sid", segment.bodySID},
            {"edit_rate", rationalText(segment.editRate)},
            {"start", segment.start},
            {"duration", segment.duration},
            {"edit_unit_byte_count", segment.editUnitByteCount},
            {"entries", segment.entries},
            {"delta_entries", segment.deltaEntries},
            {"slice_count", segment.sliceCount},
            {"pos_table_count", segment.posTableCount},
            {"offset", table.isRebuilt ? Json(nullptr) : Json(segment.offset)},
            {"partition", table.isRebuilt ? Json(nullptr) : Json(segment.partition)},
            {"repeat_of", std::move(repeatOf)}};
}

Json tableJson(FoundTable const& table) {
    Json segments = Json::array();
    for (auto const& segment : table.segments)
        segments.push_back(segmentJson(table, segment));
    return {{"index_sid", table.table->indexSID()},
            {"body_sid", table.table->bodySID()},
            {"edit_rate", rationalText(table.table->editRate())},
            {"edit_unit_byte_count", orNull(constantBytes(table))},
            {"essence_bytes", orNull(table.essenceBytes)},
            {"edit_units", coveredCount(table)},
            {"covered", rangesJson(table.covered)},
            {"gaps", rangesJson(table.gaps())},
            {"key_frames", entryCount(table) != 0 ? Json(keyFrames(table)) : Json(nullptr)},
            {"segments", std::move(segments)}};
}

Json faultsJson(IndexSurvey const& survey) {
    Json faults = Json::array();
    for (auto const& fault : survey.faults)
        faults.push_back(toJson(std::optional(fault)));
    return faults;
}

void printJson(std::string const& file, IndexSurvey const& survey,
               std::vector<IndexDisagreement> const& disagreements) {
    Json report = jsonReport();
    report["file"] = file;
    report["tables"] = Json::array();
    for (auto const& table : survey.tables)
        report["tables"].push_back(tableJson(table));
    report["disagreements"] = Json::array();
    for (auto const& [indexSID, bodySID, offset, message] : disagreements)
        report["disagreements"].push_back({{"index_sid", orNull(indexSID)},
                                           {"body_sid", orNull(bodySID)},
                                           {"offset", orNull(offset)},
                                           {"message", message}});
    report["faults"] = faultsJson(survey);
    print(report);
}

void printCsv(IndexSurvey const& survey) {
    std::cout << "index_sid,body_sid,edit_rate,start,duration,edit_unit_byte_count,entries,delta_entries,"
                 "slice_count,pos_table_count,offset,partition,repeat_of\n";
    for (auto const& table : survey.tables)
        for (auto const& segment : table.segments) {
            std::string line;
            Json const row = segmentJson(table, segment);
            for (auto const& [name, value] : row.items()) {
                line += line.empty() ? "" : ",";
                if (!value.is_null())
                    line += value.is_string() ? value.get<std::string>() : value.dump();
            }
            std::cout << line << "\n";
        }
}

void printSegments(FoundTable const& table) {
    constexpr auto right = Table::Align::Right;
    Table rows({{"segment", right},
                {"offset", right},
                {"partition", right},
                {"start", right},
                {"duration", right},
                {"bytes each", right},
                {"entries", right},
                {"deltas", right},
                {"slices", right},
                {"repeat of", right}});
    for (std::size_t i = 0; i < table.segments.size(); ++i) {
        auto const& segment = table.segments[i];
        rows.add({std::to_string(i), table.isRebuilt ? "-" : hex(segment.offset),
                  table.isRebuilt ? "-" : std::to_string(segment.partition), std::to_string(segment.start),
                  std::to_string(segment.duration),
                  segment.editUnitByteCount != 0 ? grouped(segment.editUnitByteCount) : "vary",
                  grouped(segment.entries), grouped(segment.deltaEntries),
                  std::to_string(segment.sliceCount + 1),
                  segment.repeatOf ? std::to_string(*segment.repeatOf) : ""});
    }
    rows.print(std::cout);
}

void printTable(FoundTable const& table) {
    EditRate const rate = table.table->editRate();
    std::uint64_t const covered = coveredCount(table);
    auto const bytes = constantBytes(table);
    std::cout << "index table           " << table.name() << (table.isRebuilt ? ", rebuilt" : "")
              << "\nedit rate             " << rateText(rate);
    if (rate.denominator != 0 && rate.denominator != 1)
        std::cout << " (" << rationalText(rate) << ")";
    std::cout << "\nbytes of edit units   " << (bytes ? "constant, " + grouped(*bytes) : "variable")
              << "\nessence               "
              << (table.essenceBytes ? grouped(*table.essenceBytes) + " bytes" : "none in this file")
              << "\ncoverage              " << grouped(covered)
              << (covered == 1 ? " edit unit" : " edit units");
    if (!table.covered.empty())
        std::cout << ", " << rangesText(table.covered);
    std::cout << "\ngaps                  " << rangesText(table.gaps()) << "\n";
    if (entryCount(table) != 0)
        std::cout << "key frames            " << grouped(keyFrames(table)) << "\n";
    printSegments(table);
}

void printText(IndexSurvey const& survey, std::vector<IndexDisagreement> const& disagreements) {
    bool first = true;
    for (auto const& table : survey.tables) {
        std::cout << (first ? "" : "\n");
        printTable(table);
        first = false;
    }
    if (survey.tables.empty() && !survey.partitions.partitions.empty())
        std::cout << "no index table\n";
    if (!disagreements.empty())
        std::cout << "\n";
    for (auto const& [indexSID, bodySID, offset, message] : disagreements)
        std::cout << "! " << (offset ? "segment at " + hex(*offset) + ": " : "") << message << "\n";
}

Json differenceJson(IndexDifference const& difference) {
    Json first = Json::array();
    for (auto const& [position, own, rebuilt] : difference.first)
        first.push_back({{"edit_unit", position}, {"own", own}, {"rebuilt", rebuilt}});
    return {{"kind", difference.kind}, {"count", difference.count}, {"first", std::move(first)}};
}

/// Null when the file has no table to compare.
Json comparisonJson(IndexComparison const& comparison) {
    if (!comparison.hasOwn)
        return nullptr;
    Json differences = Json::array();
    for (auto const& difference : comparison.differences)
        differences.push_back(differenceJson(difference));
    return {{"equal", comparison.isEqual()},
            {"edit_units", comparison.units},
            {"differences", std::move(differences)},
            {"notes", comparison.notes}};
}

void printRebuiltJson(std::string const& file, RebuiltIndex const& rebuilt) {
    Json report = jsonReport();
    report["file"] = file;
    report["rebuilt"] = true;
    report["tables"] = Json::array();
    for (std::size_t i = 0; i < rebuilt.survey.tables.size(); ++i) {
        report["tables"].push_back(tableJson(rebuilt.survey.tables[i]));
        report["tables"].back()["comparison"] = comparisonJson(rebuilt.comparisons[i]);
    }
    report["notes"] = rebuilt.notes;
    report["faults"] = faultsJson(rebuilt.survey);
    print(report);
}

void printDifference(IndexDifference const& difference) {
    std::cout << "! " << difference.kind << ": " << grouped(difference.count)
              << (difference.count == 1 ? " differs" : " differ") << "\n";
    for (auto const& [position, own, rebuilt] : difference.first)
        std::cout << "    edit unit " << position << ": " << own << ", rebuilt " << rebuilt << "\n";
    if (difference.count > difference.first.size())
        std::cout << "    and " << grouped(difference.count - difference.first.size()) << " more\n";
}

void printComparison(IndexComparison const& comparison) {
    std::cout << "\n";
    if (!comparison.hasOwn)
        std::cout << "the file has no index table of this essence\n";
    else if (comparison.isEqual())
        std::cout << "the file's own index table says the same of " << grouped(comparison.units)
                  << (comparison.units == 1 ? " edit unit\n" : " edit units\n");
    else
        std::cout << "the file's own index table differs\n";
    for (auto const& difference : comparison.differences)
        printDifference(difference);
    for (auto const& note : comparison.notes)
        std::cout << "  " << note << "\n";
}

void printRebuiltText(RebuiltIndex const& rebuilt) {
    for (std::size_t i = 0; i < rebuilt.survey.tables.size(); ++i) {
        std::cout << (i == 0 ? "" : "\n");
        printTable(rebuilt.survey.tables[i]);
        printComparison(rebuilt.comparisons[i]);
    }
    if (rebuilt.survey.tables.empty() && rebuilt.notes.empty() &&
        !rebuilt.survey.partitions.partitions.empty())
        std::cout << "no essence\n";
    for (auto const& note : rebuilt.notes)
        std::cout << note << "\n";
}

} // namespace

void printIndexReport(std::string const& file, IndexSurvey const& survey,
                      std::vector<IndexDisagreement> const& disagreements, IndexFormat format) {
    if (format == IndexFormat::AsJson)
        printJson(file, survey, disagreements);
    else if (format == IndexFormat::AsCsv)
        printCsv(survey);
    else
        printText(survey, disagreements);
}

void printRebuiltReport(std::string const& file, RebuiltIndex const& rebuilt, IndexFormat format) {
    if (format == IndexFormat::AsJson)
        printRebuiltJson(file, rebuilt);
    else if (format == IndexFormat::AsCsv)
        printCsv(rebuilt.survey);
    else
        printRebuiltText(rebuilt);
}

} // namespace Zelm
