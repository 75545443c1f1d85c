/// What a stream of AES3 sound is.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Rational.h"

namespace MXF::Zelm::Essence::AES3 {

class ChannelStatus;

/// Channels, bits and rate of a stream. A value; zeros stand for "unknown".
struct MXFZELM_EXPORT AES3Info {
    unsigned channels = 0;

    /// Bits of a sample: 16, 20 or 24 in SMPTE 302M.
    unsigned bitsPerSample = 0;

    /// Instants a second.
    Templates::Rational<int> samplingRate = {};

    /// Takes bits and rate from a channel status block, as far as it says them.
    void read(ChannelStatus const& status);

    /// A professional block that says linear sound of these bits and this rate, locked, without emphasis, in
    /// two channels, with its CRC. Throws Exceptions::InvalidValue for bits other than 16 to 24, or a rate
    /// that AES3 has no code for.
    ChannelStatus channelStatus() const;

    /// The same channels, bits and value of the rate.
    friend MXFZELM_EXPORT bool operator==(AES3Info const& a, AES3Info const& b);

    /// Ordered by channels, then bits, then rate, an unknown one first.
    friend MXFZELM_EXPORT bool operator<(AES3Info const& a, AES3Info const& b);
};

} // namespace MXF::Zelm::Essence::AES3
