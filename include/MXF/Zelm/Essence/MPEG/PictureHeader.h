/// The header of a coded picture of MPEG video, and its extension (ISO/IEC 13818-2).
#pragma once

#include "MXF/Zelm/DataIO/BitSliceReader.h"

#include <optional>

namespace MXF::Zelm::Essence::MPEG {

/// The codes of the standard. Others are reserved, and kept as they are.
enum class PictureType : std::uint8_t { I = 1, P = 2, B = 3, D = 4 };
enum class PictureStructure : std::uint8_t { TopField = 1, BottomField = 2, Frame = 3 };

/// Behind each picture header of MPEG-2.
struct MXFZELM_EXPORT PictureCodingExtension {
    /// Ranges of motion vectors: forward and backward, horizontal and vertical; 15 where there are none.
    std::uint8_t fCode[2][2] = {{15, 15}, {15, 15}};

    /// Bits of the DC coefficients of intra blocks minus 8.
    std::uint8_t intraDCPrecision = 0;

    PictureStructure structure = PictureStructure::Frame;
    bool topFieldFirst = false;
    bool framePredFrameDCT = false;
    bool concealmentMotionVectors = false;
    bool qScaleType = false;
    bool intraVLCFormat = false;
    bool alternateScan = false;
    bool repeatFirstField = false;
    bool chroma420Type = false;
    bool progressiveFrame = false;

    /// Reads what follows the extension's identifier. Throws Exceptions::InvalidLength.
    static PictureCodingExtension read(DataIO::BitSliceReader& bits);
};

struct MXFZELM_EXPORT PictureHeader {
    /// Place in display order, counted from the group's first, modulo 1024. Both fields of a frame have the
    /// same.
    std::uint16_t temporalReference = 0;
    PictureType type = PictureType::I;

    /// 0xFFFF where the rate varies.
    std::uint16_t vbvDelay = 0;

    std::optional<PictureCodingExtension> coding = std::nullopt;

    /// Reads what follows the start code. Throws Exceptions::InvalidLength.
    static PictureHeader read(DataIO::BitSliceReader& bits);

    bool isField() const { return coding && coding->structure != PictureStructure::Frame; }
};

} // namespace MXF::Zelm::Essence::MPEG
