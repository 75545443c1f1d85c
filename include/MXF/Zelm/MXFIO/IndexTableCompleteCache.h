/// Keeps the segments of one index table as they are met while a file is read.
#pragma once

#include "MXF/Zelm/IndexTables/IndexTable.h"
#include "MXF/Zelm/MXFIO/IndexTableProvider.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT IndexTableCompleteCache : public IndexTableProvider {
public:
    using TablePtr = Templates::SharedPtr<IndexTables::IndexTable const, Templates::LockedCounter>;

    IndexTableCompleteCache(std::uint32_t indexSID, std::uint32_t bodySID);
    ~IndexTableCompleteCache() override;

    /// Takes a segment over; a repeat is destroyed. Throws Exceptions::BaseException with "Trying to cache an
    /// IndexTableSegment with different bodySID" or, for a segment that has an index SID, "Trying to cache an
    /// IndexTableSegment with different indexSID".
    void cache(Templates::auto_ptr<IndexTables::IndexTableSegment> segment);

    std::uint32_t indexSID() const override;
    std::uint32_t bodySID() const override;

    /// Among the segments that were cached so far.
    SegmentPtr segment(std::int64_t position) override;

    /// The table of all segments so far. It grows as more are cached.
    TablePtr table() const;

    /// True when no further segments are to come: set by whoever caches them, since a table itself does not
    /// tell whether it is complete.
    bool isComplete() const { return complete_; }
    void isComplete(bool complete) { complete_ = complete; }

private:
    Templates::SharedPtr<IndexTables::IndexTable, Templates::LockedCounter> table_;
    bool complete_ = false;
};

} // namespace MXF::Zelm::MXFIO
