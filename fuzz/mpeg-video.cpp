/// Reads the headers of MPEG video: whole, and cut in small pieces, with the same result.
#include "MXF/Zelm/Essence/MPEG/VideoUnit.h"
#include "support.h"

#include <algorithm>

using namespace MXF::Zelm;
using Essence::MPEG::VideoUnit;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain const whole(DataIO::Slice::copyOf(data, size));
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 3)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(3, size - at)));
    for (auto const part : {VideoUnit::Part::Head, VideoUnit::Part::Whole}) {
        auto const unit = VideoUnit::read(whole, part), same = VideoUnit::read(pieces, part);
        Fuzz::require(unit.sequence.has_value() == same.sequence.has_value() &&
                      unit.picture.has_value() == same.picture.has_value() &&
                      unit.reachesSlices == same.reachesSlices && unit.endsSequence == same.endsSequence);
        if (unit.sequence) {
            auto const rate = unit.sequence->frameRate();
            Fuzz::require((rate.numerator == 0) == (rate.denominator == 0) && rate.numerator >= 0);
            unit.sequence->aspectRatio();
            Fuzz::require(unit.sequence->bitRate() == same.sequence->bitRate());
        }
    }
    return 0;
}
