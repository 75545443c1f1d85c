/// Edit units of AVC as pictures in stored order.
#pragma once

#include "MXF/Zelm/Essence/AVC/AccessUnit.h"
#include "MXF/Zelm/Essence/PictureOrder.h"

namespace MXF::Zelm::Essence::AVC {

/// Remembers parameter sets and picture order counts from one edit unit to the next.
class MXFZELM_EXPORT CodedPictures : public Platform::Allocated {
public:
    /// The parameter sets that came, for `AccessUnit::read` to take and use.
    ParameterSets& sets() { return sets_; }

    /// The next edit unit, of which the head is enough where it knows all slices; absent for one without a
    /// slice that can be read.
    std::optional<Picture> next(AccessUnit const& unit);

private:
    ParameterSets sets_;
    PictureOrderCounter counter_;
    bool any_ = false;
};

} // namespace MXF::Zelm::Essence::AVC
