/// The last four bytes of the key of an essence element, which are also the number of its track (SMPTE 379M).
///
///     12    item type        picture, sound, …
///     13    element count    elements of this item type in the content package
///     14    element type     the mapping: MPEG picture wrapped by frames, AES3, …
///     15    element number   tells elements of one item type apart
#pragma once

#include "MXF/Zelm/KLV/Key.h"

#include <cstdint>

namespace MXF::Zelm::GenericContainer {

/// A small value.
class MXFZELM_EXPORT ElementKey {
public:
    /// Byte 12. "CP" items are those of content packages by SMPTE 326M, as of D-10.
    enum ItemType : unsigned char {
        CPSystem = 0x04,
        CPPicture = 0x05,
        CPSound = 0x06,
        CPData = 0x07,
        System = 0x14,
        Picture = 0x15,
        Sound = 0x16,
        Data = 0x17,
        Compound = 0x18
    };

    constexpr ElementKey() = default;

    /// That of a track; 0 stands for none.
    constexpr explicit ElementKey(std::uint32_t trackNumber) : number_(trackNumber) {}

    /// That of a key for which `isContent` holds.
    constexpr explicit ElementKey(KLV::Key const& key)
        : number_(std::uint32_t{key[12]} << 24 | std::uint32_t{key[13]} << 16 | std::uint32_t{key[14]} << 8 |
                  key[15]) {}

    /// The key of a generic container's element with these last bytes.
    static constexpr KLV::Key makeKey(unsigned char itemType, unsigned char elementCount,
                                      unsigned char elementType, unsigned char elementNumber) {
        KLV::Key key;
        for (int i = 0; i < 12; ++i)
            key[i] = KLV::mxfEssenceDictionaryGenericContainerV1Keys[i];
        key[12] = itemType;
        key[13] = elementCount;
        key[14] = elementType;
        key[15] = elementNumber;
        return key;
    }

    /// True for the keys of essence elements and system items, and for private keys of the essence dictionary
    /// (classes 14 and 15), which writers number in the same way.
    static bool isContent(KLV::Key const& key) {
        return (key[4] == 0x01 && key[5] == 0x02 && KLV::Detail::holds(key, smpteLabel)) ||
               KLV::isEssence(key);
    }

    constexpr std::uint32_t trackNumber() const { return number_; }
    constexpr unsigned char itemType() const { return byte(24); }
    constexpr unsigned char elementCount() const { return byte(16); }
    constexpr unsigned char elementType() const { return byte(8); }
    constexpr unsigned char elementNumber() const { return byte(0); }

    /// Part of a system item: a pack or a set of SMPTE 385M or of the generic container.
    constexpr bool isSystem() const { return itemType() == CPSystem || itemType() == System; }

    /// The same element of the content package; the element count, which writers get wrong, does not matter.
    constexpr bool isSameElement(ElementKey other) const {
        return ((number_ ^ other.number_) & 0xFF00FFFFu) == 0;
    }

    friend constexpr bool operator==(ElementKey, ElementKey) = default;

private:
    static constexpr unsigned char smpteLabel[4] = {0x06, 0x0E, 0x2B, 0x34};

    constexpr unsigned char byte(int shift) const { return static_cast<unsigned char>(number_ >> shift); }

    std::uint32_t number_ = 0;
};

} // namespace MXF::Zelm::GenericContainer
