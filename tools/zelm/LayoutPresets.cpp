#include "LayoutPresets.h"

#include <algorithm>
#include <iterator>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::Wrapping;
using Index = LayoutPreset::Index;

namespace {

constexpr PatternRow patternRows[] = {
    {"op1a", 1, 1}, {"op1b", 1, 2}, {"op1c", 1, 3}, {"op2a", 2, 1},
    {"op2b", 2, 2}, {"op3a", 3, 1}, {"op3b", 3, 2}, {"atom", 0x10, 0},
};

const LayoutPreset presetRows[] = {
    {.name = "rdd9",
     .document = "RDD 9",
     .pattern = "op1a",
     .wrapping = Wrapping::Frame,
     .kagSize = 512,
     .index = Index::BodyAndFooter,
     .partitionSeconds = 10,
     .systemItem = true,
     .constantSound = true},
    {.name = "d10",
     .document = "SMPTE 386M",
     .pattern = "op1a",
     .wrapping = Wrapping::Frame,
     .kagSize = 512,
     .index = Index::Header,
     .essenceInHeader = true,
     .systemItem = true,
     .constantSound = true,
     .soundChannels = 8},
    {.name = "op1a", .document = "SMPTE 378M", .pattern = "op1a"},
    {.name = "atom",
     .document = "SMPTE 390M",
     .pattern = "atom",
     .kagSize = 1,
     .index = Index::Footer,
     .oneFilePerTrack = true},
    {.name = "as02",
     .document = "AS-02",
     .pattern = "op1a",
     .kagSize = 1,
     .index = Index::OwnPartitions,
     .partitionSeconds = 60,
     .oneFilePerTrack = true},
};

template <class Row, std::size_t count>
Row const* findRow(Row const (&rows)[count], std::string_view name) {
    auto const* const found =
        std::find_if(std::begin(rows), std::end(rows), [&](Row const& row) { return row.name == name; });
    return found != std::end(rows) ? found : nullptr;
}

template <class Row, std::size_t count>
std::string namesOf(Row const (&rows)[count]) {
    std::string names;
    for (auto const& row : rows)
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

} // namespace

PatternRow const* findPattern(std::string_view name) { return findRow(patternRows, name); }

std::string patternNames() { return namesOf(patternRows); }

LayoutPreset const* findPreset(std::string_view name) { return findRow(presetRows, name); }

std::string presetNames() { return namesOf(presetRows); }

std::uint64_t packagesOfTenSeconds(Templates::Rational<int> const& rate) {
    auto const rounded = static_cast<unsigned>((rate.numerator + rate.denominator / 2) / rate.denominator);
    return rounded == 25 ? 240 : std::uint64_t{10} * rounded; // a GOP of 12 or 15 divides it
}

} // namespace Zelm
