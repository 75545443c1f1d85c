#include "MXF/Zelm/Types/J2KTypes.h"

#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

namespace {
constexpr unsigned mostBits = 38;
}

J2KPictureComponent::J2KPictureComponent(unsigned depth, bool isSigned, std::uint8_t horizontal,
                                         std::uint8_t vertical) {
    if (depth < 1 || depth > mostBits)
        throw Exceptions::InvalidValue("A JPEG 2000 component has 1 to 38 bits, not " +
                                       std::to_string(depth));
    bytes_ = {static_cast<unsigned char>((depth - 1) | (isSigned ? 0x80u : 0u)), horizontal, vertical};
}

std::u16string J2KPictureComponent::toString() const {
    return Platform::toUtf16(std::to_string(depth()) + " bit " + (isSigned() ? "signed " : "unsigned ") +
                             std::to_string(horizontalSampling()) + "x" + std::to_string(verticalSampling()));
}

J2KPictureComponent J2KPictureComponent::fromText(std::u16string_view text) {
    TextCursor cursor(text, "J2KPictureComponent");
    auto const depth = static_cast<unsigned>(cursor.number(mostBits));
    cursor.require(u" bit ");
    bool const isSigned = cursor.take(u"signed ");
    if (!isSigned)
        cursor.require(u"unsigned ");
    auto const horizontal = static_cast<std::uint8_t>(cursor.number(255));
    cursor.require(u"x");
    auto const vertical = static_cast<std::uint8_t>(cursor.number(255));
    cursor.requireEnd();
    if (depth == 0)
        cursor.fail();
    return {depth, isSigned, horizontal, vertical};
}

std::string_view J2KCodingStyleDefault::progressionOrder() const {
    constexpr std::string_view names[] = {"LRCP", "RLCP", "RPCL", "PCRL", "CPRL"};
    return bytes_.size() >= 2 && bytes_[1] < std::size(names) ? names[bytes_[1]] : std::string_view();
}

} // namespace MXF::Zelm::Types
