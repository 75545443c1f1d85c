/// The figures that `zelm index --plot` draws of one index table.
#pragma once

#include "IndexSurvey.h"

namespace Zelm {

/// The edit units that share one column of pixels.
struct PlotColumn {
    std::uint64_t units = 0, keyFrames = 0;
    std::uint64_t least = 0, most = 0, sum = 0; ///< bytes
    char type = 0;                              ///< of the last of them: 'K' key frame, 'P', 'B', 0 not known

    void add(std::uint64_t bytes, char unitType);
    double mean() const { return units != 0 ? static_cast<double>(sum) / static_cast<double>(units) : 0; }
};

struct PlotData {
    /// A partition from its first edit unit on.
    struct Partition {
        std::int64_t unit = 0;
        std::uint64_t offset = 0; ///< of the partition pack in the file
    };

    UnitRange range; ///< from the first edit unit to behind the last, gaps included
    std::vector<PlotColumn> columns;
    std::vector<Partition> partitions; ///< at most one a column
    PlotColumn all;
    std::int64_t largestAt = 0;
    double busiestSecond = 0; ///< bytes; 0 when the edit rate is not known

    bool empty() const { return all.units == 0; }

    /// How many columns before an edit unit, as a share of all from 0 to 1.
    double place(std::int64_t unit) const;
};

/// `mostColumns` is as many as there are pixels; fewer edit units have a column each. In stored order.
PlotData gatherPlotData(FoundTable const& table, std::size_t mostColumns);

} // namespace Zelm
