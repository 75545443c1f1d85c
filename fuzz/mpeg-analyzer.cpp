/// Cuts MPEG video into edit units: whole, and in small pieces, with the same result and no byte twice.
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"
#include "support.h"

#include <algorithm>
#include <vector>

using namespace MXF::Zelm;

namespace {

struct Unit {
    std::uint64_t size;
    std::int32_t temporalOffset;
    std::uint8_t flags;
    friend bool operator==(Unit const&, Unit const&) = default;
};

std::vector<Unit> unitsOf(DataIO::Chain const& bytes) {
    std::vector<Unit> units;
    Fuzz::passingOverBadInput([&] {
        GenericContainer::MPEG2VideoAnalyzer analyzer(std::make_shared<DataIO::BufferSliceSource>(bytes));
        if (!analyzer.preload())
            return;
        for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit);) {
            Fuzz::require(!unit.data.empty() && unit.index.keyFrameOffset <= 0);
            units.push_back({unit.data.size(), unit.index.temporalOffset, unit.index.flags});
        }
        analyzer.finalize();
    });
    return units;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 3)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(3, size - at)));
    auto const units = unitsOf(DataIO::Slice::copyOf(data, size));
    Fuzz::require(units == unitsOf(pieces));
    std::uint64_t bytes = 0;
    for (auto const& unit : units)
        bytes += unit.size;
    Fuzz::require(bytes <= size);
    return 0;
}
