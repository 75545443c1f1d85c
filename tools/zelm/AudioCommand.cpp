/// `zelm audio FILE…`: the sound in MXF, Wave and AVI files.
#include "AudioReport.h"
#include "ForceOption.h"
#include "Interruption.h"

#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileFunctions.h>

#include <algorithm>
#include <cmath>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

class AudioCommand : public Command {
public:
    void declare(CLI::App& parser) override {
        parser.add_option("FILE", files_, "MXF, Wave (RIFF, RF64, BW64) and AVI files")->required();
        auto* const without = parser.add_flag("--no-levels", noLevels_,
                                              "Read headers alone, no samples: what files say at once");
        parser.add_option("--plot", plot_, "Draw the wave of each channel of one file")
            ->type_name("OUT.svg")
            ->excludes(without);
        declareForce(parser, force_, "Replace a drawing that is there");
        parser
            .add_option("--silence", silence_,
                        "No sample of silence reaches this level, in dBFS; -60 unless given")
            ->type_name("DB")
            ->check(CLI::Range(-200.0, 0.0).description(""))
            ->excludes(without);
        parser
            .add_option("--shortest-silence", shortest_,
                        "Shorter silence does not count, in seconds; 1 unless given")
            ->type_name("SECONDS")
            ->check(CLI::Range(0.01, 86400.0).description(""))
            ->excludes(without);
        options_.declare(parser);
        parser.footer(footer);
    }

    ExitStatus run() override {
        if (!plot_.empty() && files_.size() != 1)
            return refuse("--plot draws one file");
        if (!plot_.empty() && !force_ && DataIO::File::exists(plot_))
            return refuse(plot_ + " is there already: --force replaces it");
        if (!plot_.empty() && DataIO::File::sameFile(plot_, files_.front()))
            return refuse(plot_ + " is the file itself");
        AudioOptions options;
        options.levels = !noLevels_;
        options.meter.silenceBelow = std::pow(10.0, silence_ / 20);
        options.meter.shortestSilence = shortest_;
        options.meter.outlinePoints = plot_.empty() ? 0 : audioPlotPoints;
        auto const dictionary = loadDictionary(options_.dictionaries);
        ExitStatus status = Done;
        for (auto const& name : files_)
            status = std::max(status, read(name, options, dictionary));
        if (options_.json)
            printAudioJson(read_);
        return status;
    }

private:
    static constexpr const char* footer =
        "\nShows tracks and channels with their labels, and measures each channel: its highest sample, mean "
        "power,\n"
        "samples that are clipped (three or more in a row at full scale), and silence. Marked with \"!\" is "
        "where\n"
        "a file contradicts itself: labels, channel status, block sizes, lengths, chunks.\n"
        "\nExamples:\n"
        "  zelm audio clip.mxf\n"
        "  zelm audio --no-levels *.wav *.mxf\n"
        "  zelm audio --plot clip.svg clip.mxf\n"
        "\nExit status 1: a file contradicts itself.";

    static ExitStatus refuse(std::string const& why) {
        std::cerr << "zelm: " << why << "\n";
        return WrongUse;
    }

    ExitStatus read(std::string const& name, AudioOptions const& options,
                    SharedDictionary const& dictionary) {
        try {
            auto file = readAudio(name, options, dictionary);
            if (!options_.json)
                printAudioText(file);
            for (auto const& fault : file.faults)
                reportFault(name, fault.message, fault.offset);
            if (!plot_.empty())
                plot(file, options);
            ExitStatus const status = !file.faults.empty() ? NotMXF : file.isOdd() ? FoundSomething : Done;
            read_.push_back(std::move(file));
            return status;
        } catch (Interrupted const& interruption) {
            reportFault(name, interruption.what());
            return SystemFailed;
        } catch (Exceptions::BaseException const& fault) {
            return reportFault(name, fault);
        }
    }

    void plot(AudioFile const& file, AudioOptions const& options) const {
        using DataIO::File::FileDataSink;
        auto const drawing = drawAudio(file, options);
        FileDataSink sink(std::string_view(plot_),
                          force_ ? FileDataSink::Mode::Replace : FileDataSink::Mode::CreateNew);
        sink.write(reinterpret_cast<const unsigned char*>(drawing.data()), drawing.size());
        sink.close();
    }

    std::vector<std::string> files_;
    std::string plot_;
    double silence_ = -60, shortest_ = 1;
    bool noLevels_ = false, force_ = false;
    ReportOptions options_;
    std::vector<AudioFile> read_;
};

} // namespace

std::unique_ptr<Command> makeAudioCommand() { return std::make_unique<AudioCommand>(); }

} // namespace Zelm
