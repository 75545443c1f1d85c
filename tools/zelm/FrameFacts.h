/// What the index of a container tells of its pictures: their order, and where decoding can begin.
#pragma once

#include "Frames.h"

#include <MXF/Zelm/MXFIO/Seeker.h>

namespace Zelm {

/// The one place that asks. A null seeker knows nothing: of a source that cannot seek.
class FrameFacts {
public:
    /// `isReordered` is false for a track that is not shown in the order that the index tells of, such as
    /// sound beside pictures: its flags are not the track's, and it is shown as it is stored.
    FrameFacts(MXF::Zelm::MXFIO::Seeker* seeker, bool isReordered)
        : seeker_(seeker), isReordered_(isReordered) {}

    /// Fills display position, flags, type and key frame in.
    void take(Frame& frame) const;

    /// The edit unit that is shown at a display position.
    std::int64_t stored(std::int64_t display) const;

private:
    MXF::Zelm::IndexTables::EditUnitLocator const* index() const;

    MXF::Zelm::MXFIO::Seeker* seeker_;
    bool isReordered_;
};

} // namespace Zelm
