/// A segment that knows the group of pictures (GOP) of each of its edit units.
///
/// A group begins, in stored order, with an edit unit that is its own key frame and not predicted from
/// another: key frame offset 0, and neither prediction flag set. It goes on to the next such edit unit.
#pragma once

#include "MXF/Zelm/IndexTables/IndexTableSegment.h"

namespace MXF::Zelm::IndexTables {

/// What is known of the group of one edit unit; -1 where it is not known.
struct MXFZELM_EXPORT GOPInfo {
    /// Place of the edit unit in its group in stored order, 0 for the first. Not known where the group begins
    /// in an earlier segment.
    std::int64_t gopPosition = -1;

    /// Number of edit units of the group. Not known where the group begins in an earlier segment, or may go
    /// on in a later one.
    std::int64_t gopLength = -1;

    /// Place of its picture in the group in display order, counted from the display position that has the
    /// number of the group's first edit unit: the temporal reference of MPEG. Not known where `gopPosition`
    /// is not, or where no entry at hand leads to this edit unit.
    std::int64_t displayPosition = -1;
};

class MXFZELM_EXPORT IndexTableSegmentWithGOPInfo : public IndexTableSegment {
public:
    /// Reads a segment, as its base does, and finds its groups. Later changes of the segment's entries do not
    /// change what is known of the groups.
    IndexTableSegmentWithGOPInfo(KLV::Packet& packet, IndexTableSegmentListener* listener);
    ~IndexTableSegmentWithGOPInfo() override;

    /// What is known of entry `index`. Throws Exceptions::BaseException with "The IndexTableSegment is
    /// smaller than the given index.".
    GOPInfo const& gopInfo(std::size_t index) const;

    /// Completes what is known by the neighbouring segments: groups that begin in `previous`, which has been
    /// completed itself, or end in `next`. A neighbour may be null, and is passed over unless it has as many
    /// entries as edit units. Throws Exceptions::InvalidStructure with "Trying to update non-consecutive
    /// IndexTableSegmentWithGOPInfo's." or, when the group that goes on into this segment began before
    /// `previous`, "Not supported: IndexTableSegment duration is smaller than GOP length.".
    void updateMissingInfo(IndexTableSegmentWithGOPInfo const* previous,
                           IndexTableSegmentWithGOPInfo const* next);

private:
    void findGroups();
    void findDisplayPositions(IndexTableSegment const& entries, std::int64_t distance);
    void continueGroup(GOPInfo const& lastInfoFromPrevious);
    void endLastGroup(std::size_t more);
    bool isComplete() const;
    std::size_t leadingEntries() const;

    Templates::vector<GOPInfo> gopInfoVector_;
};

} // namespace MXF::Zelm::IndexTables
