/// `zelm index FILE`: the index tables of a file, and where edit units lie.
#include "IndexReport.h"
#include "MetadataChoice.h"
#include "UnitText.h"

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

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
        parser.add_flag(
            "--display", display_,
            "The numbers of --at and --list count edit units in the order in which they are shown");
        auto* const csv = parser.add_flag("--csv", csv_,
                                          "Print comma-separated values: a row for each edit unit of --list, "
                                          "or else for each segment");
        options_.declare(parser);
        csv->excludes("--json")->excludes(at);
        parser.footer("\nExamples:\n"
                      "  zelm index FILE                          the tables, and what does not agree\n"
                      "  zelm index --at 250 FILE                 where edit unit 250 lies\n"
                      "  zelm index --at 10:00:10:00 FILE         what is shown at that timecode\n"
                      "  zelm index --list 0:25 --display FILE    the first 25 as they are shown\n"
                      "  zelm index --list : --csv FILE           all of them, for a spreadsheet\n"
                      "\nExit status 1: the tables disagree with the file.");
    }

    ExitStatus run() override {
        std::int64_t number = 0;
        bool const isTimecode = at_.find(':') != std::string::npos;
        if (!at_.empty() && !isTimecode && !parseNumber(at_, number)) {
            reportFault(file_, "'" + at_ + "' is neither an edit unit nor a timecode");
            return WrongUse;
        }
        Input input(file_, loadDictionary(options_.dictionaries));
        auto survey = surveyIndex(input);
        for (auto const& table : survey.tables)
            if (table.fault && !survey.partitions.fault)
                survey.faults.push_back(*table.fault);
        ExitStatus status = Done;
        if (!list_.empty())
            listUnits(file_, survey, *parseUnits(list_), display_, format());
        else if (!at_.empty())
            status = showUnits(input, survey, number, isTimecode);
        else
            status = report(input, survey);
        for (auto const& fault : survey.faults)
            reportFault(file_, fault.message, fault.offset);
        return survey.faults.empty() ? status : NotMXF;
    }

private:
    IndexFormat format() const {
        return options_.json ? IndexFormat::AsJson : csv_ ? IndexFormat::AsCsv : IndexFormat::AsText;
    }

    ExitStatus report(Input& input, IndexSurvey& survey) const {
        MXFIO::Partition::MetadataPtr metadata;
        try {
            if (!survey.partitions.partitions.empty())
                metadata = chooseFinal(input, false).partition->metadata();
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            survey.faults.push_back({failure.message(), failure.offset().value_or(0)});
        }
        auto const disagreements = checkIndex(input, survey, metadata.get());
        printIndexReport(file_, survey, disagreements, format());
        return disagreements.empty() ? Done : FoundSomething;
    }

    /// A timecode says what is shown: it counts in display order in any case.
    ExitStatus showUnits(Input& input, IndexSurvey const& survey, std::int64_t number,
                         bool isTimecode) const {
        if (survey.partitions.partitions.empty())
            return NotMXF;
        std::vector<UnitQuery> queries;
        try {
            auto const info = isTimecode ? gatherInfo(input) : FileInfo();
            for (auto const& table : survey.tables)
                queries.push_back({isTimecode ? unitAtTimecode(info, at_, table.table->editRate()) : number,
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

    bool printText(IndexSurvey const& survey, std::vector<UnitQuery> const& queries) const {
        bool found = false;
        for (std::size_t i = 0; i < queries.size(); ++i) {
            std::cout << (found ? "\n" : "");
            found = printUnitText(survey.tables[i], queries[i]) || found;
        }
        return found;
    }

    bool printJson(IndexSurvey const& survey, std::vector<UnitQuery> const& queries) const {
        Json answer = jsonReport();
        answer["file"] = file_;
        answer["edit_units"] = Json::array();
        for (std::size_t i = 0; i < queries.size(); ++i)
            if (Json unit = unitJson(survey.tables[i], queries[i]); !unit.is_null())
                answer["edit_units"].push_back(std::move(unit));
        print(answer);
        return !answer["edit_units"].empty();
    }

    std::string file_, at_, list_;
    bool display_ = false;
    bool csv_ = false;
    ReportOptions options_;
};

} // namespace

std::unique_ptr<Command> makeIndexCommand() { return std::make_unique<IndexCommand>(); }

} // namespace Zelm
