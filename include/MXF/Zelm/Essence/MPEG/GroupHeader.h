/// The header of a group of pictures (ISO/IEC 13818-2).
#pragma once

#include "MXF/Zelm/DataIO/BitSliceReader.h"

namespace MXF::Zelm::Essence::MPEG {

struct MXFZELM_EXPORT GroupHeader {
    /// The timecode as it is coded; nothing holds it to what a clock shows.
    bool dropFrame = false;
    std::uint8_t hours = 0;
    std::uint8_t minutes = 0;
    std::uint8_t seconds = 0;
    std::uint8_t pictures = 0;

    /// No picture needs one of an earlier group.
    bool closed = false;

    /// The B pictures that are shown before the first I picture cannot be decoded: what they need was cut
    /// off.
    bool brokenLink = false;

    /// Reads what follows the start code. Throws Exceptions::InvalidLength.
    static GroupHeader read(DataIO::BitSliceReader& bits);
};

} // namespace MXF::Zelm::Essence::MPEG
