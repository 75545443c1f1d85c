#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

namespace MXF::Zelm::ByteCoders {

namespace {
constexpr char digits[] = "0123456789ABCDEF";
}

std::string toHexadecimal(std::uint64_t value) {
    std::string text;
    do {
        text.insert(text.begin(), digits[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    return text;
}

std::string toHexadecimal(const unsigned char* bytes, std::size_t size, char separator) {
    std::string text;
    text.reserve(size * (separator != 0 ? 3 : 2));
    for (std::size_t i = 0; i < size; ++i) {
        if (separator != 0 && i != 0)
            text.push_back(separator);
        text.push_back(digits[bytes[i] >> 4]);
        text.push_back(digits[bytes[i] & 0xF]);
    }
    return text;
}

} // namespace MXF::Zelm::ByteCoders
