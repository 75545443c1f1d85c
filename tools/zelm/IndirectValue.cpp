#include "IndirectValue.h"

#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>

namespace Zelm {

namespace {

constexpr std::size_t headerSize = 17;

std::uint64_t integer(const unsigned char* bytes, std::size_t size, bool littleEndian) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | bytes[littleEndian ? size - 1 - i : i];
    return value;
}

std::string utf16(const unsigned char* bytes, std::size_t size, bool littleEndian) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < size; i += 2) {
        auto const unit = static_cast<char16_t>(integer(bytes + i, 2, littleEndian));
        if (unit == 0)
            break;
        text.push_back(unit);
    }
    return MXF::Zelm::Platform::toUtf8(text);
}

/// Bytes 8 to 15 of the label of the type. The structure's fields are one of 4 bytes and two of 2, and the
/// rest as it is.
std::uint64_t typeOf(const unsigned char* bytes, bool littleEndian) {
    return integer(bytes + 1, 4, littleEndian) << 32 | integer(bytes + 5, 2, littleEndian) << 16 |
           integer(bytes + 7, 2, littleEndian);
}

// Bytes 8 to 15 of the labels of the types (types register): 01 01 nn 00 … integers, 01 04 01 00 … Boolean.
constexpr std::uint64_t integerTypes = 0x0101;
constexpr std::uint64_t booleanType = 0x0104010000000000;
constexpr std::uint64_t rationalType = 0x0301010000000000;
constexpr std::uint64_t utf16StringType = 0x0110020000000000;

} // namespace

Json decodeIndirect(std::vector<unsigned char> const& bytes) {
    if (bytes.size() < headerSize || (bytes[0] != 'L' && bytes[0] != 'B'))
        return nullptr;
    bool const littleEndian = bytes[0] == 'L';
    const unsigned char* const value = bytes.data() + headerSize;
    std::size_t const size = bytes.size() - headerSize;
    std::uint64_t const type = typeOf(bytes.data(), littleEndian);
    if (type == utf16StringType)
        return utf16(value, size, littleEndian);
    if (type == booleanType && size == 1)
        return value[0] != 0;
    if (type == rationalType && size == 8)
        return std::to_string(static_cast<std::int32_t>(integer(value, 4, littleEndian))) + "/" +
               std::to_string(static_cast<std::int32_t>(integer(value + 4, 4, littleEndian)));
    std::uint64_t const kind = type >> 40 & 0xFF; // 01 to 04 unsigned, 05 to 08 signed, of 1, 2, 4, 8 bytes
    if (type >> 48 != integerTypes || (type & 0xFFFFFFFFFF) != 0 || kind < 1 || kind > 8 ||
        size != std::size_t{1} << ((kind - 1) % 4))
        return nullptr;
    std::uint64_t const number = integer(value, size, littleEndian);
    if (kind <= 4)
        return number;
    std::size_t const unusedBits = 64 - 8 * size;
    return static_cast<std::int64_t>(number << unusedBits) >> unusedBits;
}

} // namespace Zelm
