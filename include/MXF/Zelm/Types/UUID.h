/// A UUID (RFC 4122), in network order.
#pragma once

#include "MXF/Zelm/KLV/FixedLengthIdentificationType.h"
#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT UUID final : public FixedSizeType<UUID, Identifiers::UUID, 16> {
public:
    using FixedSizeType::FixedSizeType;
    UUID() = default;

    /// Reads a text (no OID). Throws Exceptions::BaseException with what is wrong.
    UUID(std::u16string_view text, StringRepresentationEncodingType encoding);

    /// A new random UUID (version 4), another at each call.
    static UUID generate();

    unsigned char operator[](int index) const { return bytes_[static_cast<std::size_t>(index)]; }
    unsigned char& operator[](int index) { return bytes_[static_cast<std::size_t>(index)]; }

    /// True when all bytes are zero.
    bool isNull() const { return bytes_ == std::array<unsigned char, 16>{}; }

    /// "urn:uuid:…".
    std::u16string toString() const override;
    std::u16string toString(StringRepresentationEncodingType encoding) const;

    /// Reads any of the text forms; also a UUID without "urn:uuid:". Throws Exceptions::BaseException.
    static UUID fromText(std::u16string_view text);

    friend std::strong_ordering operator<=>(UUID const& a, UUID const& b) { return a.bytes_ <=> b.bytes_; }
};

} // namespace MXF::Zelm::Types
