/// The 16-byte key of a KLV packet (SMPTE 336M), and the predicates that tell by its bytes what a packet is.
///
/// Byte numbers are 0-based. Bytes 0 to 3 are 06 0E 2B 34; byte 4 is the category (01 dictionaries, 02
/// groups, 03 wrappers, 04 labels); byte 5 is the registry and, for groups, the coding; byte 7 is the
/// version.
#pragma once

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/KLV/FixedLengthIdentificationType.h"
#include "MXF/Zelm/Platform/Export.h"

#include <cstring>
#include <iosfwd>

namespace MXF::Zelm::KLV {

class Value;

class MXFZELM_EXPORT Key : public FixedLengthIdentificationType<16> {
public:
    using FixedLengthIdentificationType::FixedLengthIdentificationType;

    constexpr Key() = default;

    /// Reads the 16 bytes from a value. Throws Exceptions::InvalidLength when fewer are left.
    explicit Key(Value& value);

    /// Reads a text. Keys have all forms but OID, for which Exceptions::BaseException is thrown with "Don't
    /// know how to initialize Key in the given string representation format".
    Key(std::u16string_view text, Types::StringRepresentationEncodingType encoding);

    /// The text of the key. Throws Exceptions::BaseException with "Don't know how to represent Key in the
    /// given string representation format" for OID.
    std::u16string toString(Types::StringRepresentationEncodingType encoding) const;

    /// Bytes of the local tags of a local set with this key: 1, 2 or 4; 0 for any other key.
    unsigned localTagFieldLength() const;

    /// Bytes of the item lengths of a local set with this key: 1, 2 or 4, 0 for BER; 0 also for any other
    /// key.
    unsigned lengthFieldLength() const;
};

/// Writes the separated hexadecimal form.
MXFZELM_EXPORT std::ostream& operator<<(std::ostream& out, Key const& key);

inline namespace Literals {

/// A key out of 32 hexadecimal digits, with dots or blanks wherever they help the eye; any other number of
/// digits does not compile.
consteval Key operator""_key(const char* text, std::size_t size) {
    Key key;
    int digits = 0;
    for (std::size_t i = 0; i < size; ++i) {
        if (text[i] == '.' || text[i] == ' ')
            continue;
        int const digit = ByteCoders::hexadecimalDigit(static_cast<unsigned char>(text[i]));
        if (digit < 0 || digits == 32)
            throw "a key has 32 hexadecimal digits";
        key[digits / 2] = static_cast<unsigned char>(key[digits / 2] << 4 | digit);
        ++digits;
    }
    if (digits != 32)
        throw "a key has 32 hexadecimal digits";
    return key;
}

} // namespace Literals

/// First five bytes of every group (set or pack) key.
inline constexpr unsigned char groupKeyPattern[5] = {0x06, 0x0E, 0x2B, 0x34, 0x02};
/// Bytes 6 to 12 of structural metadata set keys (SMPTE 377M).
inline constexpr unsigned char mxfStructuralKeyPattern[7] = {0x01, 0x01, 0x0D, 0x01, 0x01, 0x01, 0x01};
/// Bytes 6 to 11 of descriptive metadata set keys (SMPTE 377M).
inline constexpr unsigned char mxfDescriptiveKeyPattern[6] = {0x01, 0x01, 0x0D, 0x01, 0x04, 0x01};
/// The key of index table segments (SMPTE 377M).
inline constexpr unsigned char INDEXTABLE_SEGMENT_KEY[16] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                                             0x0D, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01, 0x00};
/// Prefix of essence container labels.
inline constexpr unsigned char mxfEssenceContainerLabels[11] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01,
                                                                0x01, 0x01, 0x0D, 0x01, 0x03};
/// Prefix of generic container essence element keys (SMPTE 379M).
inline constexpr unsigned char mxfEssenceDictionaryGenericContainerV1Keys[12] = {
    0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01};
/// Bytes 6 to 11 of generic container application group keys: system item packs and sets.
inline constexpr unsigned char mxfGroupsDictionaryGCApplicationsV1_byte6[6] = {0x01, 0x01, 0x0D,
                                                                               0x01, 0x03, 0x01};
/// The key of KLV fill items (SMPTE 336M). Not constant, so that a writer can set its version byte (byte 7)
/// before the first call of `fillItemKey()`.
extern MXFZELM_EXPORT unsigned char FILL_ITEM_PACK_KEY[16];

/// The one key of all fill items that are written, built from `FILL_ITEM_PACK_KEY`.
MXFZELM_EXPORT Key const& fillItemKey();

namespace Detail {

/// True when `key` holds the bytes of `pattern` from byte `from` on.
template <std::size_t N>
bool holds(Key const& key, unsigned char const (&pattern)[N], std::size_t from = 0) {
    return std::memcmp(key.rawBuffer() + from, pattern, N) == 0;
}

} // namespace Detail

/// A local set of any coding.
inline bool isLocalSet(Key const& key) {
    return (key[5] & 0x87) == 0x03 && Detail::holds(key, groupKeyPattern);
}

/// A local set with 2-byte tags and 2-byte lengths, the coding of MXF header metadata.
inline bool isMXFDefaultLocalSet(Key const& key) {
    return key[5] == 0x53 && Detail::holds(key, groupKeyPattern);
}

/// A fixed-length pack.
inline bool isFixedPack(Key const& key) { return key[5] == 0x05 && Detail::holds(key, groupKeyPattern); }

/// A set of structural metadata; bytes 13 and 14, which tell the class, are free.
inline bool isStructuralMetadataSet(Key const& key) {
    return key[15] == 0x00 && isMXFDefaultLocalSet(key) && Detail::holds(key, mxfStructuralKeyPattern, 6);
}

/// A set of descriptive metadata.
inline bool isDescriptiveMetadataSet(Key const& key) {
    return isLocalSet(key) && Detail::holds(key, mxfDescriptiveKeyPattern, 6);
}

/// A set of structural or descriptive metadata.
inline bool isMetadataSet(Key const& key) {
    return isStructuralMetadataSet(key) || isDescriptiveMetadataSet(key);
}

/// An index table segment: all 16 bytes count, but byte 14, counted from 0, is 00 in the files of some
/// writers.
inline bool isIndexTableKlvSegment(Key const& key) {
    return std::memcmp(key.rawBuffer(), INDEXTABLE_SEGMENT_KEY, 14) == 0 &&
           key[14] <= INDEXTABLE_SEGMENT_KEY[14] && key[15] == INDEXTABLE_SEGMENT_KEY[15];
}

/// A fill item of any registry version (byte 7 does not count).
inline bool isFillItem(Key const& key) {
    return std::memcmp(key.rawBuffer() + 8, FILL_ITEM_PACK_KEY + 8, 8) == 0 &&
           std::memcmp(key.rawBuffer(), FILL_ITEM_PACK_KEY, 7) == 0;
}

/// A generic container essence element, or a system item pack or set, which counts as essence.
inline bool isEssence(Key const& key) {
    if (Detail::holds(key, mxfEssenceDictionaryGenericContainerV1Keys))
        return true;
    return (isLocalSet(key) || isFixedPack(key)) &&
           Detail::holds(key, mxfGroupsDictionaryGCApplicationsV1_byte6, 6);
}

/// Equal in all bits that are set in `mask`.
inline bool compareMasked(Key const& a, Key const& b, Key const& mask) {
    for (int i = 0; i < 16; ++i)
        if (((a[i] ^ b[i]) & mask[i]) != 0)
            return false;
    return true;
}

/// Equal but for the version (byte 7).
inline bool equalButForVersion(Key const& a, Key const& b) {
    return std::memcmp(a.rawBuffer() + 8, b.rawBuffer() + 8, 8) == 0 &&
           std::memcmp(a.rawBuffer(), b.rawBuffer(), 7) == 0;
}

} // namespace MXF::Zelm::KLV
