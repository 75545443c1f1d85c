/// `zelm extract FILE -o FOLDER`: the essence of every track in a file of its own.
#include "ExtractReport.h"
#include "ForceOption.h"
#include "Interruption.h"
#include "SoundConversions.h"
#include "StandardStreams.h"

#include <filesystem>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr const char* standardStream = "-";

std::string utf8(std::filesystem::path const& path) {
    auto const text = path.u8string();
    return {text.begin(), text.end()};
}

class ExtractCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", file_, "The file, or - for standard input")->required();
        parser
            .add_option("-o,--output", folder_,
                        "The folder for the files; - writes one track to standard output")
            ->type_name("FOLDER");
        parser
            .add_option("--track", tracks_,
                        "A track: v1, a2, d1 or g2 as --list shows it, v, a, d or g for all of a kind, or "
                        "track ID or number as zelm info shows them; may be repeated")
            ->type_name("TRACK")
            ->allow_extra_args(false);
        parser
            .add_option(
                "--range", range_,
                "The edit units from A to before B, in stored order from 0 (100:200), or what is shown "
                "from timecode A to before B (10:00:00:00-10:00:05:00); either side may be left out")
            ->type_name("A:B|A-B");
        parser.add_flag("--display", display_,
                        "The numbers of --range count edit units in the order in which they are shown");
        parser.add_flag(
            "--mix", mix_,
            "All sounds of the same rate and bits in one Wave file, channels in the order of tracks");
        parser
            .add_option(
                "--as", as_,
                "What sounds are written as: wav, pcm (samples alone), 302m (SMPTE 302M in a transport "
                "stream) or aes3 (SMPTE 331M words of 4 bytes); ancillary data: anc-json, vbi-json or "
                "captions")
            ->type_name("KIND")
            ->check(CLI::IsMember(conversionKinds).description(""));
        auto* const md5 = parser.add_flag("--md5", md5_, "Print the MD5 of each file as md5sum does");
        parser.add_flag("--list,--dry-run", list_, "Show what would be written, and write nothing")
            ->excludes(md5);
        declareForce(parser, force_, "Replace files that are there");
        options_.declare(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        bool const toOutput = folder_ == standardStream;
        if (folder_.empty() && !list_)
            return refuse("-o FOLDER is missing (--list shows what would be written)");
        if (toOutput && (md5_ || options_.json))
            return refuse("with -o - nothing but essence goes to standard output: no --md5 or --json");
        if (!as_.empty() && as_ != "wav" && mix_)
            return refuse("--mix makes Wave files: no --as " + as_);
        if (!as_.empty() && std::any_of(tracks_.begin(), tracks_.end(),
                                        [](std::string const& choice) { return choice[0] == 'g'; }))
            return refuse("generic streams cannot be converted: no --as with --track g");
        try {
            return extract(toOutput);
        } catch (Exceptions::InvalidFormat const& refusal) {
            return refuse(refusal.message());
        }
    }

private:
    static constexpr const char* footer =
        "\nNames are the file's name without its suffix, the track, and a suffix for what it holds:\n"
        "  clip_v1.m2v clip_a1.wav clip_a2.wav clip_d1.xml    pictures, sounds, data in the order of tracks\n"
        "  clip_v1_00000000.j2c …     a file for each edit unit: j2c, jxs, exr, tif, icpf, ffv1, vc5\n"
        "  clip_mix.wav               all sounds, with --mix\n"
        "  clip_g2.xml                generic stream 2; a resource of timed text is named by its UUID\n"
        "A file has .part behind its name until it is whole.\n"
        "\nExamples:\n"
        "  zelm extract clip.mxf -o essence\n"
        "  zelm extract clip.mxf -o essence --track v1 --range 10:00:00:00-10:00:05:00\n"
        "  zelm extract clip.mxf -o - --track a1 | aplay\n"
        "  zelm extract clip.mxf -o essence --track a1 --as 302m\n"
        "  zelm extract clip.mxf -o essence --md5 > essence.md5\n"
        "\nExit status 1: the essence ends early; what is there was extracted.";

    ExitStatus refuse(std::string const& why) const {
        reportFault(file_, why);
        return WrongUse;
    }

    /// What is asked for, as far as the file is not needed to know it.
    ExtractOptions extractOptions(bool toOutput) {
        ExtractOptions options;
        std::filesystem::path const path(std::u8string(file_.begin(), file_.end()));
        std::string const stem = file_ == standardStream ? "essence" : utf8(path.stem());
        options.folder = toOutput ? "" : folder_;
        std::filesystem::path const folder(std::u8string(options.folder.begin(), options.folder.end()));
        options.tracks = {tracks_,  mix_,           utf8(folder / std::u8string(stem.begin(), stem.end())),
                          toOutput, {force_, md5_}, nullptr};
        if (!range_.empty())
            options.range = ExtractRange(range_, display_);
        if (!as_.empty())
            options.tracks.conversion = makeConversion(as_);
        options.listOnly = list_;
        options.whenComplete = [this](OutputFile const& file) { take(file); };
        return options;
    }

    void take(OutputFile const& file) {
        if (md5_ && options_.json)
            files_.push_back({file.name(), file.md5()});
        else if (md5_)
            std::cout << file.md5() << "  " << file.name() << "\n";
    }

    ExitStatus extract(bool toOutput) {
        Extraction extraction(extractOptions(toOutput));
        try {
            read(extraction);
        } catch (CannotExtract const& refusal) {
            return refuse(refusal.what());
        } catch (Interrupted const& interruption) {
            reportFault(file_, interruption.what());
            return abandon(extraction, SystemFailed);
        } catch (Exceptions::BaseException const& fault) {
            ExitStatus const status = reportFault(file_, fault);
            return abandon(extraction, status);
        }
        return report(extraction.result(), toOutput);
    }

    void read(Extraction& extraction) {
        auto const dictionary = loadDictionary(options_.dictionaries);
        if (file_ == standardStream) {
            StandardInput source;
            extraction.run(source, dictionary);
        } else {
            Input input(file_, dictionary);
            extraction.run(input);
        }
    }

    ExitStatus abandon(Extraction& extraction, ExitStatus status) const {
        extraction.abandon();
        reportParts(extraction.result());
        return status;
    }

    void reportParts(ExtractResult const& result) const {
        for (auto const& part : result.parts)
            reportFault(part, "is not whole");
    }

    ExitStatus report(ExtractResult const& result, bool toOutput) const {
        ExtractReport const report{file_, result, files_, list_};
        if (options_.json)
            printExtractJson(report);
        else if (!toOutput && !md5_)
            printExtractText(report);
        for (auto const& text : result.early)
            reportFault(file_, text);
        for (auto const& fault : result.faults)
            reportFault(file_, fault.message, fault.offset);
        reportParts(result);
        return !result.faults.empty() ? NotMXF : !result.early.empty() ? FoundSomething : Done;
    }

    std::string file_, folder_, range_, as_;
    std::vector<std::string> tracks_;
    bool display_ = false, mix_ = false, md5_ = false, list_ = false, force_ = false;
    ReportOptions options_;
    std::vector<ExtractedFile> files_;
};

} // namespace

std::unique_ptr<Command> makeExtractCommand() { return std::make_unique<ExtractCommand>(); }

} // namespace Zelm
