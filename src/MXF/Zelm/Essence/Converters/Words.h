/// Samples as words of 32 bits, of which they are the upper ones.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace MXF::Zelm::Essence::Converters {

/// A sample of `size` bytes, 2 to 4, in one byte order.
template <std::size_t size, std::endian order>
struct Word {
    static constexpr std::size_t bytes = size;

    static std::uint32_t load(const unsigned char* at) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value |= std::uint32_t{at[i]} << shift(i);
        return value;
    }
    static void store(std::uint32_t value, unsigned char* at) {
        for (std::size_t i = 0; i < size; ++i)
            at[i] = static_cast<unsigned char>(value >> shift(i) & 0xFF);
    }

private:
    static constexpr unsigned shift(std::size_t i) {
        return static_cast<unsigned>(8 * (order == std::endian::big ? 3 - i : 4 - size + i));
    }
};

template <std::size_t size>
using LittleWord = Word<size, std::endian::little>;

} // namespace MXF::Zelm::Essence::Converters
