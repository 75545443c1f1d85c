/// Strings: of 16-bit units (UTF-16, big-endian) and of 7-bit characters (ISO 646). A zero unit ends the
/// text; what stands behind it is kept but not part of the text. Files hold strings with and without such an
/// end.
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT UTF16String final : public VariableSizeType<UTF16String, Identifiers::UTF16String> {
public:
    using VariableSizeType::VariableSizeType;
    UTF16String() = default;

    /// The text, without a terminating zero.
    explicit UTF16String(std::u16string_view text);

    /// The text up to the first zero unit; an odd last byte is passed over.
    std::u16string value() const;
    std::u16string toString() const override { return value(); }
    static UTF16String fromText(std::u16string_view text) { return UTF16String(text); }
};

class MXFZELM_EXPORT ISO7String final : public VariableSizeType<ISO7String, Identifiers::ISO7String> {
public:
    using VariableSizeType::VariableSizeType;
    ISO7String() = default;

    /// The text, without a terminating zero. Throws Exceptions::InvalidValue when a character is above 7F.
    explicit ISO7String(std::string_view text);

    /// The text up to the first zero byte, as it stands in the file.
    std::string value() const;

    /// The text; bytes above 7F, which ISO 646 does not have, become U+FFFD.
    std::u16string toString() const override;

    /// Throws Exceptions::InvalidValue when a character is above 7F.
    static ISO7String fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
