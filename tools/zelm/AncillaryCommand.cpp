/// `zelm ancillary FILE`: VBI lines and ancillary data packets.
#include "AncillaryReport.h"

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class AncillaryCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        auto* const dump =
            parser.add_flag("--dump", dump_, "List all packets, each with its bytes and what they say");
        parser
            .add_flag("--captions", captions_,
                      "Print the text of CEA-608 captions, row by row as it is shown")
            ->excludes(dump);
        parser
            .add_option(
                "--range", range_,
                "The edit units from A to before B, or from one timecode to before another; either may "
                "be left out")
            ->type_name("A:B|TIMECODE-TIMECODE")
            ->check([](std::string const& text) {
                return parseRange(text) ? "" : "\"" + text + "\" is no range of edit units or timecodes";
            });
        options_.declare(parser);
        parser.footer(
            "\nShows what the tracks of VBI and ancillary data (SMPTE 436M) hold: kinds of packets by DID "
            "and\n"
            "SDID, lines of VBI, how many there are, where the first and the last stand, what captions\n"
            "(CEA-708), active format descriptions and timecodes say, and what is wrong with packets.\n"
            "\nExamples:\n"
            "  zelm ancillary FILE                                   what there is\n"
            "  zelm ancillary --dump --range 0:25 FILE               the packets of the first 25 edit units\n"
            "  zelm ancillary --captions FILE                        the text of the captions\n"
            "  zelm ancillary --range 10:00:00:00-10:01:00:00 FILE   one minute\n"
            "\nExit status 1: there are packets with faults.");
    }

    ExitStatus run() override {
        Input input(file_, loadDictionary(options_.dictionaries));
        AncillaryWalk walk(input);
        try {
            if (!range_.empty())
                walk.select(*parseRange(range_));
        } catch (Exceptions::InvalidValue const& refusal) {
            return wrongUse(refusal.message());
        } catch (Exceptions::InvalidFormat const& refusal) {
            return wrongUse(refusal.message());
        }
        auto const printer = makePrinter();
        printer->begin(file_);
        walk.run(*printer);
        printer->end(walk.faults());
        for (auto const& fault : walk.faults())
            reportFault(file_, fault.message, fault.offset);
        return !walk.faults().empty() ? NotMXF : printer->foundFaults() ? FoundSomething : Done;
    }

private:
    std::unique_ptr<AncillaryPrinter> makePrinter() const {
        return dump_       ? makeAncillaryDump(options_.json)
               : captions_ ? makeAncillaryCaptions(options_.json)
                           : makeAncillaryReport(options_.json);
    }

    ExitStatus wrongUse(std::string const& message) const {
        reportFault(file_, message);
        return WrongUse;
    }

    std::string file_, range_;
    bool dump_ = false, captions_ = false;
    ReportOptions options_;
};

} // namespace

std::unique_ptr<Command> makeAncillaryCommand() { return std::make_unique<AncillaryCommand>(); }

} // namespace Zelm
