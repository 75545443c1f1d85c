/// The edit units of essence that is wrapped as one element: parts of its value.
#pragma once

#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "MXF/Zelm/MXFIO/BodyStream.h"
#include "MXF/Zelm/MXFIO/EssenceContainer.h"

#include <vector>

namespace MXF::Zelm::MXFIO {

/// Edit units of a whole number of samples, each as near to the ideal time as can be: at 48000 Hz and
/// 30000/1001 edit units a second 1602, 1601, 1602, 1601 and 1602 samples, again and again (SMPTE 382M).
class SampleGrid {
public:
    /// No grid: `isKnown()` is false.
    SampleGrid() = default;

    /// Not known when a rate is not positive, or out of all proportion.
    SampleGrid(SampleFormat const& samples, Templates::Rational<int> const& editRate);

    bool isKnown() const { return bytes_ != 0; }

    /// Where edit unit `position`, 0 or more, begins, in bytes; the largest number there is when that
    /// overflows.
    std::uint64_t offset(std::uint64_t position) const;

    /// Edit units that begin before `length` bytes; with `wholeOnly`, those that end there at the latest.
    std::uint64_t unitsIn(std::uint64_t length, bool wholeOnly) const;

private:
    std::uint64_t samplesBefore(std::uint64_t units) const;

    std::uint64_t bytes_ = 0;
    std::uint64_t numerator_ = 0; // samples of an edit unit
    std::uint64_t denominator_ = 1;
    std::uint64_t shift_ = 0; // edit units of the cadence before the first
};

/// A part of a stream.
struct StreamRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// The packets of a clip: usually one, in files that put the clip in several partitions one for each.
struct ClipPackets {
    PacketHead first = {};
    std::vector<StreamRange> values = {}; // as far as they are there
    bool isCut = false;                   // the last one, at the end of an open-ended stream

    /// The next packet of a stream that ends at `streamEnd`.
    void add(PacketHead const& head, std::uint64_t streamEnd, bool openEnded);
};

/// One element that holds all edit units of its track.
class ClipUnits {
public:
    /// `track` is null when the metadata knows none with the element's number. `index` is null when there is
    /// none; not owned. An edit rate that is not known is the track's.
    ClipUnits(ClipPackets packets, EssenceTrack const* track, IndexTables::IndexTable const* table,
              IndexTables::EditUnitLocator const* index, Templates::Rational<int> editRate);

    /// The first packet.
    PacketHead const& element() const { return packets_.first; }

    /// Edit units that are whole.
    std::int64_t count() const { return count_; }

    /// Where edit unit `position`, below `count()`, stands: more than one range where it goes over the end of
    /// a packet; none when the index does not say.
    std::vector<StreamRange> ranges(std::int64_t position) const;

private:
    void chooseGrid(EssenceTrack const* track, IndexTables::IndexTable const* table,
                    Templates::Rational<int> editRate);
    bool useIndex();
    std::optional<StreamRange> indexed(std::int64_t position) const;
    std::vector<StreamRange> valuesIn(StreamRange const& range) const;
    std::vector<StreamRange> bytes(std::uint64_t offset, std::uint64_t length) const;
    std::uint64_t end() const { return packets_.values.back().offset + packets_.values.back().length; }

    ClipPackets packets_;
    std::vector<std::uint64_t> before_; // bytes of the values before each
    std::uint64_t length_ = 0;          // of all values, as much as there is
    SampleGrid grid_;
    IndexTables::EditUnitLocator const* index_;
    std::uint64_t indexShift_ = 0; // from the index's offsets to those of the stream
    std::int64_t count_ = 1;
};

} // namespace MXF::Zelm::MXFIO
