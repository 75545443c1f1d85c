#include "MXF/Zelm/Essence/Ancillary/Timecode.h"

namespace MXF::Zelm::Essence::Ancillary {

namespace {

using Utils::PackedTimeCode;

constexpr std::size_t pairCount = 4; // frames, seconds, minutes, hours

/// The four bits that a byte carries.
unsigned nibble(std::span<unsigned char const> bytes, std::size_t index) { return bytes[index] >> 4; }

/// Of frames, seconds, minutes and hours in turn the word has: units, a binary group, tens and flags, another
/// binary group. The packed form has the times first and the groups behind them.
PackedTimeCode packedOf(std::span<unsigned char const> bytes) {
    PackedTimeCode packed{};
    for (std::size_t i = 0; i < pairCount; ++i) {
        packed[i] = static_cast<unsigned char>(nibble(bytes, 4 * i + 2) << 4 | nibble(bytes, 4 * i));
        packed[pairCount + i] =
            static_cast<unsigned char>(nibble(bytes, 4 * i + 1) << 4 | nibble(bytes, 4 * i + 3));
    }
    return packed;
}

unsigned char distributedBits(std::span<unsigned char const> bytes) {
    unsigned value = 0;
    for (std::size_t i = 0; i < 8; ++i)
        value |= (bytes[i] >> 3 & 1u) << i;
    return static_cast<unsigned char>(value);
}

} // namespace

const char* Timecode::sourceText() const {
    constexpr const char* texts[] = {"LTC", "VITC 1", "VITC 2"};
    return source < std::size(texts) ? texts[source] : "other timecode";
}

std::array<unsigned char, Timecode::byteCount> Timecode::bytes() const {
    auto const packed = time.packed();
    std::array<unsigned char, byteCount> out{};
    auto const put = [&out](std::size_t index, unsigned value) {
        out[index] = static_cast<unsigned char>((value & 0x0F) << 4);
    };
    for (std::size_t i = 0; i < pairCount; ++i) {
        put(4 * i, packed[i]);
        put(4 * i + 1, packed[pairCount + i] >> 4u);
        put(4 * i + 2, packed[i] >> 4u);
        put(4 * i + 3, packed[pairCount + i]);
    }
    for (std::size_t i = 0; i < byteCount; ++i) {
        unsigned const bits = i < 8 ? source : flags;
        out[i] = static_cast<unsigned char>(out[i] | (bits >> i % 8 & 1) << 3);
    }
    return out;
}

std::optional<Timecode> readTimecode(std::span<unsigned char const> userData, unsigned framesPerSecond) {
    if (userData.size() < Timecode::byteCount)
        return std::nullopt;
    return Timecode{Utils::TimeCodeExtended::fromPacked(packedOf(userData), framesPerSecond),
                    distributedBits(userData.first(8)), distributedBits(userData.subspan(8, 8))};
}

} // namespace MXF::Zelm::Essence::Ancillary
