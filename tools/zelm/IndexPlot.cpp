#include "IndexPlot.h"

#include "IndexPlotPanel.h"
#include "Text.h"

#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr double width = PlotLayout::width, left = PlotLayout::left, panelHeight = PlotLayout::panelHeight;
constexpr double titleHeight = 48;

/// More tables than this are not drawn.
constexpr std::size_t mostPanels = 16;

constexpr const char* style = R"(
text { font: 12px system-ui, -apple-system, "Segoe UI", "DejaVu Sans", sans-serif; fill: #4b5563 }
.title { font-size: 18px; font-weight: 600; fill: #111827 }
.table { font-size: 14px; font-weight: 600; fill: #1f2937 }
.faint { font-size: 11px; fill: #9ca3af }
.paper { fill: #ffffff }
.grid { stroke: #e5e7eb; fill: none }
.axis { stroke: #9ca3af; fill: none }
.boundary { stroke: #b4bac4; stroke-dasharray: 2 3; fill: none }
.key { fill: #ea7c0c }
.p { fill: #3b76d6 }
.b { fill: #a9c8f2 }
.least { fill: #2f62ba }
.mean { fill: #6d9ee6 }
.most { fill: #c9def8 }
.odd { fill: #c7ccd4 }
.even { fill: #e4e7eb }
@media (prefers-color-scheme: dark) {
text { fill: #b6bdc9 }
.title { fill: #f3f4f6 }
.table { fill: #e5e7eb }
.faint { fill: #7d8694 }
.paper { fill: #12161d }
.grid { stroke: #272d38 }
.axis { stroke: #5b6472 }
.boundary { stroke: #4d5563 }
.b { fill: #35527f }
.p { fill: #5b93ec }
.least { fill: #6ba2f5 }
.mean { fill: #3f6cb0 }
.most { fill: #253d63 }
.odd { fill: #4b5563 }
.even { fill: #313946 }
}
)";

FileInfo infoOf(Input& input) {
    try {
        return gatherInfo(input);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return {}; // then there is no timecode
    }
}

std::string baseName(std::string const& path) {
    auto const separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

/// One picture above another for each table.
std::string drawing(Input& input, IndexSurvey const& survey) {
    auto const info = infoOf(input);
    std::size_t const panels = std::min(survey.tables.size(), mostPanels);
    double const height = titleHeight + panelHeight * static_cast<double>(std::max<std::size_t>(panels, 1));
    std::string title = baseName(input.name) + ": bytes per edit unit";
    if (survey.tables.size() > panels)
        title += ", of " + grouped(panels) + " of " + grouped(survey.tables.size()) + " index tables";
    Svg svg(width, height, title, style);
    svg.rectangle(0, 0, width, height, "paper");
    svg.text(left, 34, title, "title");
    if (panels == 0)
        svg.text(left, titleHeight + 30, "The file has no index table.", "");
    for (std::size_t i = 0; i < panels; ++i)
        drawIndexPanel(svg, survey.tables[i], info, titleHeight + panelHeight * static_cast<double>(i));
    return svg.document();
}

} // namespace

void plotIndex(Input& input, IndexSurvey const& survey, std::string const& name, bool replace) {
    using DataIO::File::FileDataSink;
    if (DataIO::File::sameFile(name, input.name))
        throw Exceptions::InvalidValue(name + " is the file itself");
    if (!replace && DataIO::File::exists(name))
        throw Exceptions::InvalidValue(name + " is there already: --force replaces it");
    auto const document = drawing(input, survey);
    FileDataSink sink(std::string_view(name),
                      replace ? FileDataSink::Mode::Replace : FileDataSink::Mode::CreateNew);
    sink.write(reinterpret_cast<const unsigned char*>(document.data()), document.size());
    sink.close();
}

} // namespace Zelm
