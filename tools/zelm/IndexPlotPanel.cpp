#include "IndexPlotPanel.h"

#include "IndexPlotData.h"
#include "Text.h"
#include "TimeText.h"

#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr double left = PlotLayout::left, plotWidth = PlotLayout::plotWidth, right = left + plotWidth;
constexpr double plotTop = 74, plotHeight = 280, plotBottom = plotTop + plotHeight; // in the panel
constexpr double stripHeight = 7;

/// More partitions than this have no lines across the plot.
constexpr std::size_t mostPartitionLines = 40;

/// 1, 2 or 5 times a power of ten, so that at most `steps` of it reach `top`.
double niceStep(double top, double steps) {
    double const rough = std::max(top, 1e-9) / steps;
    double const power = std::pow(10, std::floor(std::log10(rough)));
    for (double const factor : {1.0, 2.0, 5.0})
        if (factor * power >= rough * 0.999)
            return factor * power;
    return 10 * power;
}

/// "1.2 Mbit/s".
std::string bitRateText(double bitsASecond) {
    char text[48];
    if (bitsASecond < 1e5)
        std::snprintf(text, sizeof text, "%.1f kbit/s", bitsASecond / 1e3);
    else
        std::snprintf(text, sizeof text, "%.1f Mbit/s", bitsASecond / 1e6);
    return text;
}

std::string unitsText(std::uint64_t count) {
    return grouped(count) + (count == 1 ? " edit unit" : " edit units");
}

/// One index table.
class Panel {
public:
    Panel(Svg& svg, FoundTable const& table, FileInfo const& info, double top)
        : svg_(svg),
          table_(table),
          rate_(table.table->editRate()),
          hasRate_(rate_.numerator > 0 && rate_.denominator > 0),
          timecodes_(info, rate_),
          data_(gatherPlotData(table, static_cast<std::size_t>(plotWidth))),
          top_(top) {}

    void draw() {
        drawHead();
        if (data_.empty())
            return svg_.text(left, y(plotTop), "The index leads to no edit unit of this file.", "");
        drawBytesAxis();
        drawTimeAxis();
        if (hasManyUnits())
            drawSpread();
        else
            drawUnits();
        drawPartitions();
        drawLegend();
        svg_.path(SvgPath().horizontal(left, right, y(plotBottom) + 0.5), "axis");
    }

private:
    /// A column of pixels stands for more than one edit unit.
    bool hasManyUnits() const { return data_.range.count() > data_.columns.size(); }

    double y(double inPanel) const { return top_ + inPanel; }
    double yOf(double bytes) const { return y(plotBottom) - bytes / scaleTop() * plotHeight; }
    double scaleTop() const { return std::max(1.0, static_cast<double>(data_.all.most) * 1.04); }
    double x(std::int64_t unit) const { return left + data_.place(unit) * plotWidth; }
    double bitRate(double bytesAUnit) const { return bytesAUnit * 8 * rate_.toDouble(); }

    void drawHead();
    std::string sizesText() const;
    std::string keyFramesText() const;
    std::string bytesText(double bytes) const;
    void drawBytesAxis();
    void drawBitRateAxis();
    void drawTimeAxis();
    std::int64_t timeStep() const;
    void drawUnits();
    void drawSpread();
    void drawPartitions();
    void drawLegend();
    void legend(double& at, const char* styleClass, const char* text);

    Svg& svg_;
    FoundTable const& table_;
    EditRate rate_;
    bool hasRate_;
    UnitTimecodes timecodes_;
    PlotData data_;
    double top_;
};

void Panel::drawHead() {
    std::string text = table_.name() + ": " + unitsText(data_.all.units);
    if (hasRate_)
        text += " at " + rateText(rate_) + "/s";
    auto const units = static_cast<std::int64_t>(data_.all.units);
    if (std::string const time = durationText(units, rate_); !time.empty())
        text += ", " + time;
    svg_.text(left, y(18), text, "table");
    if (!data_.empty())
        svg_.text(left, y(38), sizesText() + keyFramesText(), "");
}

std::string Panel::sizesText() const {
    std::string text = grouped(data_.all.sum) + " bytes";
    if (hasRate_)
        text += ", " + bitRateText(bitRate(data_.all.mean()));
    if (hasRate_ && data_.busiestSecond > 0 && static_cast<double>(data_.all.units) >= rate_.toDouble())
        text += " (" + bitRateText(data_.busiestSecond * 8) + " in the busiest second)";
    if (data_.all.least == data_.all.most)
        return text + "; each edit unit has " + grouped(data_.all.most);
    return text + "; edit units of " + grouped(data_.all.least) + " to " + grouped(data_.all.most) +
           " bytes, the largest is number " + std::to_string(data_.largestAt);
}

std::string Panel::keyFramesText() const {
    auto const keys = data_.all.keyFrames;
    if (keys == 0)
        return "; no key frames known";
    if (keys == data_.all.units)
        return "; all are key frames";
    double const distance = static_cast<double>(data_.all.units) / static_cast<double>(keys);
    return "; " + grouped(keys) +
           (keys == 1 ? " key frame" : " key frames, one in " + svgNumber(std::round(distance * 10) / 10));
}

/// In the unit that the top of the scale calls for.
std::string Panel::bytesText(double bytes) const {
    if (bytes == 0)
        return "0";
    if (scaleTop() >= 2e6)
        return svgNumber(bytes / 1e6) + " MB";
    return scaleTop() >= 2e3 ? svgNumber(bytes / 1e3) + " kB" : svgNumber(bytes) + " B";
}

void Panel::drawBytesAxis() {
    double const step = niceStep(scaleTop(), 7);
    SvgPath grid;
    for (double bytes = 0; bytes <= scaleTop(); bytes += step) {
        grid.horizontal(left, right, std::round(yOf(bytes)) + 0.5);
        svg_.text(left - 8, yOf(bytes) + 4, bytesText(bytes), "", Svg::Anchor::End);
    }
    svg_.path(grid, "grid");
    svg_.text(left - 8, y(plotTop - 12), "edit unit", "faint", Svg::Anchor::End);
    if (hasRate_)
        drawBitRateAxis();
}

void Panel::drawBitRateAxis() {
    double const top = bitRate(scaleTop()), step = niceStep(top, 7);
    bool const mega = top >= 2e6;
    SvgPath ticks;
    for (double rate = 0; rate <= top; rate += step) {
        double const at = yOf(rate / bitRate(1));
        ticks.horizontal(right, right + 4, std::round(at) + 0.5);
        svg_.text(right + 8, at + 4, svgNumber(rate / (mega ? 1e6 : 1e3)), "");
    }
    svg_.path(ticks, "axis");
    svg_.text(right + 8, y(plotTop - 12), mega ? "Mbit/s" : "kbit/s", "faint");
}

/// Edit units between two labels: round numbers below a second, then seconds, minutes and hours.
std::int64_t Panel::timeStep() const {
    double const most = static_cast<double>(data_.range.count()) / 9;
    double const units = std::clamp(niceStep(most, 1), 1.0, 4e18);
    double const second = hasRate_ ? std::round(rate_.toDouble()) : 0;
    if (units < second || second < 1)
        return static_cast<std::int64_t>(units);
    for (int const seconds :
         {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 28800, 86400})
        if (seconds * second >= most)
            return static_cast<std::int64_t>(seconds * second);
    return static_cast<std::int64_t>(units);
}

void Panel::drawTimeAxis() {
    auto const step = static_cast<std::uint64_t>(timeStep());
    SvgPath ticks;
    for (std::uint64_t rest = data_.range.count(); rest != 0; rest -= std::min(rest, step)) {
        auto const unit = static_cast<std::int64_t>(static_cast<std::uint64_t>(data_.range.last) - rest);
        double const at = std::round(x(unit)) + 0.5;
        ticks.vertical(at, y(plotBottom), y(plotBottom) + 16);
        double line = y(plotBottom) + 30;
        if (auto const timecode = timecodes_.at(unit); timecode.isDefined()) {
            svg_.text(at, line, Platform::toUtf8(timecode.toString()), "", Svg::Anchor::Middle);
            line += 15;
        }
        svg_.text(at, line, std::to_string(unit), timecodes_.isKnown() ? "faint" : "", Svg::Anchor::Middle);
    }
    svg_.path(ticks, "axis");
    if (timecodes_.isKnown())
        svg_.text(left - 42, y(plotBottom) + 30, "timecode", "faint", Svg::Anchor::End);
    svg_.text(left - 42, y(plotBottom) + (timecodes_.isKnown() ? 45 : 30), "stored", "faint",
              Svg::Anchor::End);
}

/// A bar for each edit unit.
void Panel::drawUnits() {
    SvgPath key, forward, both;
    double const step = plotWidth / static_cast<double>(data_.columns.size());
    double const bar = step >= 4 ? step - 1 : step;
    for (std::size_t i = 0; i < data_.columns.size(); ++i) {
        auto const& column = data_.columns[i];
        double const top = yOf(static_cast<double>(column.most));
        auto& path = column.type == 'K' ? key : column.type == 'B' ? both : forward;
        if (column.units != 0)
            path.rectangle(left + static_cast<double>(i) * step, top, bar, y(plotBottom) - top);
    }
    bool const allAreKeys = data_.all.keyFrames == data_.all.units;
    svg_.path(forward, "p");
    svg_.path(both, "b");
    svg_.path(key, allAreKeys ? "p" : "key");
}

/// Smallest, mean and largest of each column, one before the other, and a strip of key frames below.
void Panel::drawSpread() {
    SvgPath least, mean, most, key;
    for (std::size_t i = 0; i < data_.columns.size(); ++i) {
        auto const& column = data_.columns[i];
        if (column.units == 0)
            continue;
        double const at = left + static_cast<double>(i), bottom = y(plotBottom);
        double const low = yOf(static_cast<double>(column.least)), middle = yOf(column.mean()),
                     high = yOf(static_cast<double>(column.most));
        least.rectangle(at, low, 1, bottom - low);
        mean.rectangle(at, middle, 1, low - middle);
        most.rectangle(at, high, 1, middle - high);
        if (column.keyFrames != 0)
            key.rectangle(at, bottom + 3, 1, stripHeight);
    }
    svg_.path(most, "most");
    svg_.path(mean, "mean");
    svg_.path(least, data_.all.least == data_.all.most ? "p" : "least");
    if (data_.all.keyFrames != data_.all.units)
        svg_.path(key, "key");
}

void Panel::drawPartitions() {
    SvgPath lines;
    for (std::size_t i = 0; i < data_.partitions.size(); ++i) {
        bool const isLast = i + 1 == data_.partitions.size();
        double const begin = x(data_.partitions[i].unit);
        double const end = isLast ? right : x(data_.partitions[i + 1].unit);
        svg_.path(SvgPath().rectangle(begin, y(plotTop - stripHeight - 2), end - begin, stripHeight),
                  i % 2 == 0 ? "odd" : "even",
                  "partition at " + hex(data_.partitions[i].offset) + ", from edit unit " +
                      std::to_string(data_.partitions[i].unit));
        if (i != 0 && data_.partitions.size() <= mostPartitionLines)
            lines.vertical(std::round(begin) + 0.5, y(plotTop), y(plotBottom));
    }
    svg_.path(lines, "boundary");
}

void Panel::legend(double& at, const char* styleClass, const char* text) {
    svg_.rectangle(at, y(plotBottom + 62), 11, 11, styleClass);
    svg_.text(at + 17, y(plotBottom + 72), text, "");
    at += 17 + 7.2 * static_cast<double>(std::string_view(text).size()) + 16;
}

void Panel::drawLegend() {
    double at = left;
    bool const someAreKeys = data_.all.keyFrames != 0 && data_.all.keyFrames != data_.all.units;
    if (hasManyUnits() && data_.all.least != data_.all.most) {
        legend(at, "least", "smallest");
        legend(at, "mean", "up to the mean");
        legend(at, "most", "up to the largest edit unit of a column");
        if (someAreKeys)
            legend(at, "key", "key frames");
    } else if (someAreKeys) {
        legend(at, "key", "key frame");
        legend(at, "p", "forward predicted, or not known");
        legend(at, "b", "predicted from both sides");
    } else {
        legend(at, "p", "edit unit");
    }
    if (!data_.partitions.empty())
        legend(at, "odd", data_.partitions.size() == 1 ? "one partition" : "partitions, in turn");
}

} // namespace

void drawIndexPanel(Svg& svg, FoundTable const& table, FileInfo const& info, double top) {
    Panel(svg, table, info, top).draw();
}

} // namespace Zelm
