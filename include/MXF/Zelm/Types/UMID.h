/// Unique material identifiers (SMPTE 330M).
///
///     byte   0  06 0A 2B 34 01 01 01 05 01 01   label
///           10  material type
///           11  methods: material number in the high nibble, instance number in the low one
///           12  13 (19 bytes follow, basic) or 33 (51, extended)
///           13  instance number, 3 bytes
///           16  material number, 16 bytes
///           32  source pack of an extended UMID: time and date (8), place (12), country, organisation, user
///           (4 each)
#pragma once

#include "MXF/Zelm/Types/UUID.h"

namespace MXF::Zelm::Types {

/// What a UMID identifies.
enum class UMIDMaterialType : unsigned char {
    Picture = 0x05,         ///< one picture component
    MultiplePicture = 0x06, ///< several picture components
    Sound = 0x08,           ///< one sound component
    MultipleSound = 0x09,   ///< several sound components
    Data = 0x0B,            ///< one auxiliary component
    MultipleData = 0x0C,    ///< several auxiliary components
    Mixed = 0x0D,           ///< a group of different components
    NotIdentified = 0x0F,
};

/// A basic UMID.
class MXFZELM_EXPORT UMID32 final : public FixedSizeType<UMID32, Identifiers::UMID32, 32> {
public:
    using FixedSizeType::FixedSizeType;
    UMID32() = default;

    /// Reads a text (no OID). Throws Exceptions::BaseException with what is wrong.
    UMID32(std::u16string_view text, StringRepresentationEncodingType encoding);

    /// A UMID for new material: its material number is a new UUID (method 2), its instance number 0.
    static UMID32 generate(UMIDMaterialType materialType);

    unsigned char operator[](int index) const { return bytes_[static_cast<std::size_t>(index)]; }
    unsigned char& operator[](int index) { return bytes_[static_cast<std::size_t>(index)]; }

    /// True when all bytes are zero: the end of a chain of source references.
    bool isNull() const { return bytes_ == std::array<unsigned char, 32>{}; }

    /// Byte 10; a file may hold values that the enumeration does not name.
    UMIDMaterialType materialType() const { return static_cast<UMIDMaterialType>(bytes_[10]); }

    /// 24 bits.
    std::uint32_t instanceNumber() const;
    UUID materialNumber() const { return UUID(bytes_.data() + 16); }

    /// "urn:smpte:umid:…".
    std::u16string toString() const override;
    std::u16string toString(StringRepresentationEncodingType encoding) const;
    static UMID32 fromText(std::u16string_view text);

    friend std::strong_ordering operator<=>(UMID32 const& a, UMID32 const& b) {
        return a.bytes_ <=> b.bytes_;
    }
};

/// An extended UMID.
class MXFZELM_EXPORT UMID64 final : public FixedSizeType<UMID64, Identifiers::UMID64, 64> {
public:
    using FixedSizeType::FixedSizeType;
    UMID64() = default;

    /// The extended form of a basic UMID, its source pack all zero.
    explicit UMID64(UMID32 const& basic);

    /// Reads a text (no OID). Throws Exceptions::BaseException with what is wrong.
    UMID64(std::u16string_view text, StringRepresentationEncodingType encoding);

    unsigned char operator[](int index) const { return bytes_[static_cast<std::size_t>(index)]; }
    unsigned char& operator[](int index) { return bytes_[static_cast<std::size_t>(index)]; }

    /// The basic UMID, without the source pack.
    UMID32 basic() const;

    std::u16string toString() const override;
    std::u16string toString(StringRepresentationEncodingType encoding) const;
    static UMID64 fromText(std::u16string_view text);

    friend std::strong_ordering operator<=>(UMID64 const& a, UMID64 const& b) {
        return a.bytes_ <=> b.bytes_;
    }
};

} // namespace MXF::Zelm::Types
