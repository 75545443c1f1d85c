/// Sound that comes in coded frames: each begins with a header that tells its size, and stands for a fixed
/// number of samples. A further format is a function that reads its header, and a row of `formats`.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace MXF::Zelm::Essence::CodedSound {

enum class Coding {
    MPEG1Layer1,
    MPEG1Layer2,
    MPEG1Layer3,
    MPEG2Layer1, ///< with the lower sampling rates of MPEG-2
    MPEG2Layer2,
    MPEG2Layer3,
    AC3,
    MPEG2AAC,
    MPEG4AAC
};

/// What the header of a frame tells. A value.
struct MXFZELM_EXPORT FrameHeader {
    Coding coding = Coding::MPEG1Layer2;
    std::uint32_t size = 0;         ///< bytes of the frame, header included
    std::uint32_t samples = 0;      ///< of each channel
    std::uint32_t samplingRate = 0; ///< in Hz
    std::uint32_t channels = 0;     ///< 0 when the header does not tell
    std::uint32_t bitRate = 0;      ///< bits a second; 0 when the header does not tell
    std::int8_t dialNorm = 0;       ///< dialogue level in dB of full scale, -31 to -1; 0 when not told

    /// Frames of one sound agree in this much; others may differ from frame to frame.
    bool continues(FrameHeader const& other) const {
        return coding == other.coding && samplingRate == other.samplingRate;
    }

    friend bool operator==(FrameHeader const&, FrameHeader const&) = default;
};

struct MXFZELM_EXPORT Format {
    std::string_view name;  ///< for people
    std::size_t headerSize; ///< bytes that `read` looks at

    /// Reads the header at `bytes`. False when none begins there, or one of a frame of unknown size.
    bool (*read)(const unsigned char* bytes, FrameHeader& header);
};

/// Layers I to III of MPEG-1 and MPEG-2 (ISO/IEC 11172-3, 13818-3), and their extension to still lower
/// sampling rates. Not in free format, whose frames do not tell their size.
MXFZELM_EXPORT Format const& mpegAudio();

/// AC-3 (ATSC A/52).
MXFZELM_EXPORT Format const& ac3();

/// AAC in audio data transport streams (ADTS, ISO/IEC 13818-7, 14496-3).
MXFZELM_EXPORT Format const& adts();

/// All of these.
MXFZELM_EXPORT std::span<Format const* const> formats();

/// The format whose frame begins at `bytes`, judged by this one header; null when none does.
MXFZELM_EXPORT Format const* formatAt(const unsigned char* bytes, std::size_t size);

} // namespace MXF::Zelm::Essence::CodedSound
