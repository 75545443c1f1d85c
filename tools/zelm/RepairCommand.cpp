/// `zelm repair FILE`: makes a file whole that was cut off, in place or as a new one, or tells what is wrong.
#include "Faults.h"
#include "ForceOption.h"
#include "Input.h"
#include "Json.h"
#include "Progress.h"
#include "Text.h"
#include "UndoOptions.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/Repairer.h>

#include <iostream>
#include <optional>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr const char* footer = R"(
A recording that was never finished, or a copy that was broken off, keeps what is whole of it: the essence up
to the last whole content package. It gets a footer partition with durations and index tables, and a random
index pack; of a file in which only these are missing or wrong, only these are made. What was dropped at the
end is covered by fill in place, and left out of a new file.

Examples:
  zelm repair recording.mxf --check            what is wrong? status 1: something is
  zelm repair recording.mxf -o whole.mxf       a new file; the old one stays as it is
  zelm repair recording.mxf --in-place         adds to the file, essence stays where it stands
  zelm repair recording.mxf --restore          after a kill or a crash amid that: as it was before)";

std::string bytesText(std::uint64_t bytes) { return grouped(bytes) + (bytes == 1 ? " byte" : " bytes"); }

/// Progress of one piece of work after another, each with a line of its own.
class Steps {
public:
    std::function<bool(std::uint64_t, std::uint64_t)> step(std::string action) {
        return [this, action = std::move(action)](std::uint64_t done, std::uint64_t total) {
            if (!progress_ || action != action_ || total != total_) {
                progress_.reset();
                progress_.emplace(action, total);
                action_ = action;
                total_ = total;
            }
            progress_->update(done);
            return true;
        };
    }

    void end() { progress_.reset(); }

private:
    std::optional<Progress> progress_;
    std::string action_;
    std::uint64_t total_ = 0;
};

class RepairCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        auto* const check = parser.add_flag("--check", check_, "Only tell what is wrong");
        auto* const inPlace =
            parser.add_flag("--in-place", inPlace_, "Repair the file itself")->excludes(check);
        auto* const output =
            parser.add_option("-o,--output", output_, "Write the repaired file as a new one")
                ->type_name("FILE")
                ->excludes(check)
                ->excludes(inPlace);
        declareForce(parser, force_, "With -o: replace a file that is there", output);
        undo_.declare(parser);
        report_.declare(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        try {
            if (undo_.isAsked())
                return undo_.run(file_);
            if (!check_ && !inPlace_ && output_.empty())
                throw Exceptions::InvalidValue("nothing to do: give --check, --in-place or -o");
            UndoOptions::requireNone(file_);
            return repair();
        } catch (Exceptions::InvalidValue const& refusal) {
            reportFault(file_, refusal.message());
        } catch (Exceptions::InvalidChange const& refusal) {
            reportRefusal({file_, output_}, refusal.message());
        } catch (Exceptions::InvalidFormat const&) {
            throw; // a dictionary
        } catch (Exceptions::BaseException const& fault) {
            return reportFault(file_, fault);
        }
        return WrongUse;
    }

private:
    ExitStatus repair() const {
        Steps steps;
        MXFIO::Repairer repairer(std::string_view(file_), loadDictionary(report_.dictionaries), searchLimit,
                                 {steps.step("walking over " + file_)});
        std::optional<MXFIO::RepairReport> done;
        if (!repairer.isSound() && inPlace_)
            done = repairer.writeInPlace();
        else if (!repairer.isSound() && !output_.empty())
            done = writeNewFile(repairer, steps);
        steps.end();
        report_.json ? printJson(repairer, done) : printText(repairer, done);
        return check_ && !repairer.isSound() ? FoundSomething : Done;
    }

    MXFIO::RepairReport writeNewFile(MXFIO::Repairer& repairer, Steps& steps) const {
        requireFree(output_, force_);
        auto const existing =
            force_ ? MXFIO::NewFileOptions::Existing::Replace : MXFIO::NewFileOptions::Existing::Refuse;
        return repairer.writeToFile(std::string_view(output_),
                                    {existing, 0, false, steps.step("writing " + output_)});
    }

    void printText(MXFIO::Repairer const& repairer, std::optional<MXFIO::RepairReport> const& done) const {
        if (repairer.isSound()) {
            std::cout << file_ << ": nothing is wrong" << (check_ ? "" : "; nothing was written") << "\n";
            return;
        }
        for (auto const& finding : repairer.findings())
            std::cout << "! " << faultText(finding.message, finding.offset) << "\n";
        std::cout << "\n";
        for (auto const& container : repairer.containers())
            printContainer(container);
        std::cout << bytesText(repairer.keptBytes()) << (done ? " kept, " : " can be kept, ")
                  << bytesText(repairer.droppedBytes())
                  << (done ? " at the end replaced\n" : " at the end would be replaced\n");
        if (done)
            std::cout << (inPlace_ ? file_ : output_) << ": " << bytesText(done->bytesAppended)
                      << " written behind them, " << bytesText(done->bytesChanged)
                      << " changed in packs and header metadata; " << bytesText(done->fileSize)
                      << " in all\n";
    }

    static void printContainer(MXFIO::RepairedContainer const& container) {
        std::cout << "BodySID " << container.bodySID << ": ";
        if (container.editUnits)
            std::cout << grouped(static_cast<std::uint64_t>(*container.editUnits)) << " whole edit "
                      << (*container.editUnits == 1 ? "unit" : "units");
        else
            std::cout << "a clip of which nothing tells where its edit units begin";
        if (container.indexMade != 0)
            std::cout << ", " << grouped(static_cast<std::uint64_t>(container.indexMade))
                      << " of them newly indexed";
        std::cout << "\n";
    }

    void printJson(MXFIO::Repairer const& repairer, std::optional<MXFIO::RepairReport> const& done) const {
        Json json = jsonReport();
        json["file"] = file_;
        json["output"] = output_.empty() ? Json(nullptr) : Json(output_);
        json["in_place"] = inPlace_;
        json["sound"] = repairer.isSound();
        json["findings"] = Json::array();
        for (auto const& finding : repairer.findings())
            json["findings"].push_back({{"code", MXFIO::nameOf(finding.code)},
                                        {"offset", orNull(finding.offset)},
                                        {"message", finding.message}});
        json["containers"] = Json::array();
        for (auto const& container : repairer.containers())
            json["containers"].push_back({{"body_sid", container.bodySID},
                                          {"index_sid", container.indexSID},
                                          {"edit_units", orNull(container.editUnits)},
                                          {"index_kept", container.indexKept},
                                          {"index_made", container.indexMade}});
        json["kept_bytes"] = repairer.keptBytes();
        json["dropped_bytes"] = repairer.droppedBytes();
        json["changed_durations"] = repairer.changes().size();
        json["written"] = done.has_value();
        json["bytes_changed"] = done ? done->bytesChanged : 0;
        json["bytes_appended"] = done ? done->bytesAppended : 0;
        json["file_size"] = done ? Json(done->fileSize) : Json(nullptr);
        print(json);
    }

    std::string file_, output_;
    bool check_ = false, inPlace_ = false, force_ = false;
    UndoOptions undo_;
    ReportOptions report_;
};

} // namespace

std::unique_ptr<Command> makeRepairCommand() { return std::make_unique<RepairCommand>(); }

} // namespace Zelm
