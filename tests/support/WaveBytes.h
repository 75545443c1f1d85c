/// The bytes of Wave files.
#pragma once

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

inline Bytes ascii(std::string_view text) { return {text.begin(), text.end()}; }

/// An integer, little-endian.
template <class Integer>
Bytes little(Integer value) {
    auto const bytes = number(value);
    return {bytes.rbegin(), bytes.rend()};
}

/// A chunk with its pad byte.
inline Bytes chunk(std::string_view id, Bytes const& content) {
    return ascii(id) + little(static_cast<std::uint32_t>(content.size())) + content +
           Bytes(content.size() % 2, 0);
}

inline Bytes concatenatedChunks(std::size_t count) {
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes = bytes + chunk("none", {});
    return bytes;
}

inline Bytes riff(std::string_view id, Bytes const& content) {
    auto const size = id == "RIFF" ? static_cast<std::uint32_t>(content.size() + 4) : 0xFFFFFFFFu;
    return ascii(id) + little(size) + ascii("WAVE") + content;
}

/// A plain PCM format chunk.
inline Bytes waveFormat(std::uint16_t channels, std::uint32_t rate, std::uint16_t bits) {
    auto const block = static_cast<std::uint16_t>(channels * (bits / 8));
    return chunk("fmt ", hex("01 00") + little(channels) + little(rate) + little(rate * block) +
                             little(block) + little(bits));
}

} // namespace MXF::Zelm::Test
