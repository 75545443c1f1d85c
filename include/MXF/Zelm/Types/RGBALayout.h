/// The components of a stored pixel in their order: eight pairs of a code ('R', 'G', 'B', 'A' alpha, 'F'
/// fill, 'Y', …) and a depth in bits (SMPTE 377M annex). A pair 00 00 ends the list.
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT RGBALayout final : public FixedSizeType<RGBALayout, Identifiers::RGBALayout, 16> {
public:
    struct Component {
        unsigned char code = 0;  ///< the character of the component, or D8 to DA for X, Y, Z
        unsigned char depth = 0; ///< bits 1 to 32; 253, 254, 255 are half, single and double float

        friend bool operator==(Component const&, Component const&) = default;
    };

    using FixedSizeType::FixedSizeType;
    RGBALayout() = default;

    /// At most eight components. Throws Exceptions::InvalidLength for more.
    explicit RGBALayout(std::vector<Component> const& components);

    /// The components before the first pair 00 00.
    std::vector<Component> components() const;

    /// "R:12 G:12 B:12 F:4"; a code that is no letter or digit is written as "0xD8:12". "none" when there are
    /// none.
    std::u16string toString() const override;

    /// Throws Exceptions::InvalidFormat.
    static RGBALayout fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
