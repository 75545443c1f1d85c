/// Picture descriptors in luma and colour differences, filled from what the headers of any coding tell.
#pragma once

#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <optional>

namespace MXF::Zelm::GenericContainer {

/// The codes of ISO/IEC 13818-2 and 14496-10 for primaries, transfer and matrix, which are the same.
struct ColourCodes {
    static constexpr std::uint8_t unknown = 2;

    std::uint8_t primaries = unknown;
    std::uint8_t transfer = unknown;
    std::uint8_t matrix = unknown;
};

struct PictureFacts {
    bool isProgressive = true;

    /// Of frames, in samples and lines: as they are shown, and as they are coded.
    std::uint32_t width = 0, height = 0;
    std::uint32_t codedWidth = 0, codedHeight = 0;

    /// Coded fields and frames are filled up to a multiple of it, in samples and lines.
    std::uint32_t macroblock = 16;

    /// Of each field: lines of the vertical interval that pictures begin with.
    std::uint32_t linesAbove = 0;

    /// 0 without colour, 1 4:2:0, 2 4:2:2, 3 4:4:4.
    std::uint8_t chromaFormat = 1;
    std::uint32_t bits = 8;
    bool isFullRange = false;
    std::uint8_t colorSiting = Metadata::Structural::CDCIEssenceDescriptor::unknownSiting;

    /// Of the picture.
    Templates::Rational<int> aspectRatio = {};

    /// Of two fields, when it is known.
    std::optional<bool> isTopFirst = std::nullopt;
    ColourCodes colours = {};
};

/// All but label, coding and sample rate.
void describePictureFacts(Metadata::Structural::CDCIEssenceDescriptor& descriptor, PictureFacts const& facts);

} // namespace MXF::Zelm::GenericContainer
