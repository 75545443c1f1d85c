/// The same bytes cut in several ways: what reads chains is run over each.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "support/Bytes.h"

#include <algorithm>

namespace MXF::Zelm::Test {

/// Bytes of which no two stretches are alike.
inline Bytes pattern(std::size_t size) {
    Bytes bytes(size);
    std::uint32_t state = 1;
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>((state = state * 1664525u + 1013904223u) >> 24);
    return bytes;
}

/// Slices of `first`, `step` more, 2 `step` more … bytes, each in memory of its own.
inline DataIO::Chain cut(Bytes const& bytes, std::size_t first, std::size_t step) {
    DataIO::Chain chain;
    for (std::size_t at = 0, size = first; at < bytes.size(); at += size, size += step)
        chain.append(DataIO::Slice::copyOf(bytes.data() + at, std::min(size, bytes.size() - at)));
    return chain;
}

/// Contiguous, byte by byte, and at odd places.
inline std::vector<DataIO::Chain> cuts(Bytes const& bytes) {
    return {cut(bytes, std::max<std::size_t>(bytes.size(), 1), 0), cut(bytes, 1, 0), cut(bytes, 3, 2)};
}

inline Bytes bytesOf(DataIO::Chain const& chain) {
    Bytes bytes(static_cast<std::size_t>(chain.size()));
    bytes.resize(static_cast<std::size_t>(chain.copyTo(bytes.data(), ~0ull)));
    return bytes;
}

inline Bytes slice(Bytes const& bytes, std::uint64_t from, std::uint64_t size) {
    auto const begin =
        bytes.begin() + static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(from, bytes.size()));
    return {begin, begin + static_cast<std::ptrdiff_t>(
                               std::min(size, static_cast<std::uint64_t>(bytes.end() - begin)))};
}

} // namespace MXF::Zelm::Test
