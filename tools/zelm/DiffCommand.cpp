/// `zelm diff A B`: what two files differ in, identifiers, dates and what follows from sizes aside.
#include "Diff.h"
#include "Faults.h"
#include "MetadataChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class DiffCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("A", fileA_, "The one file")->required();
        parser.add_option("B", fileB_, "The other file")->required();
        parser.add_flag("--identifiers", options_.identifiers,
                        "Count instance UIDs, generation UIDs and UMIDs too, which otherwise only have to "
                        "stand for each other throughout");
        parser.add_flag("--dates", options_.dates, "Count dates too");
        parser.add_flag("--history", options_.history,
                        "Count Identification sets that only one of the files has");
        parser.add_flag("--layout", options_.layout,
                        "Show and count offsets, byte counts and file sizes, which follow from the rest");
        auto* const bytes =
            parser.add_flag("--essence-bytes", options_.essenceBytes,
                            "Compare the bytes of the essence too, not keys and lengths only");
        parser
            .add_flag("--no-essence", options_.noEssence,
                      "Leave the essence out: reads only a little of a file")
            ->excludes(bytes);
        parser.add_flag("--brief", brief_, "Print one line only");
        report_.declare(parser);
        parser.footer(
            "\nMetadata sets are compared by their role (the second track of the material package), "
            "not by their\nidentifiers; paths name them as zelm edit does.\n\n"
            "Exit status: 0 equal, 1 different.\n\nExamples:\n"
            "  zelm diff old.mxf new.mxf\n"
            "  zelm diff --no-essence --layout old.mxf new.mxf\n"
            "  zelm diff --essence-bytes --identifiers --dates --history --layout a.mxf copy.mxf");
    }

    ExitStatus run() override {
        auto const dictionary = loadDictionary(report_.dictionaries);
        DiffFindings findings(options_);
        auto const a = open(fileA_, dictionary), b = open(fileB_, dictionary);
        if (!a || !b)
            return NotMXF;
        auto const partitions = diffPartitions(*a, *b, findings);
        diffAllMetadata(*a, *b, partitions, findings);
        diffIndex(*a, *b, findings);
        if (!options_.noEssence)
            diffEssence(*a, *b, findings);
        DiffReport const report{*a, *b, findings};
        if (report_.json)
            printDiffJson(report);
        else
            printDiffText(report, brief_);
        bool const faultyA = reportFaults(*a), faultyB = reportFaults(*b);
        return faultyA || faultyB ? NotMXF : report.equal() ? Done : FoundSomething;
    }

private:
    /// Null, and the fault told, when the file is no MXF file.
    static std::unique_ptr<DiffSide> open(std::string const& file, SharedDictionary const& dictionary) {
        auto side = std::make_unique<DiffSide>(file, dictionary);
        try {
            requireHeader(side->input);
            return side;
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& fault) {
            reportFault(file, fault);
            return nullptr;
        }
    }

    static bool reportFaults(DiffSide const& side) {
        if (side.survey.fault)
            reportFault(side.input.name, side.survey.fault->message, side.survey.fault->offset);
        for (auto const& fault : side.faults)
            reportFault(side.input.name, fault.message, fault.offset);
        return side.survey.fault || !side.faults.empty();
    }

    std::string fileA_, fileB_;
    DiffOptions options_;
    bool brief_ = false;
    ReportOptions report_;
};

} // namespace

std::unique_ptr<Command> makeDiffCommand() { return std::make_unique<DiffCommand>(); }

} // namespace Zelm
