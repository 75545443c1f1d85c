/// What stands before the payload of a packet of an elementary stream (PES, ISO/IEC 13818-1).
///
///     00 00 01    stream_id    length (2)    10 flags (2)    header data length    PTS DTS …    stuffing
///     00 00 01    stream_id    length (2)    stuffing FF …    01 buffer (2)    PTS DTS    or 0F    in MPEG-1
///
/// Streams such as padding and program maps have no more than the length.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace MXF::Zelm::Essence::MPEG {

/// When an access unit is presented and decoded, on a clock of 90 kHz that starts anew every 2^33 ticks.
struct Timestamps {
    std::optional<std::uint64_t> presentation = {};

    /// Absent where it is the same.
    std::optional<std::uint64_t> decoding = {};

    friend bool operator==(Timestamps const&, Timestamps const&) = default;
};

/// The third byte of a start code 00 00 01 that says what follows, where it is not a plain stream.
enum StreamId : std::uint8_t {
    ProgramEnd = 0xB9,
    PackHeader = 0xBA,
    SystemHeader = 0xBB,
    ProgramStreamMap = 0xBC,
    PrivateStream1 = 0xBD,
    PaddingStream = 0xBE,
    PrivateStream2 = 0xBF
};

/// A value.
struct MXFZELM_EXPORT PESHeader {
    /// No header is longer.
    static constexpr std::size_t largestSize = 9 + 255;

    /// C0 to DF sound, E0 to EF video, or one of StreamId.
    std::uint8_t streamId = 0;

    /// Bytes behind the field, 0 for not said.
    std::uint16_t packetLength = 0;

    Timestamps timestamps = {};

    /// The payload is encrypted.
    bool isScrambled = false;

    /// An access unit begins with the payload.
    bool isAligned = false;

    /// Bytes before the payload.
    std::size_t size = 0;

    /// Bytes of the payload; absent where they are not said.
    std::optional<std::size_t> payloadSize() const;

    /// Reads the header at `bytes`; none when more than the `size` bytes that are there are needed, which are
    /// `largestSize` at most. Throws Exceptions::InvalidFormat when it is not one, or is longer than the
    /// packet.
    static std::optional<PESHeader> read(const unsigned char* bytes, std::size_t size);
};

} // namespace MXF::Zelm::Essence::MPEG
