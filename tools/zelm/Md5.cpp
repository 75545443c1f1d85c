#include "Md5.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace Zelm {

namespace {

constexpr std::uint32_t sines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

std::uint32_t word(const unsigned char* bytes) {
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

/// What a step of a round mixes.
template <unsigned round>
std::uint32_t mixed(std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    if constexpr (round == 0)
        return d ^ (b & (c ^ d));
    else if constexpr (round == 1)
        return c ^ (d & (b ^ c));
    else if constexpr (round == 2)
        return b ^ c ^ d;
    else
        return c ^ (b | ~d);
}

/// Which word of the block step `i` of a round takes.
template <unsigned round>
constexpr unsigned wordOf(unsigned i) {
    constexpr unsigned factors[4] = {1, 5, 3, 7}, starts[4] = {0, 1, 5, 0};
    return (factors[round] * i + starts[round]) % 16;
}

template <unsigned round>
void mixRound(std::uint32_t const (&words)[16], std::uint32_t& a, std::uint32_t& b, std::uint32_t& c,
              std::uint32_t& d) {
    auto const step = [&](std::uint32_t& to, std::uint32_t x, std::uint32_t y, std::uint32_t z, unsigned i) {
        to += mixed<round>(x, y, z) + sines[16 * round + i] + words[wordOf<round>(i)];
        to = std::rotl(to, shifts[round][i % 4]) + x;
    };
    for (unsigned i = 0; i < 16; i += 4) {
        step(a, b, c, d, i);
        step(d, a, b, c, i + 1);
        step(c, d, a, b, i + 2);
        step(b, c, d, a, i + 3);
    }
}

} // namespace

void Md5::addBlock(const unsigned char* block) {
    std::uint32_t words[16];
    for (std::size_t i = 0; i < 16; ++i)
        words[i] = word(block + 4 * i);
    auto [a, b, c, d] = state_;
    mixRound<0>(words, a, b, c, d);
    mixRound<1>(words, a, b, c, d);
    mixRound<2>(words, a, b, c, d);
    mixRound<3>(words, a, b, c, d);
    state_[0] += a;
    state_[1] += b;
    state_[2] += c;
    state_[3] += d;
}

void Md5::add(const unsigned char* bytes, std::size_t size) {
    auto filled = static_cast<std::size_t>(size_ % blockSize);
    size_ += size;
    while (size != 0) {
        if (filled == 0 && size >= blockSize) {
            addBlock(bytes);
            bytes += blockSize;
            size -= blockSize;
            continue;
        }
        std::size_t const count = std::min(size, blockSize - filled);
        std::memcpy(rest_ + filled, bytes, count);
        filled = (filled + count) % blockSize;
        bytes += count;
        size -= count;
        if (filled == 0)
            addBlock(rest_);
    }
}

std::string Md5::finish() {
    constexpr unsigned char padding[blockSize] = {0x80};
    std::uint64_t const bits = size_ * 8;
    unsigned char length[8];
    for (unsigned i = 0; i < 8; ++i)
        length[i] = static_cast<unsigned char>(bits >> (8 * i) & 0xFF);
    add(padding, 1 + static_cast<std::size_t>((119 - size_ % blockSize) % blockSize));
    add(length, sizeof length);
    std::string text;
    constexpr char digits[] = "0123456789abcdef";
    for (std::uint32_t const part : state_)
        for (unsigned i = 0; i < 4; ++i) {
            unsigned const byte = part >> (8 * i) & 0xFF;
            text += {digits[byte >> 4], digits[byte & 15]};
        }
    return text;
}

} // namespace Zelm
