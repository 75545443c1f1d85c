/// Makes the lines of `zelm frames` from edit units: what their container, its index and the timecode say.
#pragma once

#include "FrameFacts.h"
#include "UnitRange.h"

#include <MXF/Zelm/MXFIO/EssenceContainer.h>
#include <MXF/Zelm/MXFIO/EssenceUnit.h>

namespace Zelm {

/// For one container, or one track of it.
class FrameMaker {
public:
    /// `container` and `track`, which is null for whole edit units, are not owned. `seeker` is null for a
    /// source that cannot seek.
    FrameMaker(FileInfo const& info, MXF::Zelm::MXFIO::EssenceContainer const& container,
               MXF::Zelm::MXFIO::EssenceTrack const* track, MXF::Zelm::MXFIO::Seeker* seeker);

    UnitTimecodes const& timecodes() const { return timecodes_; }
    FrameFacts const& facts() const { return facts_; }

    Frame make(MXF::Zelm::MXFIO::EssenceUnit const& unit) const;

private:
    MXF::Zelm::Utils::TimeCode timecode(std::int64_t position) const;

    MXF::Zelm::MXFIO::EssenceContainer const& container_;
    MXF::Zelm::MXFIO::EssenceTrack const* track_;
    EditRate editRate_;
    std::int64_t origin_;
    bool hasPictureTypes_; // or may have them
    UnitTimecodes timecodes_;
    FrameFacts facts_;
};

} // namespace Zelm
