#include "MXF/Zelm/Types/ByteStrings.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

std::u16string bytesToText(std::vector<unsigned char> const& bytes) {
    return u"0x" + Platform::toUtf16(ByteCoders::toHexadecimal(bytes.data(), bytes.size()));
}

std::vector<unsigned char> bytesFromText(std::u16string_view text, std::string_view typeName) {
    TextCursor cursor(text, typeName);
    std::vector<unsigned char> bytes;
    cursor.require(u"0x");
    while (!cursor.atEnd()) {
        int const high = ByteCoders::hexadecimalDigit(cursor.next());
        int const low = ByteCoders::hexadecimalDigit(cursor.next());
        if (high < 0 || low < 0)
            cursor.fail();
        bytes.push_back(static_cast<unsigned char>(high << 4 | low));
    }
    return bytes;
}

} // namespace MXF::Zelm::Types
