/// What an AVI file says of itself and of its streams.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Essence::AVI {

/// Four characters as they stand in a file, the first in the lowest byte.
using FourCC = std::uint32_t;

constexpr FourCC fourCC(const char (&text)[5]) {
    FourCC code = 0;
    for (int i = 3; i >= 0; --i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

/// "avih".
struct MainHeader {
    std::uint32_t microsecondsPerFrame = 0;
    std::uint32_t flags = 0;

    /// Of the first RIFF chunk only.
    std::uint32_t totalFrames = 0;

    std::uint32_t streams = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// "strf" of video: a bitmap's header.
struct VideoFormat {
    std::int32_t width = 0;

    /// Negative when the rows of an uncompressed picture stand from the top down.
    std::int32_t height = 0;

    std::uint16_t bitCount = 0;
    FourCC compression = 0;
};

/// "strf" of sound.
struct SoundFormat {
    /// 1 for PCM; what WAVE_FORMAT_EXTENSIBLE stands for is put in its place.
    std::uint16_t tag = 0;

    std::uint16_t channels = 0;
    std::uint32_t samplingRate = 0;

    /// Bytes of an instant.
    std::uint16_t blockAlign = 0;

    std::uint16_t bitsPerSample = 0;
};

enum class Content {
    Unknown,
    DV,            ///< video alone; the sound is in other streams (type 2)
    InterleavedDV, ///< with its sound (type 1)
    MJPEG,
    PCM
};

/// "strh", "strf" and "strn" of a stream. A value.
struct MXFZELM_EXPORT StreamHeader {
    /// "vids", "auds", "iavs", "txts", "mids".
    FourCC type = 0;

    FourCC handler = 0;

    /// Samples a second; 0/0 when it is not said.
    Templates::Rational<std::int64_t> rate = {};

    std::uint32_t start = 0;

    /// Samples in all: pictures, or instants of sound.
    std::uint32_t length = 0;

    /// Bytes of a sample, 0 where each stands in a chunk of its own.
    std::uint32_t sampleSize = 0;

    std::optional<VideoFormat> video = {};
    std::optional<SoundFormat> sound = {};

    /// "strf" as it is, up to 64 KiB.
    std::vector<unsigned char> format = {};

    std::string name = {};

    bool isVideo() const { return type == fourCC("vids"); }
    bool isSound() const { return type == fourCC("auds"); }

    Content content() const;
};

} // namespace MXF::Zelm::Essence::AVI
