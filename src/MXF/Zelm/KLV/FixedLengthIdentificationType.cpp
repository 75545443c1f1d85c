#include "MXF/Zelm/KLV/FixedLengthIdentificationType.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <optional>
#include <vector>

namespace MXF::Zelm::KLV {

namespace {

using Encoding = Types::StringRepresentationEncodingType;
using Bytes = std::vector<unsigned char>;

constexpr unsigned char smptePrefix[4] = {0x06, 0x0E, 0x2B, 0x34};

/// The first components of the OID of a SMPTE label: 06 0E is the tag and the length of the coded OID, 2B
/// stands for 1.3 and 34 for 52. Each further byte is one component.
constexpr unsigned oidPrefix[3] = {1, 3, 52};

bool isSmpteLabel(const unsigned char* bytes) { return std::equal(smptePrefix, smptePrefix + 4, bytes); }

int digitAt(std::u16string_view text, std::size_t at) {
    int const digit = ByteCoders::hexadecimalDigit(text[at]);
    if (digit < 0)
        throw Exceptions::BaseException("Label contains non Hexadecimal characters");
    return digit;
}

unsigned char byteAt(std::u16string_view text, std::size_t at) {
    return static_cast<unsigned char>(digitAt(text, at) << 4 | digitAt(text, at + 1));
}

Bytes fromPlain(std::u16string_view text, std::size_t size) {
    if (text.size() >= 2 && !(text[0] == u'0' && (text[1] == u'x' || text[1] == u'X')))
        throw Exceptions::BaseException(
            "Expecting 0x in the start of the plain hexadecimal string representation");
    if (text.size() != 2 + 2 * size)
        throw Exceptions::InvalidLength("Not enough data");
    Bytes bytes;
    for (std::size_t i = 2; i < text.size(); i += 2)
        bytes.push_back(byteAt(text, i));
    return bytes;
}

/// Pairs of digits with one separator between two pairs; `separatorAfter` tells after which bytes it stands.
template <class SeparatorAfter>
Bytes fromGroups(std::u16string_view text, std::size_t size, SeparatorAfter separatorAfter) {
    std::size_t separators = 0;
    for (std::size_t i = 0; i + 1 < size; ++i)
        separators += separatorAfter(i) ? 1 : 0;
    if (text.size() != 2 * size + separators)
        throw Exceptions::InvalidLength("Not enough data");
    Bytes bytes;
    for (std::size_t i = 0, at = 0; i < size; ++i) {
        bytes.push_back(byteAt(text, at));
        at += 2;
        if (i + 1 < size && separatorAfter(i) && ByteCoders::hexadecimalDigit(text[at++]) >= 0)
            throw Exceptions::BaseException("Expections an separator that was not a hexadecimal character");
    }
    return bytes;
}

std::vector<unsigned> oidComponents(std::u16string_view text) {
    std::vector<unsigned> components;
    for (std::size_t at = 0; at <= text.size();) {
        std::size_t const end = std::min(text.find(u'.', at), text.size());
        unsigned value = 0;
        for (std::size_t i = at; i < end; ++i)
            value = text[i] >= u'0' && text[i] <= u'9' && value < 256 ? value * 10 + (text[i] - u'0') : 256;
        if (end == at)
            throw Exceptions::BaseException("Not enough data");
        if (value > 255)
            throw Exceptions::BaseException("OID contains values not in [0 - 255].");
        components.push_back(value);
        at = end + 1;
    }
    return components;
}

Bytes fromOid(std::u16string_view text, std::size_t size) {
    auto const components = oidComponents(text);
    std::size_t const known = std::min(components.size(), std::size(oidPrefix));
    if (!std::equal(oidPrefix, oidPrefix + known, components.begin()))
        throw Exceptions::BaseException("OID contains initial values not according to type");
    std::size_t const expected = size - std::size(smptePrefix) + std::size(oidPrefix);
    if (components.size() > expected)
        throw Exceptions::BaseException("OID contains more elements than expected");
    if (components.size() < expected)
        throw Exceptions::BaseException("Not enough data");
    Bytes bytes(std::begin(smptePrefix), std::end(smptePrefix));
    for (std::size_t i = std::size(oidPrefix); i < components.size(); ++i)
        bytes.push_back(static_cast<unsigned char>(components[i]));
    return bytes;
}

struct UrnForm {
    std::u16string_view prefix;
    bool (*separatorAfter)(std::size_t byte);
    char16_t separator;
};

UrnForm urnForm(IdentificationKind kind) {
    constexpr auto everyFour = [](std::size_t byte) { return byte % 4 == 3; };
    constexpr auto uuidGroups = [](std::size_t byte) {
        return byte == 3 || byte == 5 || byte == 7 || byte == 9;
    };
    switch (kind) {
    case IdentificationKind::Uuid:
        return {u"urn:uuid:", uuidGroups, u'-'};
    case IdentificationKind::Umid:
        return {u"urn:smpte:umid:", everyFour, u'.'};
    case IdentificationKind::Label:
        break;
    }
    return {u"urn:smpte:ul:", everyFour, u'.'};
}

Bytes fromUrn(std::u16string_view text, std::size_t size, IdentificationKind kind) {
    UrnForm const form = urnForm(kind);
    if (!text.starts_with(form.prefix))
        throw Exceptions::BaseException(
            "Can't retrieve in the requested type for the given StringRepresentationEncodingType");
    return fromGroups(text.substr(form.prefix.size()), size, form.separatorAfter);
}

void append(std::u16string& text, unsigned char byte, bool lowerCase) {
    for (int const digit : {byte >> 4, byte & 0xF})
        text.push_back(
            static_cast<char16_t>(digit < 10 ? u'0' + digit : (lowerCase ? u'a' : u'A') + digit - 10));
}

std::u16string toUrn(const unsigned char* bytes, std::size_t size, IdentificationKind kind) {
    UrnForm const form = urnForm(kind);
    std::u16string text(form.prefix);
    for (std::size_t i = 0; i < size; ++i) {
        append(text, bytes[i], true);
        if (i + 1 < size && form.separatorAfter(i))
            text.push_back(form.separator);
    }
    return text;
}

std::u16string toOid(const unsigned char* bytes, std::size_t size) {
    std::u16string text = u"1.3.52";
    for (std::size_t i = std::size(smptePrefix); i < size; ++i) {
        text.push_back(u'.');
        for (char const digit : std::to_string(bytes[i]))
            text.push_back(static_cast<char16_t>(digit));
    }
    return text;
}

std::u16string toHexadecimal(const unsigned char* bytes, std::size_t size, bool separated) {
    std::u16string text = separated ? u"" : u"0x";
    for (std::size_t i = 0; i < size; ++i) {
        if (separated && i != 0)
            text.push_back(u'.');
        append(text, bytes[i], false);
    }
    return text;
}

} // namespace

std::u16string identificationToText(const unsigned char* bytes, std::size_t size, IdentificationKind kind,
                                    Encoding encoding) {
    switch (encoding) {
    case Encoding::PlainHexadecimal:
        return toHexadecimal(bytes, size, false);
    case Encoding::SeparatedHexadecimal:
        return toHexadecimal(bytes, size, true);
    case Encoding::URN:
        return toUrn(bytes, size, kind);
    case Encoding::OID:
        if (kind == IdentificationKind::Label && isSmpteLabel(bytes))
            return toOid(bytes, size);
        break;
    }
    throw Exceptions::BaseException(
        "Can't represent the requested type in the given StringRepresentationEncodingType");
}

void identificationFromText(std::u16string_view text, unsigned char* bytes, std::size_t size,
                            IdentificationKind kind, Encoding encoding) {
    std::optional<Bytes> read;
    switch (encoding) {
    case Encoding::PlainHexadecimal:
        read = fromPlain(text, size);
        break;
    case Encoding::SeparatedHexadecimal:
        read = fromGroups(text, size, [](std::size_t) { return true; });
        break;
    case Encoding::URN:
        read = fromUrn(text, size, kind);
        break;
    case Encoding::OID:
        if (kind == IdentificationKind::Label)
            read = fromOid(text, size);
        break;
    }
    if (!read)
        throw Exceptions::BaseException(
            "Can't retrieve in the requested type for the given StringRepresentationEncodingType");
    std::copy(read->begin(), read->end(), bytes);
}

} // namespace MXF::Zelm::KLV
