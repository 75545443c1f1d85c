/// A SMPTE universal label (SMPTE 298M) as the value of a property.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT UniversalLabel final
    : public FixedSizeType<UniversalLabel, Identifiers::UniversalLabel, 16> {
public:
    using FixedSizeType::FixedSizeType;
    UniversalLabel() = default;

    /// The same 16 bytes: any key serves as a label.
    UniversalLabel(KLV::Key const& key) : FixedSizeType(key.rawBuffer()) {}

    /// Reads a text. Throws Exceptions::BaseException with what is wrong.
    UniversalLabel(std::u16string_view text, StringRepresentationEncodingType encoding);

    unsigned char operator[](int index) const { return bytes_[static_cast<std::size_t>(index)]; }
    unsigned char& operator[](int index) { return bytes_[static_cast<std::size_t>(index)]; }

    KLV::Key key() const { return KLV::Key(bytes_); }

    /// True for a SMPTE label (06 0E 2B 34 …); a property of type AUID may hold a UUID instead.
    bool isSmpteLabel() const;

    /// "urn:smpte:ul:…" for a SMPTE label, "urn:uuid:…", in the order of the bytes, for anything else.
    std::u16string toString() const override;
    std::u16string toString(StringRepresentationEncodingType encoding) const;

    /// Reads any of the text forms. Throws Exceptions::BaseException with what is wrong.
    static UniversalLabel fromText(std::u16string_view text);

    friend std::strong_ordering operator<=>(UniversalLabel const& a, UniversalLabel const& b) {
        return a.bytes_ <=> b.bytes_;
    }
};

/// Equal but for the version (byte 7).
inline bool equalButForVersion(UniversalLabel const& a, UniversalLabel const& b) {
    return std::memcmp(a.rawBuffer() + 8, b.rawBuffer() + 8, 8) == 0 &&
           std::memcmp(a.rawBuffer(), b.rawBuffer(), 7) == 0;
}

/// Equal in all bits that are set in `mask`.
inline bool compareMasked(UniversalLabel const& a, UniversalLabel const& b, UniversalLabel const& mask) {
    return KLV::compareMasked(a.key(), b.key(), mask.key());
}

} // namespace MXF::Zelm::Types
