#include "MXF/Zelm/Essence/MPEG/VideoPictures.h"

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::int64_t references = 1024;

/// The number nearest to `last` that has these low bits.
std::int64_t nearest(std::int64_t last, std::int64_t reference) {
    std::int64_t const distance = ((reference - last) % references + references) % references;
    return last + (distance > references / 2 ? distance - references : distance);
}

Picture::Type typeOf(PictureHeader const& picture) {
    switch (picture.type) {
    case PictureType::P:
        return Picture::Type::P;
    case PictureType::B:
        return Picture::Type::B;
    default: // D pictures are intra coded too
        return Picture::Type::I;
    }
}

} // namespace

std::optional<Picture> VideoPictures::next(VideoUnit const& unit) {
    if (!unit.picture)
        return std::nullopt;
    Picture picture;
    picture.type = typeOf(*unit.picture);
    picture.isKey = picture.type == Picture::Type::I;
    picture.isClosed = unit.group && unit.group->closed;
    picture.hasSequenceHeader = unit.sequence.has_value();
    picture.access = Picture::Access::None;
    if (picture.isKey && picture.hasSequenceHeader)
        picture.access = picture.isClosed ? Picture::Access::Full : Picture::Access::Open;
    picture.beginsCount = unit.group || !any_;
    picture.order = picture.beginsCount ? unit.picture->temporalReference
                                        : nearest(order_, unit.picture->temporalReference);
    order_ = picture.order;
    any_ = true;
    return picture;
}

} // namespace MXF::Zelm::Essence::MPEG
