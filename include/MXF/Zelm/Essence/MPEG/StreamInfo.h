/// What the elementary streams of a program are.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstdint>

namespace MXF::Zelm::Essence::MPEG {

enum class Coding {
    Unknown,
    MPEG1Video,
    MPEG2Video,
    MPEG4Video,
    AVC,
    HEVC,
    JPEG2000,
    MPEGAudio,
    AAC,
    AC3,
    S302M
};

/// An elementary stream of a program. A value.
struct MXFZELM_EXPORT StreamInfo {
    /// The packet identifier in a transport stream, else the stream_id.
    std::uint16_t id = 0;

    /// stream_type of the program map (ISO/IEC 13818-1), 0 when there is no map.
    std::uint8_t streamType = 0;

    /// format_identifier of a registration descriptor, such as 42535344 ("BSSD"); 0 for none.
    std::uint32_t registration = 0;

    /// The first byte of each payload in private stream 1 of a disc, such as 80 for the first AC-3; 0 where
    /// there is none.
    std::uint8_t subStream = 0;

    Coding coding = Coding::Unknown;

    bool isVideo() const { return coding >= Coding::MPEG1Video && coding <= Coding::JPEG2000; }
    bool isSound() const { return coding >= Coding::MPEGAudio; }
};

/// The coding that a stream type stands for, together with a registration.
MXFZELM_EXPORT Coding codingOf(std::uint8_t streamType, std::uint32_t registration);

} // namespace MXF::Zelm::Essence::MPEG
