/// Edit units of MPEG video as pictures in stored order.
#pragma once

#include "MXF/Zelm/Essence/MPEG/VideoUnit.h"
#include "MXF/Zelm/Essence/PictureOrder.h"

namespace MXF::Zelm::Essence::MPEG {

/// Remembers what goes on from one edit unit to the next: the group, and the count of temporal references
/// where no group header begins it anew.
class MXFZELM_EXPORT VideoPictures : public Platform::Allocated {
public:
    /// The next edit unit, of which the head is enough; absent for one without a picture.
    std::optional<Picture> next(VideoUnit const& unit);

private:
    std::int64_t order_ = 0; // of the last picture
    bool any_ = false;
};

} // namespace MXF::Zelm::Essence::MPEG
