/// What analyzers of video must do with any bytes: whole, and in small pieces, the same result and no byte
/// twice.
#pragma once

#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/GenericContainer/EditUnit.h"
#include "support.h"

#include <algorithm>
#include <vector>

namespace MXF::Zelm::Fuzz {

struct VideoUnit {
    std::uint64_t size;
    std::int32_t temporalOffset;
    std::uint8_t flags;
    friend bool operator==(VideoUnit const&, VideoUnit const&) = default;
};

template <class Analyzer>
std::vector<VideoUnit> unitsOf(DataIO::Chain const& bytes) {
    std::vector<VideoUnit> units;
    passingOverBadInput([&] {
        Analyzer analyzer(std::make_shared<DataIO::BufferSliceSource>(bytes));
        if (!analyzer.preload())
            return;
        for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit);) {
            require(!unit.data.empty() && unit.index.keyFrameOffset <= 0);
            units.push_back({unit.data.size(), unit.index.temporalOffset, unit.index.flags});
        }
        analyzer.finalize();
    });
    return units;
}

template <class Analyzer>
void checkVideo(const unsigned char* data, std::size_t size) {
    constexpr std::size_t smallest = 3, mostPieces = 4096;
    std::size_t const each = std::max(smallest, size / mostPieces);
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += each)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min(each, size - at)));
    auto const units = unitsOf<Analyzer>(DataIO::Slice::copyOf(data, size));
    require(units == unitsOf<Analyzer>(pieces));
    std::uint64_t bytes = 0;
    for (auto const& unit : units)
        bytes += unit.size;
    require(bytes <= size);
}

} // namespace MXF::Zelm::Fuzz
