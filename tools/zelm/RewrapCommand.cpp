/// `zelm rewrap IN -o OUT` and `zelm join A B… -o OUT`: the essence of files in another file, unchanged.
#include "Faults.h"
#include "ForceOption.h"
#include "Json.h"
#include "NewMxfFile.h"
#include "Rewrap.h"
#include "Text.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr std::uint32_t largestKAG = 1u << 20;
constexpr std::uint64_t largestReserve = std::uint64_t{1} << 30;

/// What both have in common.
class CopyCommand : public Command {
protected:
    void declareCommon(CLI::App& parser) {
        parser.add_option("-o,--output", output_, "The new file; - for standard output")
            ->type_name("FILE")
            ->required();
        auto& layout = options_.layout;
        auto const hasEquals = [](std::string const& text) {
            return text.find('=') != std::string::npos ? "" : "\"" + text + "\" has no =";
        };
        parser.add_option("--kag", layout.kagSize, "Alignment grid of packets, in bytes; 1 for no fill")
            ->type_name("BYTES")
            ->check(CLI::Range(1u, largestKAG).description(""));
        parser
            .add_option("--partition-every", layout.partitionEvery,
                        "A new body partition every so many edit units (250) or seconds (10s)")
            ->type_name("N|Ns");
        parser
            .add_option("--index", layout.index,
                        "Where index tables go: footer, body (in body partitions, for what went before), own "
                        "(in partitions of their own), header (edit units of one size)")
            ->type_name("PLACE");
        parser
            .add_option("--reserve", layout.reserve,
                        "Bytes left free behind the header metadata, for later edits")
            ->type_name("BYTES")
            ->check(CLI::Range(std::uint64_t{0}, largestReserve).description(""));
        parser
            .add_option("--meta", layout.metadata,
                        "Give a property of the header metadata a value, as zelm edit --set; may be repeated")
            ->type_name("PATH=VALUE")
            ->allow_extra_args(false)
            ->check(hasEquals);
        parser.add_option("--track-label", layout.trackLabels, "Name a track: v1=Programme; may be repeated")
            ->type_name("TRACK=NAME")
            ->allow_extra_args(false)
            ->check(hasEquals);
        auto* const fresh = parser.add_flag("--new-uids", newUIDs_, "Give packages new UMIDs in any case");
        parser.add_flag("--keep-uids", keepUIDs_, "Keep them, though the packages hold other essence")
            ->excludes(fresh);
        declareForce(parser, file_.force, "Replace a file that is there");
        parser.add_flag("--sync", file_.sync, syncHelp);
        parser.add_flag("--discard", file_.discard, "An interruption leaves no file");
        report_.declare(parser);
    }

    ExitStatus write(std::vector<std::string> const& inputs) {
        options_.uids = newUIDs_    ? RewrapOptions::UIDs::New
                        : keepUIDs_ ? RewrapOptions::UIDs::Kept
                                    : RewrapOptions::UIDs::AsNeeded;
        file_.inputs = inputs;
        try {
            checkNewName(output_, file_);
            return writeFile(inputs);
        } catch (MXFIO::PassThroughSource::Irregular const& fault) {
            if (output_ == OutputFile::standardOutput)
                return reportFault(inputs.front(), fault);
        } catch (FaultyInput const& input) {
            return reportFault(input.file, input.fault);
        } catch (CannotWrite const& refusal) {
            std::cerr << "zelm: " << refusal.what() << "\n";
            return WrongUse;
        } catch (Exceptions::InvalidValue const& refusal) {
            return refuse(inputs, refusal.message());
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& fault) {
            return reportFault(inputs.front(), fault);
        }
        return writeVarying(inputs);
    }

    RewrapOptions options_;
    std::string output_;

private:
    /// Of several files, the message names those that it is about.
    static ExitStatus refuse(std::vector<std::string> const& inputs, std::string const& why) {
        if (inputs.size() == 1)
            reportFault(inputs.front(), why);
        else
            std::cerr << "zelm: " << why << "\n";
        return WrongUse;
    }

    /// The index of the file lies about sizes: once more without it.
    ExitStatus writeVarying(std::vector<std::string> const& inputs) {
        options_.trustsSizes = false;
        file_.force = true; // what was begun
        try {
            return writeFile(inputs);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& fault) {
            return reportFault(inputs.front(), fault);
        }
    }

    bool isTriedAgain(Exceptions::BaseException const& fault) const {
        return options_.trustsSizes && dynamic_cast<MXFIO::PassThroughSource::Irregular const*>(&fault);
    }

    ExitStatus writeFile(std::vector<std::string> const& inputs) {
        Rewrap rewrap(inputs, loadDictionary(report_.dictionaries), options_);
        file_.total = rewrap.inputBytes();
        NewMxfFile file(output_, file_);
        auto const creator = rewrap.creator(file.sink());
        try {
            file.write(*creator);
            file.complete();
        } catch (Exceptions::BaseException const& fault) {
            file.abandon();
            if (!file.partName().empty() && !isTriedAgain(fault))
                reportFault(file.partName(), "is not whole");
            throw;
        }
        return report(rewrap, file);
    }

    ExitStatus report(Rewrap const& rewrap, NewMxfFile const& file) const {
        for (auto const& label : rewrap.unused())
            reportFault(output_, "--track-label: there is no track " + label);
        if (file.hasOpenHeader())
            reportFault(output_, NewMxfFile::openHeaderNote);
        Shortages const shortages = file.wasInterrupted() ? Shortages() : rewrap.shortages();
        if (!file.isStandardOutput())
            report_.json ? printJson(rewrap, file, shortages) : printText(rewrap, file);
        if (file.wasInterrupted())
            reportFault(output_, file.wasDiscarded() ? "interrupted: removed"
                                                     : "interrupted: ends with what was written so far");
        for (auto const& shortage : shortages)
            reportFault(shortage.file, shortage.what);
        return file.wasInterrupted() ? SystemFailed : shortages.empty() ? Done : FoundSomething;
    }

    static std::string unitsText(RewrappedContainer const& container) {
        auto const units = container.units();
        std::string text = grouped(static_cast<std::uint64_t>(units)) +
                           (units == 1 ? " edit unit" : " edit units") +
                           (container.isClip ? " in one clip" : "");
        if (container.preCharge != 0)
            text += ", " + std::to_string(container.preCharge) + " of them before the first that is shown";
        return text;
    }

    void printText(Rewrap const& rewrap, NewMxfFile const& file) const {
        if (file.wasDiscarded())
            return;
        std::cout << output_ << ": " << humanSize(file.bytes()) << ", "
                  << MXF::ZelmDictionary::labelName(rewrap.pattern()) << "\n";
        for (auto const& container : rewrap.containers())
            std::cout << "  BodySID " << container.bodySID << ": " << container.tracks
                      << (container.tracks == 1 ? " track, " : " tracks, ") << unitsText(container) << "\n";
    }

    void printJson(Rewrap const& rewrap, NewMxfFile const& file, Shortages const& shortages) const {
        Json containers = Json::array();
        for (auto const& container : rewrap.containers())
            containers.push_back({{"body_sid", container.bodySID},
                                  {"tracks", container.tracks},
                                  {"wrapping", container.isClip ? "clip" : "frame"},
                                  {"edit_units", container.units()},
                                  {"pre_charge", container.preCharge},
                                  {"edit_rate", std::to_string(container.rate.numerator) + "/" +
                                                    std::to_string(container.rate.denominator)}});
        Json missing = Json::array();
        for (auto const& shortage : shortages)
            missing.push_back({{"file", shortage.file}, {"what", shortage.what}});
        Json report = jsonReport();
        report["file"] = output_;
        report["size"] = file.bytes();
        report["seconds"] = file.seconds();
        report["operational_pattern"] = toJson(rewrap.pattern().key());
        report["containers"] = containers;
        report["missing"] = missing;
        report["interrupted"] = file.wasInterrupted();
        print(report);
    }

    bool newUIDs_ = false, keepUIDs_ = false;
    NewFileOptions file_;
    ReportOptions report_;
};

class RewrapCommand : public CopyCommand {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file")->required();
        auto& layout = options_.layout;
        parser
            .add_option("--track", options_.tracks,
                        "A track to keep: v1, a2, d1, track ID or number as zelm info shows them; may be "
                        "repeated. Others are left out")
            ->type_name("TRACK")
            ->allow_extra_args(false);
        parser.add_option("--without", options_.without, "A track to leave out; may be repeated")
            ->type_name("TRACK")
            ->allow_extra_args(false);
        parser
            .add_option("--range", range_,
                        "The edit units from A to before B, in the order in which they are shown, from 0 "
                        "(100:200), or from timecode A to before B (10:00:00:00-10:00:05:00); either side "
                        "may be left out")
            ->type_name("A:B|A-B")
            ->check([](std::string const& text) {
                return parseRange(text)
                           ? ""
                           : "\"" + text + "\" is neither a range A:B of edit units nor A-B of timecodes";
            });
        parser.add_option("--pattern", layout.pattern, "The operational pattern: " + patternNames())
            ->type_name("NAME");
        auto* const frames =
            parser.add_flag("--frame", layout.frame, "Wrap sound that is one clip by edit units");
        parser.add_flag("--clip", layout.clip, "Wrap sound as one clip")->excludes(frames);
        parser
            .add_option("--rate", layout.rate,
                        "With --frame, edit units a second where nothing tells: 25, 30000/1001, 29.97")
            ->type_name("RATE");
        parser.add_flag("--system-item", layout.systemItem,
                        "A system item with timecode in content packages that have none");
        declareCommon(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        if (!range_.empty())
            options_.range = parseRange(range_);
        return write({file_});
    }

private:
    static constexpr const char* footer =
        "\nWhat is not asked for stays as near to the file as can be: pattern, alignment, wrapping, the "
        "length of\n"
        "body partitions, the place of index tables; names, timecode, descriptive and private metadata. "
        "Essence of\n"
        "any kind is taken, known or not, and not changed. A range of pictures that need others begins with "
        "those;\n"
        "players pass over them (Origin). Packages that hold less than before get new UMIDs.\n"
        "--pattern op1b gives each track a file package of its own; op1a puts the tracks of packages that "
        "play at\n"
        "once into one, and so packages that play whole, one after another. A range where packages play one "
        "after\n"
        "another cuts each of them; its edit units count from the start of what is played.\n"
        "\nExamples:\n"
        "  zelm rewrap clip.mxf -o clip-2.mxf --partition-every 10s --index body\n"
        "  zelm rewrap clip.mxf -o part.mxf --range 10:00:00:00-10:00:05:00\n"
        "  zelm rewrap clip.mxf -o picture.mxf --track v1 --pattern atom\n"
        "  zelm rewrap sound.mxf -o frames.mxf --frame --rate 25\n"
        "  zelm rewrap clip.mxf -o apart.mxf --pattern op1b --clip\n"
        "\nExit status 1: the essence ends early, or header metadata is damaged; what is whole was written.";

    std::string file_, range_;
};

class JoinCommand : public CopyCommand {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", files_, "The files, two or more")->required();
        parser.add_flag("--playlist", options_.isPlaylist,
                        "Keep the file packages of each, and play them one after another (op2a)");
        declareCommon(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        if (files_.size() < 2) {
            std::cerr << "zelm: join: two files or more are needed\n";
            return WrongUse;
        }
        return write(files_);
    }

private:
    static constexpr const char* footer =
        "\nThe essence of the files is put one after the other into one file package. It has to be alike: "
        "what\n"
        "differs is named. Timecode, names and other metadata are those of the first file.\n"
        "With --playlist each file keeps its file packages with all that belongs to them, and may have other "
        "essence;\n"
        "the material packages need tracks of the same kinds and edit rates.\n"
        "\nExamples:\n"
        "  zelm join reel-1.mxf reel-2.mxf -o whole.mxf\n"
        "  zelm join --playlist leader.mxf programme.mxf -o show.mxf\n"
        "\nExit status 1: essence ends early, or header metadata is damaged; what is whole was written.";

    std::vector<std::string> files_;
};

} // namespace

std::unique_ptr<Command> makeRewrapCommand() { return std::make_unique<RewrapCommand>(); }
std::unique_ptr<Command> makeJoinCommand() { return std::make_unique<JoinCommand>(); }

} // namespace Zelm
