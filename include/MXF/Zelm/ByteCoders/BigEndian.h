/// Big-endian integers in memory, as MXF has them everywhere.
#pragma once

#include <cstddef>
#include <type_traits>

namespace MXF::Zelm::ByteCoders {

/// The integer in the `sizeof(Integer)` bytes at `bytes`, most significant first.
template <class Integer>
constexpr Integer decodeInteger(const unsigned char* bytes) {
    std::make_unsigned_t<Integer> value = 0;
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
        value = static_cast<std::make_unsigned_t<Integer>>((sizeof(Integer) > 1 ? value << 8 : 0) | bytes[i]);
    return static_cast<Integer>(value);
}

/// Writes `value` to the `sizeof(Integer)` bytes at `bytes`, most significant first.
template <class Integer>
constexpr void codeInteger(Integer value, unsigned char* bytes) {
    auto rest = static_cast<std::make_unsigned_t<Integer>>(value);
    for (std::size_t i = sizeof(Integer); i-- > 0;) {
        bytes[i] = static_cast<unsigned char>(rest & 0xFF);
        if constexpr (sizeof(Integer) > 1)
            rest = static_cast<std::make_unsigned_t<Integer>>(rest >> 8);
    }
}

} // namespace MXF::Zelm::ByteCoders
