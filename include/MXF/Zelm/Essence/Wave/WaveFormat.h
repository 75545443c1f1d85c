/// What a Wave file says of its sound: the format of its samples, and where it comes from (`bext`, EBU Tech
/// 3285).
#pragma once

#include "MXF/Zelm/Essence/PCMFormat.h"
#include "MXF/Zelm/Platform/Export.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Essence::Wave {

/// Uncompressed samples (PCM), little-endian, the channels of each instant in turn. Those of one byte are
/// unsigned, all others two's complement. A value.
struct MXFZELM_EXPORT WaveFormat {
    /// 1 to 65535.
    std::uint16_t channels = 0;

    /// Instants a second.
    std::uint32_t samplingRate = 0;

    /// Bytes of a sample of one channel, 1 to 4.
    std::uint16_t sampleBytes = 0;

    /// Bits of a sample that count: the highest of its bytes, which may be more.
    std::uint16_t validBits = 0;

    /// The loudspeakers of the channels, lowest bit first (WAVE_FORMAT_EXTENSIBLE: 1 front left, 2 front
    /// right, 4 front centre, 8 low frequency …); 0 for none in particular.
    std::uint32_t channelMask = 0;

    /// Bytes of one instant: a sample of each channel.
    constexpr std::uint32_t blockAlign() const { return std::uint32_t{channels} * sampleBytes; }

    /// The samples as other sound has them: all bits of their bytes, but 20 where so many of 3 bytes count.
    /// Not valid for samples of one byte, which are unsigned.
    constexpr PCMFormat pcmFormat() const {
        return {channels, sampleBytes == 3 && validBits == 20 ? 20u : sampleBytes * 8u};
    }

    /// True for what the plain PCM format cannot say.
    constexpr bool isExtensible() const {
        return channels > 2 || sampleBytes > 2 || validBits != sampleBytes * 8 || channelMask != 0;
    }

    friend constexpr bool operator==(WaveFormat const&, WaveFormat const&) = default;
};

/// The broadcast audio extension. Texts are ASCII and are cut to their fields' sizes.
struct MXFZELM_EXPORT BroadcastExtension {
    std::string description = {};         ///< 256 bytes
    std::string originator = {};          ///< 32 bytes
    std::string originatorReference = {}; ///< 32 bytes
    std::string date = {};                ///< "2024-11-08"
    std::string time = {};                ///< "18:07:23"

    /// Instants from midnight to the first sample.
    std::uint64_t timeReference = 0;

    /// A basic UMID fills the first 32 bytes; all zero for none.
    std::array<unsigned char, 64> umid = {};

    /// Integrated loudness, loudness range, greatest true peak, greatest momentary and short-term loudness,
    /// in hundredths of LUFS, LU and dBTP (version 2); absent before.
    std::optional<std::array<std::int16_t, 5>> loudness = {};

    /// Lines that end in CR LF.
    std::string codingHistory = {};
};

/// A chunk to be carried over as it is.
struct MXFZELM_EXPORT KeptChunk {
    std::string id; ///< four characters
    std::vector<unsigned char> content;

    friend bool operator==(KeptChunk const&, KeptChunk const&) = default;
};

} // namespace MXF::Zelm::Essence::Wave
