/// `zelm frames FILE`: one line for each edit unit.
#include "FrameList.h"
#include "StandardStreams.h"
#include "TrackChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class FramesCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", request_.file, "The file; - for standard input")->required();
        parser
            .add_option("--track", request_.track,
                        "One track: v1, a2, d1 (picture, sound, data), its ID, or its number as zelm info "
                        "shows it; sizes and offsets are then those of its essence")
            ->type_name("TRACK")
            ->check([](std::string const& text) {
                return isTrackName(text) ? "" : "\"" + text + "\" names no track";
            });
        parser
            .add_option("--range", range_,
                        "The edit units from A to before B, or from one timecode to before another; either "
                        "may be left out")
            ->type_name("A:B|TIMECODE-TIMECODE")
            ->check([](std::string const& text) {
                return parseRange(text) ? "" : "\"" + text + "\" is no range of edit units or timecodes";
            });
        parser.add_flag("--display", request_.display,
                        "List, and count --range, in the order in which they are shown");
        auto* const csv = parser.add_flag("--csv", csv_, "Print comma-separated values");
        options_.declare(parser);
        csv->excludes("--json");
        parser.footer(
            "\nColumns: position as stored and as shown, both from 0; timecode when shown; key frame (K, . "
            "for "
            "none);\npicture type; bytes and file offset of the whole edit unit, with --track of the track's "
            "essence alone;\nflags of the index entry. What is not known is -.\n"
            "\nExamples:\n"
            "  zelm frames FILE                                     all edit units\n"
            "  zelm frames --track v1 --display FILE                the pictures as they are shown\n"
            "  zelm frames --range 10:00:00:00-10:00:05:00 FILE     five seconds\n"
            "  zelm frames --csv FILE                               for a spreadsheet\n"
            "\nExit status 1: the essence ends early.");
    }

    ExitStatus run() override {
        bool const isPipe = request_.file == standardInputName;
        if (!range_.empty())
            request_.range = *parseRange(range_);
        if (isPipe && request_.display)
            return wrongUse("--display needs a file, not standard input");
        request_.dictionaries = options_.dictionaries;
        auto const printer = makePrinter();
        try {
            return finish(isPipe ? listPipedFrames(request_, *printer) : listFrames(request_, *printer));
        } catch (Exceptions::InvalidValue const& refusal) {
            return wrongUse(refusal.message());
        } catch (Exceptions::InvalidFormat const& refusal) {
            return wrongUse(refusal.message());
        }
    }

private:
    std::unique_ptr<FramePrinter> makePrinter() const {
        return csv_ ? makeFrameCsvPrinter() : options_.json ? makeFrameJsonPrinter() : makeFrameTextPrinter();
    }

    ExitStatus wrongUse(std::string const& message) const {
        reportFault(request_.file, message);
        return WrongUse;
    }

    ExitStatus finish(FrameListEnd const& end) const {
        if (end.fault)
            reportFault(request_.file, end.fault->message, end.fault->offset);
        else if (end.endsEarly)
            reportFault(request_.file, "the essence ends early");
        return end.fault ? NotMXF : end.endsEarly ? FoundSomething : Done;
    }

    FrameRequest request_;
    std::string range_;
    bool csv_ = false;
    ReportOptions options_;
};

} // namespace

std::unique_ptr<Command> makeFramesCommand() { return std::make_unique<FramesCommand>(); }

} // namespace Zelm
