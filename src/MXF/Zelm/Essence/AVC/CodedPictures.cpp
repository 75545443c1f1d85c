#include "MXF/Zelm/Essence/AVC/CodedPictures.h"

namespace MXF::Zelm::Essence::AVC {

namespace {

Picture::Type typeOf(AccessUnit const& unit) {
    if (unit.hasBidirectional)
        return Picture::Type::B;
    return unit.hasPredicted ? Picture::Type::P : Picture::Type::I;
}

} // namespace

/// Intra pictures are keys where the standard says that decoding may begin: pictures behind one that is not
/// may be predicted from those before.
std::optional<Picture> CodedPictures::next(AccessUnit const& unit) {
    if (!unit.slice)
        return std::nullopt;
    Picture picture;
    picture.type = typeOf(unit);
    bool const isIntra = picture.type == Picture::Type::I;
    bool const recovers = unit.recoveryFrames == 0u && !unit.brokenLink;
    picture.isKey = isIntra && (unit.slice->isIDR || recovers || unit.sequence->isIntraProfile());
    picture.isClosed = unit.slice->isIDR;
    picture.access = picture.isKey ? Picture::Access::Full : Picture::Access::None;
    picture.hasSequenceHeader = unit.hasSequenceParameters;
    picture.beginsCount = unit.slice->isIDR || unit.slice->resetsMemory || !any_;
    picture.order = counter_.next(*unit.sequence, *unit.parameters, *unit.slice);
    any_ = true;
    return picture;
}

} // namespace MXF::Zelm::Essence::AVC
