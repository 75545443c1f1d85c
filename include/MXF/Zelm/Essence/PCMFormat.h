/// The format of uncompressed sound.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstddef>

namespace MXF::Zelm::Essence {

/// Samples in two's complement, the channels of each instant in turn. A value.
struct PCMFormat {
    enum class ByteOrder { Little, Big };

    unsigned channels = 0;

    /// 16, 20, 24 or 32. Samples of 20 bits are the upper ones of 3 bytes.
    unsigned bitsPerSample = 0;

    ByteOrder byteOrder = ByteOrder::Little;

    /// Bytes of a sample of one channel.
    constexpr std::size_t sampleSize() const { return (bitsPerSample + 7) / 8; }

    /// Bytes of an instant: a sample of each channel.
    constexpr std::size_t instantSize() const { return sampleSize() * channels; }

    friend constexpr bool operator==(PCMFormat const&, PCMFormat const&) = default;
};

/// Throws Exceptions::InvalidValue for bits that are none of these, and for other than 1 to 1024 channels.
MXFZELM_EXPORT void requireValid(PCMFormat const& format);

} // namespace MXF::Zelm::Essence
