/// The forms of DV (IEC 61834, SMPTE 314M, 370M).
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <cstdint>

namespace MXF::Zelm::Essence::DV {

/// A DIF block, and a DIF sequence of 150 of them, in bytes.
inline constexpr std::uint32_t blockSize = 80;
inline constexpr std::uint32_t sequenceSize = 150 * blockSize;

/// One of them. A value.
struct MXFZELM_EXPORT Format {
    enum class Family : std::uint8_t {
        IEC,    ///< IEC 61834
        DVBased ///< SMPTE 314M and 370M
    };

    Family family;
    std::uint8_t megabits; ///< a second: 25, 50, 100

    /// STYPE of the video source pack.
    std::uint8_t signalType;

    /// 50 fields or frames a second and their like: 12 DIF sequences to a channel, else 10.
    bool is50;

    std::uint8_t channels; ///< of DIF sequences, in a frame

    /// As they are shown; fewer samples may be coded.
    std::uint16_t width, height;
    bool isProgressive;

    /// Luma samples to a colour difference sample, along and across lines.
    std::uint8_t horizontalSubsampling, verticalSubsampling;

    Templates::Rational<int> rate; ///< frames a second

    std::uint32_t frameSize() const { return channels * (is50 ? 12u : 10u) * sequenceSize; }

    /// Null when there is none.
    static Format const* find(bool isIEC, bool is50, std::uint8_t signalType);
};

} // namespace MXF::Zelm::Essence::DV
