/// What one frame of DV tells of itself (IEC 61834, SMPTE 314M, 370M).
///
///     frame      DIF sequences of 150 blocks of 80 bytes; several channels one after the other
///     sequence   header | subcode 2 | VAUX 3 | audio 1, video 15, nine times
///     block      type 3 bits, 5 reserved | sequence 4 bits, channel, … | number | 77 bytes
///     pack       in subcode, VAUX and before audio: type | 4 bytes
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Essence/DV/Format.h"

#include <optional>

namespace MXF::Zelm::Essence::DV {

struct MXFZELM_EXPORT ClockTime {
    std::uint8_t hours = 0, minutes = 0, seconds = 0, frames = 0;
    bool dropFrame = false;
};

/// Of the sound that is in the frame, by its first source pack.
struct MXFZELM_EXPORT Sound {
    std::uint32_t samplingRate = 0;
    std::uint8_t bits = 0;     ///< 16, 20, or 12 that are not linear
    bool isLocked = false;     ///< to the pictures
    std::uint32_t samples = 0; ///< of each channel, in this frame
};

struct MXFZELM_EXPORT FrameHeader {
    /// Valid as long as the program.
    Format const* format = nullptr;

    bool isWide = false; ///< 16:9, else 4:3

    std::optional<ClockTime> timecode = std::nullopt;
    std::optional<Sound> sound = std::nullopt;

    /// Bytes that `read` wants to see: a frame's first DIF sequence.
    static constexpr std::uint32_t size = sequenceSize;

    /// Reads a frame from its first byte on, as much of it as is there. Absent when it is none, or of a form
    /// that is not known.
    static std::optional<FrameHeader> read(DataIO::Chain const& frame);

    /// By the first block alone: a frame begins here that has 50 fields or frames a second and their like, or
    /// has not. Absent for anything else.
    static std::optional<bool> is50(DataIO::Chain const& frame);
};

} // namespace MXF::Zelm::Essence::DV
