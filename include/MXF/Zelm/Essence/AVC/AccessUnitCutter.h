/// Cuts a byte stream of AVC into edit units: one coded frame each, or both fields of one.
///
///     stream   delimiter, sets, messages, slices | messages, slices | slices, messages, slices | …
///     units    1                                 | 2                | 3, of two fields         |
///
/// A unit begins with what stands between the last slice of one frame and the first slice of the next
/// (ISO/IEC 14496-10, 7.4.1.2); the zero byte before a start code belongs to it, other zeros stay with the
/// unit before.
#pragma once

#include "MXF/Zelm/Essence/AVC/AccessUnit.h"
#include "MXF/Zelm/Essence/StartCodeReader.h"

#include <vector>

namespace MXF::Zelm::Essence::AVC {

class MXFZELM_EXPORT AccessUnitCutter : public Platform::Allocated {
public:
    struct Unit {
        /// Slices of the source, not copied.
        DataIO::Chain data = {};

        AccessUnit headers = {};

        /// Where it stands in the source.
        std::uint64_t offset = 0;
    };

    /// Reads `source` from where it stands.
    explicit AccessUnitCutter(Templates::SharedPtr<DataIO::SliceSource> source);

    /// Passes over up to `maximumToSkip` bytes to the first unit that brings the sets of its picture. False
    /// when there is none. Throws as `next`.
    bool findStart(std::uint64_t maximumToSkip, Unit& unit);

    /// The next unit, in stored order; `unit` is overwritten. False at the end. One without a slice that can
    /// be read has none in its headers. Throws Exceptions::InvalidFormat for a unit above
    /// `StartCodeReader::largestUnit`.
    bool next(Unit& unit);

private:
    struct Nal {
        NalUnit unit;
        std::uint64_t begin; // with its start code
    };

    std::optional<Nal> nextNal();
    bool beginsFrame(AccessUnit const& headers, NalUnit const& slice);
    void hold(Nal nal);
    void takeHeld(AccessUnit& headers);

    StartCodeReader reader_;
    std::optional<StartCodeReader::Code> pending_; // of the next NAL unit
    std::optional<SliceHeader> last_;              // slice of the unit that is being read
    std::vector<Nal> held_;                        // that may belong to the next unit
    ParameterSets sets_;
};

} // namespace MXF::Zelm::Essence::AVC
