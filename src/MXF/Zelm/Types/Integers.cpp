#include "MXF/Zelm/Types/Integers.h"

#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

std::u16string integerToText(std::int64_t value) { return Platform::toUtf16(std::to_string(value)); }

std::u16string integerToText(std::uint64_t value) { return Platform::toUtf16(std::to_string(value)); }

std::int64_t integerFromText(std::u16string_view text, std::int64_t smallest, std::int64_t largest,
                             std::string_view typeName) {
    TextCursor cursor(text, typeName);
    std::int64_t const value = cursor.signedNumber(smallest, largest);
    cursor.requireEnd();
    return value;
}

std::uint64_t integerFromText(std::u16string_view text, std::uint64_t smallest, std::uint64_t largest,
                              std::string_view typeName) {
    TextCursor cursor(text, typeName);
    std::uint64_t const value = cursor.number(largest);
    cursor.requireEnd();
    if (value < smallest)
        cursor.fail();
    return value;
}

Boolean Boolean::fromText(std::u16string_view text) {
    if (text == u"true" || text == u"1")
        return Boolean(true);
    if (text != u"false" && text != u"0")
        TextCursor(text, "Boolean").fail();
    return Boolean(false);
}

} // namespace MXF::Zelm::Types
