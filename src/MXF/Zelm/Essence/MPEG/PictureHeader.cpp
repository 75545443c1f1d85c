#include "MXF/Zelm/Essence/MPEG/PictureHeader.h"

namespace MXF::Zelm::Essence::MPEG {

PictureCodingExtension PictureCodingExtension::read(DataIO::BitSliceReader& bits) {
    PictureCodingExtension read;
    for (auto& direction : read.fCode)
        for (auto& code : direction)
            code = static_cast<std::uint8_t>(bits.read(4));
    read.intraDCPrecision = static_cast<std::uint8_t>(bits.read(2));
    read.structure = static_cast<PictureStructure>(bits.read(2));
    read.topFieldFirst = bits.readFlag();
    read.framePredFrameDCT = bits.readFlag();
    read.concealmentMotionVectors = bits.readFlag();
    read.qScaleType = bits.readFlag();
    read.intraVLCFormat = bits.readFlag();
    read.alternateScan = bits.readFlag();
    read.repeatFirstField = bits.readFlag();
    read.chroma420Type = bits.readFlag();
    read.progressiveFrame = bits.readFlag();
    return read;
}

PictureHeader PictureHeader::read(DataIO::BitSliceReader& bits) {
    PictureHeader read;
    read.temporalReference = static_cast<std::uint16_t>(bits.read(10));
    read.type = static_cast<PictureType>(bits.read(3));
    read.vbvDelay = static_cast<std::uint16_t>(bits.read(16));
    return read;
}

} // namespace MXF::Zelm::Essence::MPEG
