/// Reads units of AVC, as a byte stream and with lengths before them, and counts the pictures' order. Cut in
/// small pieces they must give the same.
#include "MXF/Zelm/Essence/AVC/AccessUnit.h"
#include "support.h"

#include <algorithm>

using namespace MXF::Zelm;
using namespace Essence::AVC;

namespace {

void count(DataIO::Chain const& bytes) {
    ParameterSets sets;
    PictureOrderCounter counter;
    for (auto const part : {AccessUnit::Part::Whole, AccessUnit::Part::Head}) {
        auto const unit = AccessUnit::read(bytes, sets, part);
        if (!unit.slice)
            continue;
        Fuzz::require(unit.parameters && unit.sequence);
        auto const& sequence = *unit.sequence;
        Fuzz::require(sequence.width() <= sequence.codedWidth && sequence.height() <= sequence.codedHeight);
        for (int i = 0; i < 3; ++i)
            counter.next(sequence, *unit.parameters, *unit.slice);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain const whole(DataIO::Slice::copyOf(data, size));
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 3)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(3, size - at)));
    count(whole);
    for (unsigned lengthSize = 0; lengthSize <= 4; ++lengthSize) {
        NalReader reader(whole, lengthSize), same(pieces, lengthSize);
        while (auto const unit = reader.next()) {
            auto const other = same.next();
            Fuzz::require(other && other->offset == unit->offset && other->payload == unit->payload);
        }
    }
    return 0;
}
