#include "MXF/Zelm/Essence/MPEG/PictureHeader.h"

#include "MXF/Zelm/Essence/MPEG/BitFields.h"

namespace MXF::Zelm::Essence::MPEG {

PictureCodingExtension PictureCodingExtension::read(DataIO::BitSliceReader& bits) {
    PictureCodingExtension read;
    BitFields fields(bits, 29);
    for (auto& direction : read.fCode)
        for (auto& code : direction)
            code = fields.take<std::uint8_t>(4);
    read.intraDCPrecision = fields.take<std::uint8_t>(2);
    read.structure = fields.take<PictureStructure>(2);
    read.topFieldFirst = fields.takeFlag();
    read.framePredFrameDCT = fields.takeFlag();
    read.concealmentMotionVectors = fields.takeFlag();
    read.qScaleType = fields.takeFlag();
    read.intraVLCFormat = fields.takeFlag();
    read.alternateScan = fields.takeFlag();
    read.repeatFirstField = fields.takeFlag();
    read.chroma420Type = fields.takeFlag();
    read.progressiveFrame = fields.takeFlag();
    return read;
}

PictureHeader PictureHeader::read(DataIO::BitSliceReader& bits) {
    PictureHeader read;
    BitFields fields(bits, 29);
    read.temporalReference = fields.take<std::uint16_t>(10);
    read.type = fields.take<PictureType>(3);
    read.vbvDelay = fields.take<std::uint16_t>(16);
    return read;
}

} // namespace MXF::Zelm::Essence::MPEG
