/// Timecode in ancillary data packets, DID 60, SDID 60 (SMPTE 12M-2). Each of 16 bytes carries four bits of
/// the 64 of a timecode word, and one of the 16 distributed binary bits:
///
///     byte n    7-4 bits 4n to 4n + 3 of the word, the first in bit 4
///               3   bit n of DBB 1 (bytes 0 to 7), bit n - 8 of DBB 2 (8 to 15), the lowest first
///               2-0 0
#pragma once

#include "MXF/Zelm/Utils/TimeCodeExtended.h"

#include <array>
#include <optional>
#include <span>

namespace MXF::Zelm::Essence::Ancillary {

inline constexpr unsigned char timecodeDID = 0x60, timecodeSDID = 0x60;

/// A value.
struct MXFZELM_EXPORT Timecode {
    static constexpr std::size_t byteCount = 16;

    /// Undefined when it is none that a frame may have.
    Utils::TimeCodeExtended time = {};

    /// Where the timecode is from: 0 linear, 1 and 2 vertical of field 1 and 2. (The standard's text was not
    /// at hand: these are the values that equipment is known to use.)
    unsigned char source = 0;

    /// The second distributed binary group, as it is.
    unsigned char flags = 0;

    /// `source` in words: "LTC".
    const char* sourceText() const;

    /// Throws Exceptions::InvalidValue when the time is undefined.
    std::array<unsigned char, byteCount> bytes() const;
};

/// Reads the user data of a packet, for pictures of `framesPerSecond` (1 to 65535); none when there is less
/// than `Timecode::byteCount` of it. Throws Exceptions::InvalidValue for a base that is none.
MXFZELM_EXPORT std::optional<Timecode> readTimecode(std::span<unsigned char const> userData,
                                                    unsigned framesPerSecond);

} // namespace MXF::Zelm::Essence::Ancillary
