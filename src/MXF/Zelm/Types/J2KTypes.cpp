#include "MXF/Zelm/Types/J2KTypes.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

namespace {

/// Bits of a component at most (ISO/IEC 15444-1, A.5.1).
constexpr unsigned mostBits = 38;

/// In the order of their numbers in the COD marker (ISO/IEC 15444-1, A.6.1).
constexpr std::string_view progressionOrders[] = {"LRCP", "RLCP", "RPCL", "PCRL", "CPRL"};
constexpr std::string_view transforms[] = {"9-7", "5-3"};

/// Bytes of the COD marker's body before the precinct sizes.
constexpr std::size_t codingStyleSize = 10;

/// The position in `names` of the name that stands next.
template <std::size_t N>
unsigned char takeName(TextCursor& cursor, std::string_view const (&names)[N]) {
    for (std::size_t i = 0; i < N; ++i)
        if (cursor.take(Platform::toUtf16(names[i])))
            return static_cast<unsigned char>(i);
    cursor.fail();
}

/// A byte of two hexadecimal digits.
unsigned char takeByte(TextCursor& cursor) {
    int const high = ByteCoders::hexadecimalDigit(cursor.next());
    int const low = ByteCoders::hexadecimalDigit(cursor.next());
    if (high < 0 || low < 0)
        cursor.fail();
    return static_cast<unsigned char>(high << 4 | low);
}

} // namespace

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
    return bytes_.size() >= 2 && bytes_[1] < std::size(progressionOrders) ? progressionOrders[bytes_[1]]
                                                                          : std::string_view();
}

std::u16string J2KCodingStyleDefault::toString() const {
    bool const isMarker =
        bytes_.size() >= codingStyleSize && !progressionOrder().empty() && bytes_[9] < std::size(transforms);
    if (!isMarker)
        return bytesToText(bytes_);
    std::string text = "Scod=" + ByteCoders::toHexadecimal(bytes_.data(), 1) +
                       " order=" + std::string(progressionOrder()) + " layers=" + std::to_string(layers()) +
                       " mct=" + std::to_string(bytes_[4]) + " levels=" + std::to_string(bytes_[5]) +
                       " xcb=" + std::to_string(bytes_[6]) + " ycb=" + std::to_string(bytes_[7]) +
                       " style=" + ByteCoders::toHexadecimal(&bytes_[8], 1) +
                       " transform=" + std::string(transforms[bytes_[9]]);
    if (bytes_.size() > codingStyleSize)
        text += " precincts=" + ByteCoders::toHexadecimal(bytes_.data() + codingStyleSize,
                                                          bytes_.size() - codingStyleSize, '.');
    return Platform::toUtf16(text);
}

J2KCodingStyleDefault J2KCodingStyleDefault::fromText(std::u16string_view text) {
    constexpr std::string_view typeName = "J2KCodingStyleDefault";
    if (text.starts_with(u"0x"))
        return J2KCodingStyleDefault(bytesFromText(text, typeName));
    TextCursor cursor(text, typeName);
    std::vector<unsigned char> bytes(codingStyleSize);
    auto const number = [&cursor](std::u16string_view name, std::uint64_t largest) {
        cursor.require(name);
        return static_cast<unsigned>(cursor.number(largest));
    };
    cursor.require(u"Scod=");
    bytes[0] = takeByte(cursor);
    cursor.require(u" order=");
    bytes[1] = takeName(cursor, progressionOrders);
    unsigned const layers = number(u" layers=", 0xFFFF);
    bytes[2] = static_cast<unsigned char>(layers >> 8);
    bytes[3] = static_cast<unsigned char>(layers & 0xFF);
    bytes[4] = static_cast<unsigned char>(number(u" mct=", 0xFF));
    bytes[5] = static_cast<unsigned char>(number(u" levels=", 0xFF));
    bytes[6] = static_cast<unsigned char>(number(u" xcb=", 0xFF));
    bytes[7] = static_cast<unsigned char>(number(u" ycb=", 0xFF));
    cursor.require(u" style=");
    bytes[8] = takeByte(cursor);
    cursor.require(u" transform=");
    bytes[9] = takeName(cursor, transforms);
    if (cursor.take(u" precincts="))
        do
            bytes.push_back(takeByte(cursor));
        while (cursor.take(u"."));
    cursor.requireEnd();
    return J2KCodingStyleDefault(std::move(bytes));
}

std::u16string J2KQuantisationDefault::toString() const {
    std::size_t const stepSize = style() == 0 ? 1 : 2;
    if (bytes_.size() <= 1 || (bytes_.size() - 1) % stepSize != 0 || style() > 2)
        return bytesToText(bytes_);
    std::string text =
        "style=" + std::to_string(style()) + " guard=" + std::to_string(guardBits()) + " steps=";
    for (std::size_t at = 1; at < bytes_.size(); at += stepSize)
        text += (at == 1 ? "" : ".") + ByteCoders::toHexadecimal(bytes_.data() + at, stepSize);
    return Platform::toUtf16(text);
}

J2KQuantisationDefault J2KQuantisationDefault::fromText(std::u16string_view text) {
    constexpr std::string_view typeName = "J2KQuantisationDefault";
    if (text.starts_with(u"0x"))
        return J2KQuantisationDefault(bytesFromText(text, typeName));
    TextCursor cursor(text, typeName);
    cursor.require(u"style=");
    auto const style = static_cast<unsigned>(cursor.number(2));
    cursor.require(u" guard=");
    auto const guard = static_cast<unsigned>(cursor.number(7));
    cursor.require(u" steps=");
    std::vector<unsigned char> bytes{static_cast<unsigned char>(guard << 5 | style)};
    do {
        bytes.push_back(takeByte(cursor));
        if (style != 0)
            bytes.push_back(takeByte(cursor));
    } while (cursor.take(u"."));
    cursor.requireEnd();
    return J2KQuantisationDefault(std::move(bytes));
}

} // namespace MXF::Zelm::Types
