/// Numbers and bytes as hexadecimal text, for messages.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace MXF::Zelm::ByteCoders {

/// `value` in upper case, without "0x" and without leading zeros ("0" for 0).
MXFZELM_EXPORT std::string toHexadecimal(std::uint64_t value);

/// Two upper-case digits a byte, with `separator` between bytes unless it is 0.
MXFZELM_EXPORT std::string toHexadecimal(const unsigned char* bytes, std::size_t size, char separator = 0);

/// The value 0 to 15 of a hexadecimal digit in either case, -1 for any other character.
constexpr int hexadecimalDigit(char32_t character) {
    if (character >= U'0' && character <= U'9')
        return static_cast<int>(character - U'0');
    if (character >= U'a' && character <= U'f')
        return static_cast<int>(character - U'a') + 10;
    if (character >= U'A' && character <= U'F')
        return static_cast<int>(character - U'A') + 10;
    return -1;
}

} // namespace MXF::Zelm::ByteCoders
