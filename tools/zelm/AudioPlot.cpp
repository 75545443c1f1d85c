/// The drawing of `zelm audio --plot`: the outline and the power of each channel, one below another, over one
/// axis of time.
#include "AudioReport.h"
#include "Svg.h"
#include "Text.h"
#include "TimeText.h"
#include "UnitRange.h"

#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::Wave::decibels;
using Essence::Wave::Level;
using Essence::Wave::LevelMeter;

namespace {

constexpr double width = 1288, left = 128, plotWidth = 1064, right = left + plotWidth;
constexpr double titleHeight = 62, laneHeight = 92, laneGap = 14, axisHeight = 74;

/// Labels on the axis: a bound, never met by `timeStep`.
constexpr double mostTimes = 1000;

/// More channels than this are not drawn.
constexpr std::size_t mostLanes = 64;

constexpr const char* style = R"(
text { font: 12px system-ui, -apple-system, "Segoe UI", "DejaVu Sans", sans-serif; fill: #4b5563 }
.title { font-size: 18px; font-weight: 600; fill: #111827 }
.name { font-size: 13px; font-weight: 600; fill: #1f2937 }
.faint { font-size: 11px; fill: #9ca3af }
.paper { fill: #ffffff }
.lane { fill: #f6f7f9 }
.silence { fill: #e3d9f5 }
.grid { stroke: #e1e5ea; fill: none }
.full { stroke: #c3c9d2; fill: none }
.axis { stroke: #9ca3af; fill: none }
.wave { fill: #8db8ee }
.power { fill: #2f62ba }
.clip { fill: #dc2626 }
.over { font-size: 11px; font-weight: 600; fill: #dc2626 }
@media (prefers-color-scheme: dark) {
text { fill: #b6bdc9 }
.title { fill: #f3f4f6 }
.name { fill: #e5e7eb }
.faint { fill: #7d8694 }
.paper { fill: #12161d }
.lane { fill: #191f28 }
.silence { fill: #3b3057 }
.grid { stroke: #2a313c }
.full { stroke: #434c5a }
.axis { stroke: #5b6472 }
.wave { fill: #3f6cb0 }
.power { fill: #8fbaf7 }
.clip { fill: #f87171 }
.over { fill: #f87171 }
}
)";

struct Lane {
    AudioTrack const* track;
    unsigned channel;

    LevelMeter::Channel const& levels() const { return track->levels->channels()[channel]; }
};

/// "-6.0", "0.0", "-inf".
std::string decibelText(double magnitude) {
    double const value = decibels(magnitude);
    if (std::isinf(value))
        return "-inf";
    auto const tenths = std::llround(std::abs(value) * 10);
    return (value < 0 && tenths != 0 ? "-" : "") + std::to_string(tenths / 10) + "." +
           std::to_string(tenths % 10);
}

std::string baseName(std::string const& path) {
    auto const separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

class Drawing {
public:
    Drawing(AudioFile const& file, AudioOptions const& options)
        : file_(file),
          options_(options),
          lanes_(lanesOf(file)),
          svg_(width,
               titleHeight + laneStep * static_cast<double>(std::max<std::size_t>(lanes_.size(), 1)) +
                   axisHeight,
               baseName(file.file) + ": wave of each channel", style) {
        for (auto const& lane : lanes_)
            seconds_ = std::max(seconds_, static_cast<double>(lane.track->levels->instants()) /
                                              lane.track->format.samplingRate);
    }

    std::string document() {
        svg_.rectangle(0, 0, width, 100000, "paper");
        svg_.text(left, 34, baseName(file_.file), "title");
        svg_.text(left, 52, summary(), "faint");
        for (std::size_t i = 0; i < lanes_.size(); ++i)
            drawLane(lanes_[i], titleHeight + laneStep * static_cast<double>(i));
        if (lanes_.empty())
            svg_.text(left, titleHeight + 30, "The file has no sound that can be drawn.", "");
        else
            drawTime(titleHeight + laneStep * static_cast<double>(lanes_.size()) - laneGap);
        return svg_.document();
    }

private:
    static constexpr double laneStep = laneHeight + laneGap;

    static std::vector<Lane> lanesOf(AudioFile const& file) {
        std::vector<Lane> lanes;
        for (auto const& track : file.tracks)
            for (unsigned channel = 0; track.levels && channel < track.format.channels; ++channel)
                if (lanes.size() < mostLanes && !track.levels->channels()[channel].outline.empty())
                    lanes.push_back({&track, channel});
        return lanes;
    }

    std::string summary() const {
        std::size_t channels = 0;
        for (auto const& track : file_.tracks)
            channels += track.format.channels;
        std::string text = std::to_string(channels) + (channels == 1 ? " channel" : " channels");
        if (channels > lanes_.size())
            text += ", " + std::to_string(lanes_.size()) + " of them drawn";
        return text + formatText() + ", " + durationText(std::llround(seconds_ * 1000), {1000, 1});
    }

    /// Rate and bits, where all lanes have the same.
    std::string formatText() const {
        if (lanes_.empty())
            return {};
        auto const& first = lanes_.front().track->format;
        bool const isOne = std::all_of(lanes_.begin(), lanes_.end(), [&](Lane const& lane) {
            auto const& format = lane.track->format;
            return format.samplingRate == first.samplingRate && format.validBits == first.validBits;
        });
        return isOne ? ", " + std::to_string(first.samplingRate) + " Hz, " + std::to_string(first.validBits) +
                           " bits"
                     : "";
    }

    double x(double seconds) const { return left + (seconds_ > 0 ? seconds / seconds_ : 0) * plotWidth; }
    double timeOf(Lane const& lane, std::uint64_t instants) const {
        return static_cast<double>(instants) / lane.track->format.samplingRate;
    }

    void drawLane(Lane const& lane, double top) {
        double const middle = top + laneHeight / 2, half = laneHeight / 2;
        auto const& levels = lane.levels();
        svg_.rectangle(left, top, plotWidth, laneHeight, "lane");
        drawSilence(lane, top);
        drawGrid(top);
        drawWave(lane, middle, half);
        drawClipping(lane, top);
        std::string const label = lane.track->labelOf(lane.channel);
        double line = levels.all.clipped != 0 ? middle - 24 : middle - 16;
        auto const tell = [&](std::string const& text, std::string_view styleClass) {
            svg_.text(left - 10, line, text, styleClass, Svg::Anchor::End);
            line += 16;
        };
        tell(lane.track->name +
                 (lane.track->format.channels > 1 ? "." + std::to_string(lane.channel + 1) : ""),
             "name");
        if (!label.empty())
            tell(label, "");
        tell(decibelText(levels.all.peak()) + " dBFS", "");
        tell("RMS " + decibelText(levels.all.rms()), "faint");
        if (levels.all.clipped != 0)
            tell(grouped(levels.all.clipped) + " clipped", "over");
    }

    /// Full scale, 6 dB below, 0, and the times that are labelled.
    void drawGrid(double top) {
        SvgPath grid, full;
        double const middle = top + laneHeight / 2, quarter = laneHeight / 4;
        for (double const y : {middle - quarter, middle, middle + quarter})
            grid.horizontal(left, right, std::round(y) + 0.5);
        double const step = timeStep();
        for (double i = 1; i * step < seconds_ && i < mostTimes; ++i)
            grid.vertical(std::round(x(i * step)) + 0.5, top, top + laneHeight);
        for (double const y : {top, top + laneHeight})
            full.horizontal(left, right, std::round(y) + 0.5);
        svg_.path(grid, "grid");
        svg_.path(full, "full");
        svg_.text(right + 6, top + 5, "0 dBFS", "faint");
        svg_.text(right + 6, std::round(middle - quarter) + 4, "-6", "faint");
        svg_.text(right + 6, std::round(middle) + 4, "-inf", "faint");
        svg_.text(right + 6, std::round(middle + quarter) + 4, "-6", "faint");
        svg_.text(right + 6, top + laneHeight + 3, "0", "faint");
    }

    void drawSilence(Lane const& lane, double top) {
        SvgPath areas;
        for (auto const& stretch : lane.levels().stretches) {
            double const from = x(timeOf(lane, stretch.first)),
                         to = x(timeOf(lane, stretch.first + stretch.count));
            areas.rectangle(from, top, std::max(to - from, 0.5), laneHeight);
        }
        svg_.path(areas, "silence", "silence: below " + decibelText(options_.meter.silenceBelow) + " dBFS");
    }

    /// A bar from the least to the greatest sample of each point, and within it the power.
    void drawWave(Lane const& lane, double middle, double half) {
        constexpr double fullScale = 2147483648.0, thinnest = 0.7;
        SvgPath wave, power;
        std::uint64_t const each = lane.track->levels->instantsOfPoint();
        std::uint64_t at = 0;
        for (auto const& point : lane.levels().outline) {
            double const from = x(timeOf(lane, at)), to = x(timeOf(lane, at + point.count));
            double const high = middle - point.most / fullScale * half,
                         low = middle - point.least / fullScale * half;
            double const rms = point.rms() * half;
            wave.rectangle(from, std::min(high, low - thinnest), to - from, std::max(low - high, thinnest));
            if (rms >= thinnest / 2)
                power.rectangle(from, std::max(middle - rms, high), to - from,
                                std::max(std::min(middle + rms, low) - std::max(middle - rms, high), 0.0));
            at += each;
        }
        svg_.path(wave, "wave");
        svg_.path(power, "power");
    }

    /// Ticks at both edges.
    void drawClipping(Lane const& lane, double top) {
        SvgPath marks;
        std::uint64_t const each = lane.track->levels->instantsOfPoint();
        std::uint64_t at = 0;
        for (auto const& point : lane.levels().outline) {
            if (point.clipped != 0) {
                double const from = x(timeOf(lane, at));
                double const mark = std::max(x(timeOf(lane, at + point.count)) - from, 1.5);
                marks.rectangle(from, top, mark, 5);
                marks.rectangle(from, top + laneHeight - 5, mark, 5);
            }
            at += each;
        }
        svg_.path(marks, "clip", grouped(lane.levels().all.clipped) + " clipped samples");
    }

    /// Seconds between two labels.
    double timeStep() const {
        for (double const step :
             {0.01, 0.02, 0.05,  0.1,   0.2,   0.5,   1.0,    2.0,    5.0,    10.0,   15.0,
              30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1800.0, 3600.0, 7200.0, 14400.0})
            if (step * 9 >= seconds_)
                return step;
        return 86400;
    }

    /// The timecode of MXF files where a label stands at an edit unit.
    std::string timecodeAt(double seconds) const {
        if (!file_.mxf.editRate || !timecodes_.isKnown())
            return {};
        double const units = seconds * file_.mxf.editRate->toDouble();
        auto const timecode = timecodes_.at(std::llround(units));
        return timecode.isDefined() ? Platform::toUtf8(timecode.toString()) : std::string();
    }

    void drawTime(double top) {
        SvgPath ticks;
        ticks.horizontal(left, right, std::round(top) + 0.5);
        double const step = timeStep();
        for (double i = 0.2; i * step <= seconds_ && i < mostTimes; i += 0.2)
            ticks.vertical(std::round(x(i * step)) + 0.5, top, top + 4);
        for (double i = 0; i * step <= seconds_ && i < mostTimes; ++i) {
            double const at = std::round(x(i * step)) + 0.5;
            ticks.vertical(at, top, top + 8);
            double line = top + 23;
            if (auto const timecode = timecodeAt(i * step); !timecode.empty()) {
                svg_.text(at, line, timecode, "", Svg::Anchor::Middle);
                line += 15;
            }
            svg_.text(at, line, durationText(std::llround(i * step * 1000), {1000, 1}), "faint",
                      Svg::Anchor::Middle);
        }
        svg_.path(ticks, "axis");
        double at = left;
        legend(at, top + 50, "wave", "least to greatest sample");
        legend(at, top + 50, "power", "RMS");
        legend(at, top + 50, "silence", "silence");
        legend(at, top + 50, "clip", "clipped");
    }

    void legend(double& at, double top, const char* styleClass, const char* text) {
        svg_.rectangle(at, top, 11, 11, styleClass);
        svg_.text(at + 17, top + 10, text, "");
        at += 17 + 6.2 * static_cast<double>(std::string_view(text).size()) + 20;
    }

    AudioFile const& file_;
    AudioOptions const& options_;
    std::vector<Lane> lanes_;
    Svg svg_;
    UnitTimecodes timecodes_ = UnitTimecodes(file_.mxf, file_.mxf.editRate.value_or(EditRate{}));
    double seconds_ = 0;
};

} // namespace

std::string drawAudio(AudioFile const& file, AudioOptions const& options) {
    return Drawing(file, options).document();
}

} // namespace Zelm
