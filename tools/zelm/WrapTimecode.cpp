#include "WrapTimecode.h"

namespace Zelm {

using namespace MXF::Zelm;
using Utils::TimeCode;

namespace {

/// Of its first edit unit.
TimeCode timecodeOf(WrapTrack const& track) {
    return track.timecode.isDefined() ? track.timecode : track.tap->currentTimeCode();
}

/// Counted as the content packages are, and not what is written where none is known.
bool tells(TimeCode const& timecode, EditRate const& rate) {
    return timecode.isDefined() && timecode.frameCount() != 0 &&
           timecode.base().framesPerSecond() == Utils::TimeBase::ofEditRate(rate, false).framesPerSecond();
}

WrapTrack const* trackThatTells(std::vector<WrapTrack*> const& item, EditRate const& rate) {
    for (char const kind : {'v', 'a', 'd'})
        for (auto const* const track : item)
            if (track->kind == kind && tells(timecodeOf(*track), rate))
                return track;
    return nullptr;
}

} // namespace

StartTimecode startTimecode(Layout const& layout, EditRate const& rate, std::vector<WrapTrack*> const& item) {
    if (layout.hasStartTimecode())
        return {layout.startTimecode(rate), "--start-timecode"};
    auto const* const track = trackThatTells(item, rate);
    return track == nullptr ? StartTimecode{layout.startTimecode(rate)}
                            : StartTimecode{layout.startTimecode(rate, timecodeOf(*track)), track->input};
}

} // namespace Zelm
