#include "MXF/Zelm/Types/Strings.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"

namespace MXF::Zelm::Types {

namespace {

constexpr char16_t largestIso7 = 0x7F;

std::vector<unsigned char> iso7Bytes(std::u16string_view text) {
    std::vector<unsigned char> bytes;
    for (char16_t const character : text) {
        if (character > largestIso7)
            throw Exceptions::InvalidValue("'" + Platform::toUtf8(text) + "' has characters beyond 7 bits");
        bytes.push_back(static_cast<unsigned char>(character));
    }
    return bytes;
}

} // namespace

UTF16String::UTF16String(std::u16string_view text) {
    bytes_.resize(2 * text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
        ByteCoders::codeInteger(static_cast<std::uint16_t>(text[i]), bytes_.data() + 2 * i);
}

std::u16string UTF16String::value() const {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes_.size(); i += 2) {
        auto const unit = ByteCoders::decodeInteger<std::uint16_t>(bytes_.data() + i);
        if (unit == 0)
            break;
        text.push_back(static_cast<char16_t>(unit));
    }
    return text;
}

ISO7String::ISO7String(std::string_view text)
    : VariableSizeType(iso7Bytes(std::u16string(text.begin(), text.end()))) {}

std::string ISO7String::value() const {
    return std::string(bytes_.begin(), std::find(bytes_.begin(), bytes_.end(), 0));
}

std::u16string ISO7String::toString() const {
    std::u16string text;
    for (char const character : value()) {
        auto const unit = static_cast<unsigned char>(character);
        text.push_back(unit > largestIso7 ? u'\uFFFD' : static_cast<char16_t>(unit));
    }
    return text;
}

ISO7String ISO7String::fromText(std::u16string_view text) { return ISO7String(iso7Bytes(text)); }

} // namespace MXF::Zelm::Types
