/// A rational number: two 32-bit integers. 0/0 is unknown.
#pragma once

#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

/// Copied as it is, never reduced; `==` compares the bytes, the rationals of `value()` compare by what they
/// are worth.
class MXFZELM_EXPORT Rational final : public FixedSizeType<Rational, Identifiers::Rational, 8> {
public:
    using FixedSizeType::FixedSizeType;
    Rational() = default;
    Rational(std::int32_t numerator, std::int32_t denominator);
    explicit Rational(Templates::Rational<int> const& value) : Rational(value.numerator, value.denominator) {}

    std::int32_t numerator() const { return ByteCoders::decodeInteger<std::int32_t>(bytes_.data()); }
    std::int32_t denominator() const { return ByteCoders::decodeInteger<std::int32_t>(bytes_.data() + 4); }
    Templates::Rational<int> value() const { return {numerator(), denominator()}; }

    /// "30000/1001".
    std::u16string toString() const override;

    /// Reads "30000/1001" or "25". Throws Exceptions::InvalidFormat.
    static Rational fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
