#include "FrameMaker.h"

#include "TrackChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

bool isPicture(MXFIO::EssenceTrack const& track) { return trackKind(track) == 'v'; }

bool hasPicture(EssenceContainer const& container) {
    return std::any_of(container.tracks.begin(), container.tracks.end(), isPicture);
}

std::int64_t originOf(EssenceContainer const& container, MXFIO::EssenceTrack const* track) {
    if (track == nullptr && !container.tracks.empty())
        track = &container.tracks.front();
    return track != nullptr ? track->origin : 0;
}

} // namespace

FrameMaker::FrameMaker(FileInfo const& info, EssenceContainer const& container,
                       MXFIO::EssenceTrack const* track, MXFIO::Seeker* seeker)
    : container_(container),
      track_(track),
      editRate_(track != nullptr ? track->editRate : container.editRate()),
      origin_(originOf(container, track)),
      hasPictureTypes_(hasPicture(container) || container.tracks.empty()),
      timecodes_(info, editRate_, origin_),
      facts_(seeker, track == nullptr || isPicture(*track) || !hasPicture(container)) {}

Frame FrameMaker::make(MXFIO::EssenceUnit const& unit) const {
    Frame frame;
    frame.bodySID = unit.bodySID;
    frame.stored = unit.position;
    facts_.take(frame);
    if (!hasPictureTypes_)
        frame.type = 0;
    frame.timecode = timecode(frame.display.value_or(frame.stored));
    if (track_ == nullptr) {
        frame.size = unit.package.length;
        frame.offset = unit.package.offset;
    } else if (auto const* const element = unit.package.element(track_->trackNumber)) {
        frame.size = element->length;
        frame.offset = element->valueOffset();
    }
    return frame;
}

/// That of the material package, else that of the file package.
Utils::TimeCode FrameMaker::timecode(std::int64_t position) const {
    if (timecodes_.isKnown())
        return timecodes_.at(position);
    if (container_.timecode.components.empty() || origin_ < 0 || position < everyUnit.first + origin_)
        return {};
    try {
        return container_.timecode.at(Utils::framesToSeconds(position - origin_, editRate_));
    } catch (Exceptions::InvalidValue const&) {
        return {}; // the rate is not known
    }
}

} // namespace Zelm
