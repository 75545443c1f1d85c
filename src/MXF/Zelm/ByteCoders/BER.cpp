#include "MXF/Zelm/ByteCoders/BER.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::ByteCoders {

unsigned char decodeBERSize(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first == 0x80 || first == 0xFF)
        throw Exceptions::BaseException("Invalid BER size: 0x" + toHexadecimal(first));
    return static_cast<unsigned char>((first & 0x7F) + 1);
}

std::uint64_t decodeBER(const unsigned char* bytes, unsigned char size) {
    if (size == 1)
        return bytes[0];
    std::uint64_t value = 0;
    for (unsigned i = 1; i < size; ++i)
        value = (value << 8) | bytes[i];
    return value;
}

unsigned char calculateBERSize(std::uint64_t value) {
    if (value < 0x80)
        return 1;
    unsigned char size = 1;
    for (; value != 0; value >>= 8)
        ++size;
    return size;
}

void codeBER(std::uint64_t value, unsigned char size, unsigned char* out) {
    if (size == 0 || size > maximumBERSize)
        throw Exceptions::BaseException("Invalid BER size");
    if (size == 1) {
        out[0] = static_cast<unsigned char>(value & 0xFF);
        return;
    }
    out[0] = static_cast<unsigned char>(0x80 | (size - 1));
    for (unsigned i = size - 1u; i > 0; --i, value >>= 8)
        out[i] = static_cast<unsigned char>(value & 0xFF);
}

} // namespace MXF::Zelm::ByteCoders
