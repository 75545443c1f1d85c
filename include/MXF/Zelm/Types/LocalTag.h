/// The 2-byte tag that stands for a property's label in a local set (SMPTE 377M).
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT LocalTag final : public IntegerType<LocalTag, Identifiers::LocalTag, std::uint16_t> {
public:
    using IntegerType::IntegerType;

    /// Tags from here on are dynamic: they have a meaning in one partition only, given by its primer. Those
    /// below are static, fixed by the standards.
    static constexpr std::uint16_t firstDynamic = 0x8000;

    bool isDynamic() const { return value() >= firstDynamic; }

    /// "3C.0A".
    std::u16string toString() const override;

    /// Reads "3C.0A", "3C0A" or "0x3C0A". Throws Exceptions::InvalidFormat.
    static LocalTag fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
