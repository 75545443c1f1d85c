/// `zelm wrap INPUT… -o OUT.mxf`: essence into a new MXF file.
#include "Faults.h"
#include "ForceOption.h"
#include "WrapFiles.h"
#include "WrapImages.h"
#include "WrapKinds.h"
#include "WrapPresets.h"
#include "WrapReport.h"
#include "WrapSounds.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <iostream>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class WrapCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser
            .add_option("INPUT", options_.inputs,
                        "Files with essence; a comma that stands alone parts what plays one after the other")
            ->required();
        parser.add_option("-o,--output", options_.output, "The new file; - for standard output")
            ->required()
            ->type_name("FILE");
        layoutOptions_.declare(parser);
        parser.add_option("--channels", channels_, "Channels of a track of sound; 0 for all of an input")
            ->type_name("N")
            ->check(CLI::Range(0u, 128u).description(""));
        parser
            .add_option("--map", map_,
                        "What the channels of all sounds are, in their order, for labels (SMPTE 377-4): "
                        "'L,R,C,LFE,Ls,Rs;L,R', with a semicolon between soundfield groups; each group of an "
                        "input is a track unless --channels says otherwise")
            ->type_name("CHANNELS");
        parser.add_option("--pcm", pcm_, "What inputs are that nobody knows: samples, little-endian")
            ->type_name("BITS,CHANNELS,RATE");
        parser
            .add_option("--as", options_.tracks.as,
                        "What all inputs are, whatever their bytes look like: " +
                            CLI::detail::join(inputKindNames(), ", ") + "; of data each file is an edit unit")
            ->type_name("KIND")
            ->check(CLI::IsMember(inputKindNames()).description(""));
        parser
            .add_option("--first", options_.tracks.first,
                        "Number that a sequence of files begins with; else the first that is there")
            ->type_name("N");
        parser
            .add_option("--resource", options_.tracks.resources,
                        "A font or picture of timed text, and the UUID that the document has for it")
            ->type_name("[UUID=][TYPE=]FILE")
            ->allow_extra_args(false);
        parser
            .add_option("--program", options_.tracks.program,
                        "The number of the program to take from transport streams, if not the first")
            ->type_name("N")
            ->check(CLI::Range(1u, 65535u).description(""));
        parser
            .add_option("--scan", options_.tracks.scan,
                        "What the codestreams of JPEG 2000 are: progressive pictures; two-fields, two for a "
                        "frame; or each a field, of which --rate tells the number a second")
            ->type_name("KIND")
            ->check(CLI::IsMember(scanNames()).description(""));
        parser.add_flag(
            "--aes3", options_.tracks.aes3,
            "Wrap sound as AES3, with its channel status in the descriptor, not as Broadcast Wave");
        parser.add_flag("--packets", options_.tracks.packets,
                        "Keep the packets of SMPTE 302M as they are, not the samples in them");
        parser.add_option("--play", plays_, "Of op3a and op3b: the edit units that play, one for each item")
            ->type_name("A:B")
            ->allow_extra_args(false);
        parser.add_flag("--md5", options_.md5, "Tell the MD5 of each track's essence");
        parser.add_flag("--verify", options_.verify,
                        "Read the file back by its index and compare each edit unit with what went in");
        declareForce(parser, force_, "Replace a file that is there");
        parser.add_flag("--sync", sync_, syncHelp);
        parser.add_flag("--discard", discard_,
                        "When interrupted, leave no file; else it is closed with what was written");
        report_.declare(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        bool const toOutput = options_.output == OutputFile::standardOutput;
        if (toOutput && (report_.json || options_.verify))
            return refuse("with -o - the file goes to standard output: no --json or --verify");
        try {
            return wrap();
        } catch (CannotWrap const& refusal) {
            return refuse(refusal.what());
        } catch (CannotWrite const& refusal) {
            return refuse(refusal.what());
        } catch (Exceptions::InvalidValue const& refusal) {
            return refuse(refusal.message());
        } catch (WritingFailed const& failure) {
            reportFault(failure.file, failure.what());
            if (!failure.part.empty())
                reportFault(failure.part, "is not whole");
            return failure.bySystem ? SystemFailed : NotMXF;
        }
    }

private:
    static constexpr const char* footer =
        "\nInputs are told by what they hold:\n"
        "  pictures     MPEG-1, MPEG-2, D-10, DV and AVC streams; JPEG 2000 (codestreams, JP2)\n"
        "  sound        Wave, RF64 and BW64; SMPTE 302M; MPEG audio, AC-3 and AAC frames;\n"
        "               samples (--pcm)\n"
        "  data         timed text with its --resource files; packets as zelm ancillary --dump\n"
        "               --json prints them; anything else (--as data)\n"
        "  of several   MXF files (all tracks, as they are); MPEG program and transport streams;\n"
        "               AVI files\n"
        "A sequence of files is one input: frame%05d.j2c, from the first that is there or --first N\n"
        "on. Where no input tells the rate, --rate must. Timecode begins as pictures, a Broadcast\n"
        "Wave file or an MXF input tell, unless --start-timecode does. A file is as long as its\n"
        "pictures: sound that is longer is cut, sound that is shorter goes on in silence; the report\n"
        "tells.\n"
        "\nPresets: rdd9 (MPEG-2 long GOP), d10 (D-10 with 8 AES3 channels), op1a (mono sounds), atom and "
        "as02 (a\n"
        "file for each track: OUT_v1.mxf, OUT_a1.mxf, …; of as02 the essence files, without version file).\n"
        "\nExamples:\n"
        "  zelm wrap clip.m2v clip.wav -o clip.mxf\n"
        "  zelm wrap clip.m2v left.wav right.wav -o clip.mxf --preset rdd9 --start-timecode 10:00:00:00\n"
        "  zelm wrap clip.m2v clip.wav -o clip.mxf --preset atom --md5 --verify\n"
        "  zelm wrap a.m2v a.wav , b.m2v b.wav -o ab.mxf --pattern op2a\n"
        "  zelm wrap frame%05d.j2c surround.wav -o film.mxf --rate 24 --map 'L,R,C,LFE,Ls,Rs'\n"
        "  zelm wrap sound.pcm -o - --pcm 24,2,48000 --meta 'MaterialPackage/Name=Tone' > sound.mxf\n"
        "\nExit status 1: the verification found a difference, or the essence was not whole. An "
        "interruption\n"
        "(Ctrl-C) closes the file with what was written, with exit status 4.";

    ExitStatus refuse(std::string const& why) const {
        std::cout.flush();
        std::cerr << "zelm: " << why << "\n";
        return WrongUse;
    }

    void takeOptions() {
        if (!pcm_.empty())
            options_.tracks.pcm = parsePcm(pcm_);
        options_.tracks.channels = channels_;
        if (!map_.empty())
            options_.tracks.channelMap = parseMap(map_);
        for (auto const& text : plays_) {
            auto const range = parseUnits(text);
            if (!range || range->last <= range->first)
                throw CannotWrap("--play " + text + ": give edit units, as in 25:100");
            options_.plays.push_back(*range);
        }
    }

    static std::shared_ptr<Metadata::Structural::ChannelMap const> parseMap(std::string const& text) {
        try {
            return std::make_shared<Metadata::Structural::ChannelMap>(text);
        } catch (Exceptions::InvalidFormat const& refusal) {
            throw CannotWrap("--map: " + refusal.message());
        }
    }

    ExitStatus wrap() {
        takeOptions();
        Layout const layout(layoutOptions_);
        if (layout.isOneFilePerTrack() && options_.output == OutputFile::standardOutput)
            throw CannotWrap("a file for each track cannot go to standard output");
        if (!options_.plays.empty() && layout.pattern().items != 3)
            throw CannotWrap("--play is for op3a and op3b");
        auto const dictionary = loadDictionary(report_.dictionaries);
        WrapPlan plan(layout, options_, dictionary);
        checkPreset(layout, plan);
        plan.checkContainers();
        NewFileOptions newFile;
        newFile.force = force_;
        newFile.sync = sync_;
        newFile.discard = discard_;
        newFile.inputs = plan.inputs();
        newFile.total = plan.inputBytes();
        newFile.done = [&plan] { return plan.bytesTaken(); };
        std::vector<WrapResult> results;
        writeFiles({layout, options_, plan, dictionary, newFile}, results);
        return report(results);
    }

    ExitStatus report(std::vector<WrapResult> const& results) const {
        bool const toOutput = options_.output == OutputFile::standardOutput;
        if (report_.json)
            printWrapJson(results);
        else
            printWrapText(toOutput ? std::cerr : std::cout, results);
        ExitStatus status = Done;
        for (auto const& result : results) {
            std::cout.flush();
            for (auto const& note : result.notes)
                std::cerr << "zelm: " << note << "\n";
            for (auto const& difference : result.differences)
                reportFault(result.file, difference);
            if (result.interrupted)
                reportFault(result.file, result.discarded ? "interrupted: no file was written"
                                                          : "interrupted: the file ends early");
            status = statusOf(result, status);
        }
        return status;
    }

    static ExitStatus statusOf(WrapResult const& result, ExitStatus before) {
        bool const isFaulty = std::any_of(result.tracks.begin(), result.tracks.end(),
                                          [](auto const* track) { return !track->tap->fault().empty(); });
        if (result.interrupted || before == SystemFailed)
            return SystemFailed;
        return isFaulty || !result.differences.empty() ? FoundSomething : before;
    }

    LayoutOptions layoutOptions_;
    WrapOptions options_;
    std::optional<unsigned> channels_;
    std::string map_;
    std::string pcm_;
    std::vector<std::string> plays_;
    bool force_ = false, sync_ = false, discard_ = false;
    ReportOptions report_;
};

} // namespace

std::unique_ptr<Command> makeWrapCommand() { return std::make_unique<WrapCommand>(); }

} // namespace Zelm
