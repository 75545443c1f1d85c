#include "MXF/Zelm/KLV/Key.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Platform/Text.h"

#include <ostream>

namespace MXF::Zelm::KLV {

using Encoding = Types::StringRepresentationEncodingType;

unsigned char FILL_ITEM_PACK_KEY[16] = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                                        0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};

Key const& fillItemKey() {
    static Key const key(FILL_ITEM_PACK_KEY);
    return key;
}

namespace {

bool keysHave(Encoding encoding) {
    return encoding == Encoding::PlainHexadecimal || encoding == Encoding::SeparatedHexadecimal ||
           encoding == Encoding::URN;
}

} // namespace

Key::Key(Value& value) { value.readValue(rawBuffer(), size()); }

Key::Key(std::u16string_view text, Encoding encoding) {
    if (!keysHave(encoding))
        throw Exceptions::BaseException(
            "Don't know how to initialize Key in the given string representation format");
    fromText(text, IdentificationKind::Label, encoding);
}

std::u16string Key::toString(Encoding encoding) const {
    if (!keysHave(encoding))
        throw Exceptions::BaseException(
            "Don't know how to represent Key in the given string representation format");
    return toText(IdentificationKind::Label, encoding);
}

// Byte 5 of a local set key (SMPTE 336M): bits 6-5 the form of the item lengths (0 BER, 1 one byte, 2 two
// bytes, 3 four bytes), bits 4-3 that of the local tags (0 one byte, 1 BER OID, 2 two bytes, 3 four bytes),
// bits 2-0 011.
unsigned Key::localTagFieldLength() const {
    if (!isLocalSet(*this))
        return 0;
    switch ((*this)[5] & 0x18) {
    case 0x18:
        return 4;
    case 0x10:
        return 2;
    default:
        return 1;
    }
}

unsigned Key::lengthFieldLength() const {
    if (!isLocalSet(*this))
        return 0;
    return ((*this)[5] & 0x60) == 0x60 ? 4u : static_cast<unsigned>((*this)[5]) >> 5;
}

std::ostream& operator<<(std::ostream& out, Key const& key) {
    return out << Platform::toUtf8(key.toString(Encoding::SeparatedHexadecimal));
}

} // namespace MXF::Zelm::KLV
