/// Where readers of essence get index table segments from.
#pragma once

#include "MXF/Zelm/IndexTables/IndexTableSegment.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT IndexTableProvider : public Platform::Allocated {
public:
    using SegmentPtr = Templates::SharedPtr<IndexTables::IndexTableSegment const, Templates::LockedCounter>;

    virtual ~IndexTableProvider();

    virtual std::uint32_t indexSID() const = 0;
    virtual std::uint32_t bodySID() const = 0;

    /// The segment that covers edit unit `position`, empty when there is none.
    virtual SegmentPtr segment(std::int64_t position) = 0;
};

} // namespace MXF::Zelm::MXFIO
