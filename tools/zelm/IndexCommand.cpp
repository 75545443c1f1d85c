/// `zelm index FILE`: the index tables of a file, and where edit units lie.
#include "ForceOption.h"
#include "IndexPlot.h"
#include "IndexReport.h"
#include "MetadataChoice.h"
#include "UnitRange.h"

#include <algorithm>
#include <charconv>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

std::optional<std::uint64_t> parseOffset(std::string_view text) {
    bool const isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint64_t offset = 0;
    auto const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, offset, isHexadecimal ? 16 : 10);
    return error == std::errc() && stop == end ? std::optional(offset) : std::nullopt;
}

class IndexCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        auto* const at =
            parser
                .add_option("--at", at_,
                            "Where edit unit N lies, in stored order from 0, or what is shown at a timecode "
                            "of the material package (10:00:00:00, or 10:00:00;00 for drop frame)")
                ->type_name("N|TIMECODE");
        auto* const list =
            parser.add_option("--list", list_, "The edit units from A to before B; either may be left out")
                ->type_name("A:B")
                ->check([](std::string const& text) {
                    return parseUnits(text) ? "" : "\"" + text + "\" is no range A:B of edit units";
                });
        list->excludes(at);
        parser
            .add_option("--at-offset", offsetText_,
                        "What holds a byte of the file: decimal, or hexadecimal after 0x")
            ->type_name("BYTES")
            ->check([](std::string const& text) {
                return parseOffset(text) ? "" : "\"" + text + "\" is no number of bytes";
            })
            ->excludes(at)
            ->excludes(list);
        parser.add_flag(
            "--display", display_,
            "The numbers of --at and --list count edit units in the order in which they are shown");
        auto* const csv = parser.add_flag("--csv", csv_,
                                          "Print comma-separated values: a row for each edit unit of --list, "
                                          "or else for each segment");
        declareWhichTables(parser);
        auto* const plot = parser.add_option("--plot", plot_, "Draw the bytes of the edit units, as SVG");
        plot->type_name("OUT.svg")->excludes(at)->excludes(list)->excludes(csv);
        declareForce(parser, force_, "Replace OUT.svg if it is there", plot);
        options_.declare(parser);
        plot->excludes("--json");
        csv->excludes("--json")->excludes(at);
        parser.footer(
            "\nExamples:\n"
            "  zelm index FILE                          the tables, and what does not agree\n"
            "  zelm index --at 250 FILE                 where edit unit 250 lies\n"
            "  zelm index --at 10:00:10:00 FILE         what is shown at that timecode\n"
            "  zelm index --list 0:25 --display FILE    the first 25 as they are shown\n"
            "  zelm index --list : --csv FILE           all of them, for a spreadsheet\n"
            "  zelm index --plot sizes.svg FILE         a picture of their sizes\n"
            "  zelm index --at-offset 0x1A400 FILE      which edit unit holds that byte of the file\n"
            "  zelm index --rebuild FILE                the tables that the essence gives; is the "
            "file's own the same?\n"
            "\nExit status 1: the tables disagree with the file or, with --rebuild, differ from those "
            "made anew.");
    }

    ExitStatus run() override {
        bool const isTimecode = at_.find(':') != std::string::npos;
        auto const number = parseUnit(at_);
        if (!at_.empty() && !isTimecode && !number) {
            reportFault(file_, "'" + at_ + "' is neither an edit unit nor a timecode");
            return WrongUse;
        }
        if (!offsetText_.empty())
            offset_ = parseOffset(offsetText_);
        Input input(file_, loadDictionary(options_.dictionaries));
        MXFIO::Partition::MetadataPtr metadata;
        auto const own = findTables(input, metadata);
        RebuiltIndex const rebuilt = rebuild_ ? rebuildIndex(input, own, metadata) : RebuiltIndex();
        IndexSurvey const& survey = rebuild_ ? rebuilt.survey : own;
        ExitStatus status = Done;
        if (!list_.empty())
            listUnits(file_, survey, *parseUnits(list_), display_, format());
        else if (!plot_.empty())
            status = plot(input, survey);
        else if (!at_.empty())
            status = showUnits(input, survey, number.value_or(0), isTimecode);
        else if (offset_)
            status = showUnitsAtOffset(survey);
        else
            status = rebuild_ ? report(rebuilt) : report(input, own, metadata.get());
        for (auto const& fault : survey.faults)
            reportFault(file_, fault.message, fault.offset);
        return survey.faults.empty() ? status : NotMXF;
    }

private:
    using Queries = std::vector<std::optional<UnitQuery>>; // one for each table; none where it knows nothing

    void declareWhichTables(CLI::App& parser) {
        parser.add_flag(
            "--everywhere", everywhere_,
            "Look for segments amid essence too, as is done in any case where a table has gaps: reads "
            "the keys of the whole file");
        parser.add_flag(
            "--rebuild", rebuild_,
            "Make the tables anew by walking over the essence, and compare the file's own with them: "
            "where edit units and their elements begin, and of MPEG video and AVC the flags, temporal "
            "and key frame offsets. Sound in one clip is cut by the size of its samples, other clips "
            "by the duration of the track. The other options then show the tables made anew");
    }

    IndexFormat format() const {
        return options_.json ? IndexFormat::AsJson : csv_ ? IndexFormat::AsCsv : IndexFormat::AsText;
    }

    /// The tables of the file, and its metadata, null when that cannot be read or is of no use.
    IndexSurvey findTables(Input& input, MXFIO::Partition::MetadataPtr& metadata) const {
        auto survey = surveyIndex(input, everywhere_ || rebuild_);
        auto const hasGaps = [](FoundTable const& table) { return !table.gaps().empty(); };
        if (std::any_of(survey.tables.begin(), survey.tables.end(), hasGaps))
            survey = surveyIndex(input, true);
        bool const isWanted = rebuild_ || (list_.empty() && at_.empty() && !offset_);
        try {
            if (isWanted && !survey.partitions.partitions.empty())
                metadata = chooseFinal(input, false).partition->metadata();
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            survey.faults.push_back({failure.message(), failure.offset().value_or(0)});
        }
        for (auto const& table : survey.tables)
            if (table.fault && !survey.partitions.fault)
                survey.faults.push_back(*table.fault);
        return survey;
    }

    ExitStatus report(Input& input, IndexSurvey const& survey,
                      Metadata::PartitionMetadata const* metadata) const {
        auto const disagreements = checkIndex(input, survey, metadata);
        printIndexReport(file_, survey, disagreements, format());
        return disagreements.empty() ? Done : FoundSomething;
    }

    ExitStatus report(RebuiltIndex const& rebuilt) const {
        printRebuiltReport(file_, rebuilt, format());
        bool const differs = std::any_of(
            rebuilt.comparisons.begin(), rebuilt.comparisons.end(),
            [](IndexComparison const& comparison) { return comparison.hasOwn && !comparison.isEqual(); });
        return differs ? FoundSomething : Done;
    }

    /// What holds byte `offset_` of the file.
    ExitStatus showUnitsAtOffset(IndexSurvey const& survey) const {
        Queries queries;
        for (auto const& table : survey.tables)
            queries.push_back(unitAtFileOffset(table, *offset_));
        bool const found = options_.json ? printJson(survey, queries) : printText(survey, queries);
        if (!found)
            reportFault(file_, "no edit unit of an index table holds that byte", *offset_);
        return found ? Done : WrongUse;
    }

    /// A timecode says what is shown: it counts in display order in any case.
    ExitStatus showUnits(Input& input, IndexSurvey const& survey, std::int64_t number,
                         bool isTimecode) const {
        if (survey.partitions.partitions.empty())
            return NotMXF;
        Queries queries;
        try {
            auto const info = isTimecode ? gatherInfo(input) : FileInfo();
            for (auto const& table : survey.tables)
                queries.push_back(
                    UnitQuery{isTimecode ? UnitTimecodes(info, table.table->editRate()).unitAt(at_) : number,
                              display_ || isTimecode});
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            reportFault(file_, failure.message());
            return WrongUse;
        }
        bool const found = options_.json ? printJson(survey, queries) : printText(survey, queries);
        if (!found)
            reportFault(file_,
                        "no index table leads to " + (isTimecode ? "" : std::string("edit unit ")) + at_);
        return found ? Done : WrongUse;
    }

    bool printText(IndexSurvey const& survey, Queries const& queries) const {
        bool found = false;
        for (std::size_t i = 0; i < queries.size(); ++i) {
            if (!queries[i])
                continue;
            std::cout << (found ? "\n" : "");
            found = printUnitText(survey.tables[i], *queries[i]) || found;
        }
        return found;
    }

    bool printJson(IndexSurvey const& survey, Queries const& queries) const {
        Json answer = jsonReport();
        answer["file"] = file_;
        answer["edit_units"] = Json::array();
        for (std::size_t i = 0; i < queries.size(); ++i)
            if (Json unit = queries[i] ? unitJson(survey.tables[i], *queries[i]) : Json(nullptr);
                !unit.is_null())
                answer["edit_units"].push_back(std::move(unit));
        print(answer);
        return !answer["edit_units"].empty();
    }

    ExitStatus plot(Input& input, IndexSurvey const& survey) const {
        try {
            plotIndex(input, survey, plot_, force_);
        } catch (Exceptions::InvalidValue const& refusal) {
            reportFault(file_, refusal.message());
            return WrongUse;
        }
        return Done;
    }

    std::string file_, at_, list_, offsetText_, plot_;
    std::optional<std::uint64_t> offset_;
    bool force_ = false;
    bool display_ = false;
    bool csv_ = false;
    bool everywhere_ = false;
    bool rebuild_ = false;
    ReportOptions options_;
};

} // namespace

std::unique_ptr<Command> makeIndexCommand() { return std::make_unique<IndexCommand>(); }

} // namespace Zelm
