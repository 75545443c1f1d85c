/// The main header of a JPEG 2000 codestream (ISO/IEC 15444-1 annex A).
///
///     SOC | SIZ | CAP, PRF, CPF, COD, QCD, … | SOT of the first tile-part
///
/// Each marker has two bytes; all but SOC have a length behind it, which counts itself and what follows.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"

#include <cstdint>
#include <vector>

namespace MXF::Zelm::Essence::JPEG2000 {

/// Values of markers.
enum Marker : std::uint16_t {
    startOfCodestream = 0xFF4F,
    extendedCapabilities = 0xFF50,
    imageSize = 0xFF51,
    codingStyleDefault = 0xFF52,
    profile = 0xFF56,
    correspondingProfile = 0xFF59,
    quantisationDefault = 0xFF5C,
    startOfTilePart = 0xFF90,
    endOfCodestream = 0xFFD9
};

/// One component of the picture.
struct MXFZELM_EXPORT Component {
    std::uint8_t depth = 0; ///< bits, 1 to 38
    bool isSigned = false;

    /// The component has one sample for every so many of the reference grid.
    std::uint8_t horizontalSampling = 1, verticalSampling = 1;

    friend bool operator==(Component const&, Component const&) = default;
};

/// What `read` gives; the names of the fields of SIZ are those of the standard, in units of the reference
/// grid.
struct MXFZELM_EXPORT CodestreamHeader {
    using Bytes = std::vector<unsigned char>;

    std::uint16_t rsiz = 0; ///< capabilities and profile
    std::uint32_t xsiz = 0, ysiz = 0, xOsiz = 0, yOsiz = 0;
    std::uint32_t xTsiz = 0, yTsiz = 0, xTOsiz = 0, yTOsiz = 0;
    std::vector<Component> components = {};

    /// Bodies of markers, from behind the length on; empty for those that are not there.
    Bytes codingStyle = {};  ///< COD
    Bytes quantisation = {}; ///< QCD
    Bytes capabilities = {}; ///< CAP
    std::vector<std::uint16_t> profile = {};
    std::vector<std::uint16_t> correspondingProfile = {};

    /// Reads the header of a codestream that `bytes` begin with; what stands behind it is not looked at.
    /// Throws Exceptions::InvalidFormat and Exceptions::InvalidLength with the offset from the front.
    static CodestreamHeader read(DataIO::Chain const& bytes);

    /// Of the picture, in units of the reference grid.
    std::uint32_t width() const { return xsiz - xOsiz; }
    std::uint32_t height() const { return ysiz - yOsiz; }

    /// The first three components were mixed before coding, as is done with red, green and blue.
    bool hasComponentTransform() const { return codingStyle.size() > 4 && codingStyle[4] != 0; }

    friend bool operator==(CodestreamHeader const&, CodestreamHeader const&) = default;
};

} // namespace MXF::Zelm::Essence::JPEG2000
