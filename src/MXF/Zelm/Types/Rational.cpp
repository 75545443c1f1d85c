#include "MXF/Zelm/Types/Rational.h"

#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

Rational::Rational(std::int32_t numerator, std::int32_t denominator) {
    ByteCoders::codeInteger(numerator, bytes_.data());
    ByteCoders::codeInteger(denominator, bytes_.data() + 4);
}

std::u16string Rational::toString() const {
    return Platform::toUtf16(std::to_string(numerator()) + "/" + std::to_string(denominator()));
}

Rational Rational::fromText(std::u16string_view text) {
    using Limits = std::numeric_limits<std::int32_t>;
    TextCursor cursor(text, "Rational");
    auto const part = [&cursor] {
        return static_cast<std::int32_t>(cursor.signedNumber(Limits::min(), Limits::max()));
    };
    std::int32_t const numerator = part();
    std::int32_t const denominator = cursor.take(u"/") ? part() : 1;
    cursor.requireEnd();
    return {numerator, denominator};
}

} // namespace MXF::Zelm::Types
