/// One edit unit of one essence element, on its way from an analyzer into a container.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Utils/TimeCode.h"

#include <memory>

namespace MXF::Zelm::GenericContainer {

/// What the index tells of an edit unit beyond its place (SMPTE 377M).
struct MXFZELM_EXPORT EditUnitIndex {
    /// Edit units from the place where the picture is stored to the one at which it is shown: above 0 for an
    /// anchor that waits for pictures stored behind it, below 0 for those. Not the TemporalOffset of an index
    /// entry, which leads the other way and stands in the entry of the place of showing: the index table
    /// builder makes the one of the other.
    std::int32_t temporalOffset = 0;

    /// Edit units back to the one with which decoding begins: 0 or below.
    std::int32_t keyFrameOffset = 0;

    /// As in an index entry (`IndexTables::IndexEntry::Flag`).
    std::uint8_t flags = 0;
};

/// A value; `clear` makes it ready for the next one.
struct MXFZELM_EXPORT EditUnit {
    /// The value of the element, without key and length.
    DataIO::Chain data = {};

    /// In seconds.
    Templates::Rational<std::int64_t> duration = {};

    /// Undefined unless the analyzer knows one. Null stands for undefined; a timecode that carries binary
    /// groups is a Utils::TimeCodeExtended.
    std::shared_ptr<Utils::TimeCode const> timecode = nullptr;

    EditUnitIndex index = {};

    void clear() { *this = EditUnit(); }
};

} // namespace MXF::Zelm::GenericContainer
