/// `zelm edit FILE`: changes properties of the header metadata, in place or into a new file.
#include "EditReport.h"
#include "Faults.h"
#include "ForceOption.h"
#include "Input.h"
#include "MetadataEditor.h"
#include "Progress.h"
#include "UndoOptions.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/Updater.h>

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr const char* footer = R"(
A PATH names a set, and then, after slashes, what is below it and at last a property:
  Preface/OperationalPattern   MaterialPackage/Name   MaterialPackage/Track[2]/TrackName
  SourcePackage[1]/Descriptor/StoredWidth             Identification[last]/CompanyName
Sets are called by their class, properties by their names in SMPTE 377M or in the registers; the case of
letters does not count. Numbers are from 1; [last] and [*] (all) may stand for one. Steps between may be left
out where no doubt is left. --paths lists the paths of a file.

A VALUE is a text, number, true or false, rational (30000/1001), date (2026-03-01T12:30:00Z, now), label or
enumerated value (by name), UUID or UMID, bytes (0x01FF), or a list of them: a, b or ["a", "b"].

A framework (SMPTE 380M) is clip, scene or production, with properties by their names, in which the kind may
be left out. A clip framework describes the first essence track, the others the whole package; track=ID names
another track. zelm dump --frameworks shows what there is.

Examples:
  zelm edit clip.mxf --paths
  zelm edit clip.mxf --set 'MaterialPackage/Name=Evening news' --dry-run
  zelm edit clip.mxf --set 'MaterialPackage/Track[2]/TrackName=Left' --in-place
  zelm edit clip.mxf --unset SourcePackage/Name -o clip-2.mxf
  zelm edit clip.mxf --add-framework 'clip:kind=Moving Pictures,number=A001C003' -o clip-2.mxf)";

class EditCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        parser.add_option("--set", sets_, "Give a property a value; may be repeated")
            ->type_name("PATH=VALUE")
            ->allow_extra_args(false)
            ->check([](std::string const& text) {
                return text.find('=') != std::string::npos ? "" : "\"" + text + "\" is not PATH=VALUE";
            });
        parser.add_option("--unset", unsets_, "Take a property away; may be repeated")
            ->type_name("PATH")
            ->allow_extra_args(false);
        parser
            .add_option("--add-framework", frameworks_,
                        "Add descriptive metadata to the material package: a clip, scene or production "
                        "framework; may be repeated")
            ->type_name("KIND[:NAME=VALUE,...]")
            ->allow_extra_args(false);
        auto* const inPlace = parser.add_flag("--in-place", inPlace_, "Write the changes into the file");
        auto* const output = parser.add_option("-o,--output", output_, "Write a new file")
                                 ->type_name("FILE")
                                 ->excludes(inPlace);
        declareForce(parser, force_, "With -o: replace a file that is there", output);
        parser.add_flag("--dry-run", dryRun_,
                        "Show what would be changed and written; so does a call without --in-place and -o");
        parser.add_flag("--no-history", noHistory_,
                        "Add no Identification set, and leave the dates of modification as they are");
        parser.add_flag("--paths,--list-paths", listPaths_,
                        "List all properties with their paths and values");
        undo_.declare(parser);
        report_.declare(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        try {
            if (undo_.isAsked())
                return undo_.run(file_);
            UndoOptions::requireNone(file_);
            return edit();
        } catch (Exceptions::InvalidValue const& refusal) {
            reportFault(file_, refusal.message());
        } catch (Exceptions::InvalidChange const& refusal) {
            refuse(refusal.message());
        } catch (Exceptions::InvalidFormat const&) {
            throw; // a dictionary
        } catch (Exceptions::BaseException const& fault) {
            return reportFault(file_, fault);
        }
        return WrongUse;
    }

private:
    void refuse(std::string const& message) const {
        bool const hasNoRoom = message.find("do not fit in place") != std::string::npos;
        reportRefusal({file_, output_}, message + (hasNoRoom ? " (-o writes a new file)" : ""));
    }

    ExitStatus edit() const {
        auto const dictionary = loadDictionary(report_.dictionaries);
        ClassTree const classes(*dictionary);
        MXFIO::Updater updater(std::string_view(file_), dictionary, searchLimit);
        if (listPaths_) {
            SetPaths const paths(updater.metadata(), classes);
            report_.json ? printPathsJson(file_, paths) : printPathsText(paths);
            return Done;
        }
        if (sets_.empty() && unsets_.empty() && frameworks_.empty())
            throw Exceptions::InvalidValue("nothing to do: give --set, --unset, --add-framework or --paths");
        change(updater, classes);
        auto const report = write(updater);
        SetPaths const paths(updater.metadata(), classes);
        report_.json ? printEditJson(report, paths) : printEditText(report, paths);
        return Done;
    }

    void change(MXFIO::Updater& updater, ClassTree const& classes) const {
        MetadataEditor editor(updater.metadata(), classes);
        for (auto const& text : sets_) {
            auto const equals = text.find('='); // the check found one
            editor.apply({text.substr(0, equals), text.substr(equals + 1)});
        }
        for (auto const& path : unsets_)
            editor.apply({path, std::nullopt});
        for (auto const& framework : frameworks_)
            editor.addFramework(framework);
        if (editor.hasChanged() && !noHistory_)
            editor.addHistory();
    }

    /// Writes, or tells what would be written.
    EditReport write(MXFIO::Updater& updater) const {
        EditReport report{
            file_, output_, inPlace_, !dryRun_ && (inPlace_ || !output_.empty()), updater.changes(), {},
            {},    0,       0};
        if (!report.written) {
            if (output_.empty())
                report.placePlan = updater.plan();
            if (!output_.empty() || (!inPlace_ && !report.placePlan->fitsInPlace))
                report.filePlan = updater.planNewFile();
            return report;
        }
        auto const done = inPlace_ ? updater.writeInPlace() : writeNewFile(updater);
        report.bytesWritten = done.bytesWritten;
        report.essenceBytesProven = done.essenceBytesProven;
        (inPlace_ ? report.placePlan : report.filePlan) = done.plan;
        return report;
    }

    MXFIO::UpdateReport writeNewFile(MXFIO::Updater& updater) const {
        requireFree(output_, force_);
        std::optional<Progress> progress;
        MXFIO::NewFileOptions options;
        if (force_)
            options.existing = MXFIO::NewFileOptions::Existing::Replace;
        options.progress = [&](std::uint64_t done, std::uint64_t total) {
            if (!progress)
                progress.emplace("writing " + output_, total);
            progress->update(done);
            return true;
        };
        return updater.writeToFile(std::string_view(output_), options);
    }

    std::string file_, output_;
    std::vector<std::string> sets_, unsets_, frameworks_;
    bool inPlace_ = false, force_ = false, dryRun_ = false, noHistory_ = false, listPaths_ = false;
    UndoOptions undo_;
    ReportOptions report_;
};

} // namespace

std::unique_ptr<Command> makeEditCommand() { return std::make_unique<EditCommand>(); }

} // namespace Zelm
