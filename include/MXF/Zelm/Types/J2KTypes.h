/// The JPEG 2000 types (SMPTE 422M): parts of the codestream's main header as properties (ISO/IEC 15444-1).
#pragma once

#include "MXF/Zelm/Types/ByteStrings.h"

namespace MXF::Zelm::Types {

/// Size and sampling of one picture component: Ssiz, XRsiz, YRsiz of the SIZ marker.
class MXFZELM_EXPORT J2KPictureComponent final
    : public FixedSizeType<J2KPictureComponent, Identifiers::J2KPictureComponent, 3> {
public:
    using FixedSizeType::FixedSizeType;
    J2KPictureComponent() = default;

    /// `depth` in bits, 1 to 38; the component has one sample for every `horizontal` by `vertical` of the
    /// grid.
    J2KPictureComponent(unsigned depth, bool isSigned, std::uint8_t horizontal, std::uint8_t vertical);

    unsigned depth() const { return (bytes_[0] & 0x7Fu) + 1; }
    bool isSigned() const { return (bytes_[0] & 0x80) != 0; }
    std::uint8_t horizontalSampling() const { return bytes_[1]; }
    std::uint8_t verticalSampling() const { return bytes_[2]; }

    /// "12 bit unsigned 1x1".
    std::u16string toString() const override;

    /// Throws Exceptions::InvalidFormat.
    static J2KPictureComponent fromText(std::u16string_view text);
};

/// The body of the COD marker: Scod, progression order, layers (2 bytes), component transform, decomposition
/// levels, code-block width and height (exponents less 2), code-block style, transform, precinct sizes.
class MXFZELM_EXPORT J2KCodingStyleDefault final
    : public VariableSizeType<J2KCodingStyleDefault, Identifiers::J2KCodingStyleDefault> {
public:
    using VariableSizeType::VariableSizeType;

    /// "LRCP", "RLCP", "RPCL", "PCRL" or "CPRL"; empty when the value is too short or the order unknown.
    std::string_view progressionOrder() const;

    /// Quality layers; 0 when the value is too short.
    unsigned layers() const { return bytes_.size() >= 4 ? bytes_[2] * 256u + bytes_[3] : 0; }

    /// Decomposition levels; 0 when the value is too short.
    unsigned decompositionLevels() const { return bytes_.size() >= 6 ? bytes_[5] : 0; }

    /// True for the 5-3 wavelet, false for the 9-7 one or when the value is too short.
    bool isReversible() const { return bytes_.size() >= 10 && bytes_[9] == 1; }

    /// "Scod=01 order=CPRL layers=1 mct=1 levels=6 xcb=3 ycb=3 style=00 transform=9-7 precincts=77.88.88";
    /// hexadecimal ("0x…") for a value that is no COD marker.
    std::u16string toString() const override;

    /// Reads both forms. Throws Exceptions::InvalidFormat.
    static J2KCodingStyleDefault fromText(std::u16string_view text);
};

/// The body of the QCD marker: Sqcd (style in the low five bits, guard bits in the high three), then a step
/// size for each subband: one byte without quantisation (style 0), else two.
class MXFZELM_EXPORT J2KQuantisationDefault final
    : public VariableSizeType<J2KQuantisationDefault, Identifiers::J2KQuantisationDefault> {
public:
    using VariableSizeType::VariableSizeType;

    /// 0 none, 1 scalar derived, 2 scalar expounded; 0 when the value is empty.
    unsigned style() const { return bytes_.empty() ? 0 : bytes_[0] & 0x1Fu; }

    /// 0 to 7; 0 when the value is empty.
    unsigned guardBits() const { return bytes_.empty() ? 0 : bytes_[0] >> 5; }

    /// "style=2 guard=1 steps=7F1E.7F00.7EE2", a step of style 0 with two digits; hexadecimal ("0x…") for a
    /// value that is no QCD marker.
    std::u16string toString() const override;

    /// Reads both forms. Throws Exceptions::InvalidFormat.
    static J2KQuantisationDefault fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
