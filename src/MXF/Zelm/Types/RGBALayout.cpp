#include "MXF/Zelm/Types/RGBALayout.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

namespace {

constexpr std::size_t mostComponents = 8;

bool isLetterOrDigit(unsigned char code) {
    return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') || (code >= '0' && code <= '9');
}

} // namespace

RGBALayout::RGBALayout(std::vector<Component> const& components) {
    if (components.size() > mostComponents)
        throw Exceptions::InvalidLength("A pixel layout has at most 8 components, not " +
                                        std::to_string(components.size()));
    for (std::size_t i = 0; i < components.size(); ++i) {
        bytes_[2 * i] = components[i].code;
        bytes_[2 * i + 1] = components[i].depth;
    }
}

std::vector<RGBALayout::Component> RGBALayout::components() const {
    std::vector<Component> found;
    for (std::size_t i = 0; i < bytes_.size() && (bytes_[i] != 0 || bytes_[i + 1] != 0); i += 2)
        found.push_back({bytes_[i], bytes_[i + 1]});
    return found;
}

std::u16string RGBALayout::toString() const {
    std::string text;
    for (auto const& component : components()) {
        text += text.empty() ? "" : " ";
        if (isLetterOrDigit(component.code))
            text.push_back(static_cast<char>(component.code));
        else
            text += "0x" + ByteCoders::toHexadecimal(&component.code, 1);
        text += ":" + std::to_string(component.depth);
    }
    return Platform::toUtf16(text.empty() ? "none" : text);
}

RGBALayout RGBALayout::fromText(std::u16string_view text) {
    if (text == u"none")
        return {};
    TextCursor cursor(text, "RGBALayout");
    std::vector<Component> components;
    while (!cursor.atEnd()) {
        if (!components.empty())
            cursor.require(u" ");
        Component component;
        if (cursor.take(u"0x")) {
            int const high = ByteCoders::hexadecimalDigit(cursor.next());
            int const low = ByteCoders::hexadecimalDigit(cursor.next());
            if (high < 0 || low < 0)
                cursor.fail();
            component.code = static_cast<unsigned char>(high << 4 | low);
        } else {
            char16_t const code = cursor.next();
            if (code > 0x7F)
                cursor.fail();
            component.code = static_cast<unsigned char>(code);
        }
        cursor.require(u":");
        component.depth = static_cast<unsigned char>(cursor.number(255));
        components.push_back(component);
    }
    if (components.size() > mostComponents)
        cursor.fail();
    return RGBALayout(components);
}

} // namespace MXF::Zelm::Types
