#include "IndexPlotData.h"

#include <algorithm>
#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexEntry;

namespace {

/// Of a table of constant rate no more edit units of each column are looked at.
constexpr std::uint64_t mostSamples = 16;

/// Edit units in a second, as far as a window over them is kept.
constexpr double mostUnitsASecond = 100000;

bool hasEntries(FoundTable const& table) {
    return std::any_of(table.segments.begin(), table.segments.end(),
                       [](auto const& segment) { return segment.entries != 0; });
}

/// The largest sum of so many bytes counts in a row.
class BusiestWindow {
public:
    explicit BusiestWindow(std::size_t size) : recent_(size) {}

    void add(std::uint64_t bytes) {
        if (recent_.empty())
            return;
        sum_ += bytes - recent_[next_];
        recent_[next_] = bytes;
        next_ = (next_ + 1) % recent_.size();
        most_ = std::max(most_, sum_);
    }

    std::uint64_t most() const { return most_; }

private:
    std::vector<std::uint64_t> recent_;
    std::size_t next_ = 0;
    std::uint64_t sum_ = 0, most_ = 0;
};

class PlotGatherer {
public:
    PlotGatherer(FoundTable const& table, std::size_t mostColumns)
        : table_(table), locator_(*table.table, table.extent()), second_(window(table.table->editRate())) {
        if (table.covered.empty())
            return;
        data_.range = {table.covered.front().first, table.covered.back().last};
        data_.columns.resize(
            static_cast<std::size_t>(std::min<std::uint64_t>(data_.range.count(), mostColumns)));
    }

    PlotData gather() {
        std::uint64_t const step = stepWidth();
        for (auto const& covered : table_.covered)
            for (std::uint64_t i = 0; i < covered.count(); i += step)
                take(covered.first + static_cast<std::int64_t>(i));
        if (step == 1)
            data_.busiestSecond = static_cast<double>(second_.most());
        else
            scaleUp();
        findPartitions();
        return std::move(data_);
    }

private:
    static std::size_t window(EditRate const& rate) {
        double const units = rate.denominator > 0 ? rate.toDouble() : 0;
        return units >= 1 && units <= mostUnitsASecond ? static_cast<std::size_t>(std::lround(units)) : 0;
    }

    std::uint64_t stepWidth() const {
        std::uint64_t const samples = mostSamples * data_.columns.size();
        return hasEntries(table_) || samples == 0 ? 1
                                                  : std::max<std::uint64_t>(data_.range.count() / samples, 1);
    }

    /// Where some edit units stood for many of the same size.
    void scaleUp() {
        double const mean = data_.all.mean();
        std::uint64_t units = 0;
        for (auto const& covered : table_.covered)
            units += covered.count();
        bool const allKey = data_.all.keyFrames == data_.all.units;
        data_.all.units = units;
        data_.all.keyFrames = allKey ? units : 0;
        data_.all.sum = static_cast<std::uint64_t>(mean * static_cast<double>(units));
        data_.busiestSecond = mean * table_.table->editRate().toDouble();
    }

    std::size_t column(std::int64_t unit) const {
        constexpr std::uint64_t mostExact = std::uint64_t{1} << 48; // times the columns, 64 bits
        std::uint64_t const before = UnitRange{data_.range.first, unit}.count(), all = data_.range.count();
        std::size_t const columns = data_.columns.size();
        if (all <= mostExact)
            return static_cast<std::size_t>(before * columns / all);
        return std::min(static_cast<std::size_t>(data_.place(unit) * static_cast<double>(columns)),
                        columns - 1);
    }

    void take(std::int64_t unit) {
        auto const place = locator_.locate(unit);
        if (!place || !place->length)
            return;
        char const type = typeOf(unit);
        data_.columns[column(unit)].add(*place->length, type);
        if (*place->length > data_.all.most)
            data_.largestAt = unit;
        data_.all.add(*place->length, type);
        second_.add(*place->length);
    }

    char typeOf(std::int64_t unit) const {
        unsigned const flags = locator_.flags(unit).value_or(0);
        if ((flags & IndexEntry::BackwardPrediction) != 0)
            return 'B';
        if ((flags & IndexEntry::ForwardPrediction) != 0)
            return 'P';
        return locator_.keyFrame(unit) == unit ? 'K' : '\0';
    }

    /// The first edit unit that begins at an offset of the stream or behind it, of those that the index
    /// covers.
    std::int64_t unitAt(std::uint64_t streamOffset) const {
        UnitRange rest = data_.range;
        while (rest.first < rest.last) {
            auto const middle = rest.first + static_cast<std::int64_t>(rest.count() / 2);
            auto const place = locator_.locate(middle);
            if (place && place->streamOffset < streamOffset)
                rest.first = middle + 1;
            else
                rest.last = middle;
        }
        return rest.first;
    }

    void findPartitions() {
        if (!table_.map || data_.columns.empty())
            return;
        std::uint64_t streamOffset = table_.clipStart;
        double lastPlace = -1;
        double const columnWidth = 1 / static_cast<double>(data_.columns.size());
        for (auto const& extent : table_.map->extents()) {
            std::int64_t const unit = unitAt(streamOffset);
            streamOffset += extent.length;
            if (unit == data_.range.last || data_.place(unit) < lastPlace + columnWidth)
                continue;
            lastPlace = data_.place(unit);
            data_.partitions.push_back({unit, extent.partition->partitionAbsoluteOffset()});
        }
    }

    FoundTable const& table_;
    FoundTable::Locator locator_;
    BusiestWindow second_;
    PlotData data_;
};

} // namespace

void PlotColumn::add(std::uint64_t bytes, char unitType) {
    least = units == 0 ? bytes : std::min(least, bytes);
    most = std::max(most, bytes);
    sum += bytes;
    ++units;
    keyFrames += unitType == 'K' ? 1 : 0;
    type = unitType;
}

double PlotData::place(std::int64_t unit) const {
    return static_cast<double>(UnitRange{range.first, unit}.count()) / static_cast<double>(range.count());
}

PlotData gatherPlotData(FoundTable const& table, std::size_t mostColumns) {
    return PlotGatherer(table, mostColumns).gather();
}

} // namespace Zelm
