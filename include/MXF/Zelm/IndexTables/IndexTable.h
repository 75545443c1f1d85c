/// The segments of one index table: those that share an index SID and a body SID (SMPTE 377M).
#pragma once

#include "MXF/Zelm/IndexTables/IndexTableSegment.h"

namespace MXF::Zelm::IndexTables {

/// Owns its segments, which do not change once they are in a table.
class MXFZELM_EXPORT IndexTable : public Platform::Allocated {
public:
    /// Segments by their start positions; those with the same start in the order in which they were added.
    using SegmentMap = Templates::multimap<std::int64_t, Templates::auto_ptr<IndexTableSegment const>>;

    IndexTable(std::uint32_t indexSID, std::uint32_t bodySID);
    IndexTable(IndexTable const&) = delete;
    IndexTable& operator=(IndexTable const&) = delete;
    virtual ~IndexTable();

    std::uint32_t indexSID() const { return indexSID_; }
    std::uint32_t bodySID() const { return bodySID_; }

    /// Takes a segment over. A repeat (the same start position and duration as a segment that the table has)
    /// is destroyed, unless `force` is set. Throws Exceptions::BaseException with "Trying to load a
    /// IndexTable segment into a IndexTable with different bodySIDs" or, for a segment that has an index SID,
    /// "…with different indexSIDs".
    void add(Templates::auto_ptr<IndexTableSegment> segment, bool force);

    /// The segment that covers edit unit `position`, null when there is none. Where several do, the one with
    /// the latest start, among those with the same start the one added last. A segment whose duration is 0 or
    /// negative covers nothing here, see `EditUnitLocator`. Takes logarithmic time; after `add`, the first
    /// call takes linear time. Owned by the table.
    IndexTableSegment const* find(std::int64_t position) const;

    /// Number of segments.
    std::size_t size() const { return segments_.size(); }

    SegmentMap::const_iterator begin() const { return segments_.begin(); }
    SegmentMap::const_iterator end() const { return segments_.end(); }

    /// The first edit unit from `position` on that `find` finds no segment for. Takes linear time.
    std::int64_t firstGap(std::int64_t position) const;

    /// The edit rate: that of the first segment that has one, 0/0 when none has. Takes linear time.
    Templates::Rational<int> editRate() const;

private:
    struct LookUp;

    std::uint32_t indexSID_;
    std::uint32_t bodySID_;
    SegmentMap segments_;
    struct Repeats;
    Templates::auto_ptr<Repeats> repeats_;
    mutable Templates::auto_ptr<LookUp> lookUp_; // made by `find`, gone after `add`
};

} // namespace MXF::Zelm::IndexTables
