/// Little-endian integers in memory, as Wave files and AES3 elements have them.
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

namespace MXF::Zelm::Essence {

/// The unsigned integer in the `sizeof(Integer)` bytes at `bytes`, least significant first.
template <class Integer>
constexpr Integer littleEndian(const unsigned char* bytes) {
    static_assert(std::is_unsigned_v<Integer>);
    Integer value = 0;
    for (std::size_t i = sizeof(Integer); i-- > 0;)
        value = static_cast<Integer>((sizeof(Integer) > 1 ? value << 8 : 0) | bytes[i]);
    return value;
}

/// Appends the `sizeof(Integer)` bytes of `value`, least significant first.
template <class Integer>
void appendLittleEndian(Integer value, std::vector<unsigned char>& bytes) {
    static_assert(std::is_unsigned_v<Integer>);
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i) & 0xFF));
}

} // namespace MXF::Zelm::Essence
