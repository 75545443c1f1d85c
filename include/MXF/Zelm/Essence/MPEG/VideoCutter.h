/// Cuts a stream of MPEG video into edit units: one coded frame each, with the headers that stand before it.
///
///     stream   … | sequence, group, picture, slices, zeros | picture, slices | picture, slices, picture, …
///     units      | 1                                       | 2               | 3, of two fields
///
/// A unit begins with a sequence, group or picture header behind the slices of the one before, which keeps
/// zeros and a sequence end code behind them (ISO/IEC 13818-2, SMPTE 381M).
#pragma once

#include "MXF/Zelm/Essence/MPEG/VideoUnit.h"
#include "MXF/Zelm/Essence/StartCodeReader.h"
#include "MXF/Zelm/Templates/Containers.h"

namespace MXF::Zelm::Essence::MPEG {

class MXFZELM_EXPORT VideoCutter : public Platform::Allocated {
public:
    static constexpr std::uint64_t largestUnit = StartCodeReader::largestUnit;

    struct Unit {
        /// Slices of the source, not copied.
        DataIO::Chain data = {};

        /// Those up to the first slice; the second field's are left out.
        VideoUnit headers = {};

        /// Where it stands in the source.
        std::uint64_t offset = 0;
    };

    /// Reads `source` from where it stands.
    explicit VideoCutter(Templates::SharedPtr<DataIO::SliceSource> source);
    ~VideoCutter();

    /// Passes over up to `maximumToSkip` bytes to the first sequence header. False when there is none.
    bool findStart(std::uint64_t maximumToSkip);

    /// The next unit; `unit` is overwritten. False at the end. A picture that lacks slices at its end, or its
    /// second field, is left out there. Throws Exceptions::InvalidFormat for a unit above `largestUnit`.
    bool next(Unit& unit);

    /// Why the stream ended where it did, when that is amid a picture; else empty.
    std::string const& fault() const { return fault_; }

private:
    using Code = StartCodeReader::Code;

    /// What is known of the unit that is being read.
    struct State {
        VideoUnit headers = {};
        bool hasPicture = false;
        bool hasSlices = false;
        bool hasSecondField = false;
        std::uint8_t lastSlice = 0;
    };

    void takeInto(State& state, Code const& code);
    void readHeaders(State& state, std::uint64_t end);
    bool beginsUnitAt(State const& state, Code const& code);
    bool isSecondField(State const& state, std::uint64_t position);
    bool isWhole(State const& state) const;
    void cut(State& state, DataIO::Chain data, std::uint64_t offset, Unit& unit);
    bool endAmidPicture();

    StartCodeReader reader_;
    std::optional<Code> pending_;                  // what the next unit begins with
    Templates::vector<std::uint64_t> headerCodes_; // in the unit, before its first slice
    std::optional<SequenceHeader> sequence_;
    std::string fault_;
};

} // namespace MXF::Zelm::Essence::MPEG
