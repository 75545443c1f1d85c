/// Active format description and bar data in an ancillary data packet, DID 41, SDID 05 (SMPTE 2016-1,
/// 2016-3): which part of the picture is meant to be seen.
///
///     byte 0       0, AFD (4 bits), aspect ratio, 0 0
///     byte 1, 2    0
///     byte 3       top, bottom, left, right bar given, 0 0 0 0
///     byte 4-7     two bar values of 16 bits
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace MXF::Zelm::Essence::Ancillary {

inline constexpr unsigned char activeFormatDID = 0x41, activeFormatSDID = 0x05;

/// A value.
struct MXFZELM_EXPORT ActiveFormat {
    static constexpr std::size_t byteCount = 8;

    /// The description, 0 to 15; 0 is undefined, 8 the whole frame.
    unsigned code = 0;

    /// The coded frame is 16:9, else 4:3.
    bool isWide = false;

    /// The last line of the top bar and the first line of the bottom bar, or the last sample of the left bar
    /// and the first sample of the right bar.
    std::optional<std::uint16_t> top = {}, bottom = {}, left = {}, right = {};

    /// What `code` says in words: "16:9 centre".
    const char* text() const;

    std::array<unsigned char, byteCount> bytes() const;

    friend bool operator==(ActiveFormat const&, ActiveFormat const&) = default;
};

/// Reads the user data of a packet; none when there is less than `ActiveFormat::byteCount` of it.
MXFZELM_EXPORT std::optional<ActiveFormat> readActiveFormat(std::span<unsigned char const> userData);

} // namespace MXF::Zelm::Essence::Ancillary
