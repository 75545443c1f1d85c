/// The identifiers: labels, UUIDs, UMIDs, local tags. Their text forms are those of all fixed-length
/// identifiers.
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Platform/Random.h"
#include "MXF/Zelm/Types/LocalTag.h"
#include "MXF/Zelm/Types/References.h"
#include "MXF/Zelm/Types/TextParsing.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Types {

namespace {

using KLV::IdentificationKind;
using Encoding = StringRepresentationEncodingType;

/// The form that a text has, by its first characters.
Encoding encodingOf(std::u16string_view text) {
    if (text.starts_with(u"urn:"))
        return Encoding::URN;
    if (text.starts_with(u"0x") || text.starts_with(u"0X"))
        return Encoding::PlainHexadecimal;
    if (text.starts_with(u"1.3.52."))
        return Encoding::OID;
    return Encoding::SeparatedHexadecimal;
}

} // namespace

UniversalLabel::UniversalLabel(std::u16string_view text, Encoding encoding) {
    KLV::identificationFromText(text, bytes_.data(), bytes_.size(), IdentificationKind::Label, encoding);
}

bool UniversalLabel::isSmpteLabel() const {
    return bytes_[0] == 0x06 && bytes_[1] == 0x0E && bytes_[2] == 0x2B && bytes_[3] == 0x34;
}

std::u16string UniversalLabel::toString() const {
    return isSmpteLabel() ? toString(Encoding::URN) : UUID(bytes_.data()).toString();
}

std::u16string UniversalLabel::toString(Encoding encoding) const {
    return KLV::identificationToText(bytes_.data(), bytes_.size(), IdentificationKind::Label, encoding);
}

UniversalLabel UniversalLabel::fromText(std::u16string_view text) {
    if (text.starts_with(u"urn:uuid:"))
        return UniversalLabel(UUID::fromText(text).rawBuffer());
    return UniversalLabel(text, encodingOf(text));
}

UUID::UUID(std::u16string_view text, Encoding encoding) {
    KLV::identificationFromText(text, bytes_.data(), bytes_.size(), IdentificationKind::Uuid, encoding);
}

UUID UUID::generate() {
    UUID uuid;
    Platform::randomBytes(uuid.bytes_.data(), uuid.bytes_.size());
    // RFC 4122, 4.4: version 4 in the high nibble of byte 6, variant 10 in the top bits of byte 8.
    uuid[6] = static_cast<unsigned char>((uuid[6] & 0x0F) | 0x40);
    uuid[8] = static_cast<unsigned char>((uuid[8] & 0x3F) | 0x80);
    return uuid;
}

std::u16string UUID::toString() const { return toString(Encoding::URN); }

std::u16string UUID::toString(Encoding encoding) const {
    return KLV::identificationToText(bytes_.data(), bytes_.size(), IdentificationKind::Uuid, encoding);
}

UUID UUID::fromText(std::u16string_view text) {
    constexpr std::size_t bareLength = 36; // 8-4-4-4-12 digits
    if (text.size() == bareLength && text[8] == u'-')
        return UUID(u"urn:uuid:" + std::u16string(text), Encoding::URN);
    return UUID(text, encodingOf(text));
}

UMID32::UMID32(std::u16string_view text, Encoding encoding) {
    KLV::identificationFromText(text, bytes_.data(), bytes_.size(), IdentificationKind::Umid, encoding);
}

UMID32 UMID32::generate(UMIDMaterialType materialType) {
    constexpr unsigned char label[10] = {0x06, 0x0A, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x05, 0x01, 0x01};
    constexpr unsigned char uuidMethod = 0x20;
    constexpr unsigned char bytesThatFollow = 0x13;
    UMID32 umid;
    std::copy(std::begin(label), std::end(label), umid.bytes_.begin());
    umid[10] = static_cast<unsigned char>(materialType);
    umid[11] = uuidMethod;
    umid[12] = bytesThatFollow;
    std::copy_n(UUID::generate().rawBuffer(), 16, umid.bytes_.begin() + 16);
    return umid;
}

std::uint32_t UMID32::instanceNumber() const {
    return static_cast<std::uint32_t>(bytes_[13]) << 16 | static_cast<std::uint32_t>(bytes_[14]) << 8 |
           bytes_[15];
}

std::u16string UMID32::toString() const { return toString(Encoding::URN); }

std::u16string UMID32::toString(Encoding encoding) const {
    return KLV::identificationToText(bytes_.data(), bytes_.size(), IdentificationKind::Umid, encoding);
}

UMID32 UMID32::fromText(std::u16string_view text) { return UMID32(text, encodingOf(text)); }

UMID64::UMID64(UMID32 const& basic) {
    std::copy_n(basic.rawBuffer(), 32, bytes_.begin());
    bytes_[12] = 0x33;
}

UMID64::UMID64(std::u16string_view text, Encoding encoding) {
    KLV::identificationFromText(text, bytes_.data(), bytes_.size(), IdentificationKind::Umid, encoding);
}

UMID32 UMID64::basic() const {
    UMID32 umid(bytes_.data());
    umid[12] = 0x13;
    return umid;
}

std::u16string UMID64::toString() const { return toString(Encoding::URN); }

std::u16string UMID64::toString(Encoding encoding) const {
    return KLV::identificationToText(bytes_.data(), bytes_.size(), IdentificationKind::Umid, encoding);
}

UMID64 UMID64::fromText(std::u16string_view text) { return UMID64(text, encodingOf(text)); }

std::u16string LocalTag::toString() const {
    return KLV::identificationToText(bytes_.data(), bytes_.size(), IdentificationKind::Label,
                                     Encoding::SeparatedHexadecimal);
}

LocalTag LocalTag::fromText(std::u16string_view text) {
    TextCursor cursor(text, "LocalTag");
    cursor.take(u"0x");
    unsigned value = 0;
    for (int i = 0; i < 4; ++i) {
        if (i == 2)
            cursor.take(u".");
        int const digit = ByteCoders::hexadecimalDigit(cursor.next());
        if (digit < 0)
            cursor.fail();
        value = value << 4 | static_cast<unsigned>(digit);
    }
    cursor.requireEnd();
    return LocalTag(static_cast<std::uint16_t>(value));
}

Reference::~Reference() = default;

} // namespace MXF::Zelm::Types
