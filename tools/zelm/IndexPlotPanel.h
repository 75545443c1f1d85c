/// One index table of the drawing of `zelm index --plot`.
#pragma once

#include "IndexSurvey.h"
#include "Svg.h"

namespace Zelm {

/// In pixels.
struct PlotLayout {
    static constexpr double width = 1260;
    static constexpr double left = 100;
    static constexpr double plotWidth = 1064;
    static constexpr double panelHeight = 470;
};

/// Draws at `top`, `PlotLayout::panelHeight` high: figures in words, axes, the bytes of edit units in stored
/// order, key frames, partitions and what the colours mean. Style classes: table, faint (texts); grid, axis,
/// boundary (lines); key, p, b, least, mean, most, odd, even (areas).
void drawIndexPanel(Svg& svg, FoundTable const& table, FileInfo const& info, double top);

} // namespace Zelm
