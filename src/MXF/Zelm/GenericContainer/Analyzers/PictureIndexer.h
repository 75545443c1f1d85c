/// What the index tells of MPEG pictures (SMPTE 381M).
#pragma once

#include "MXF/Zelm/Essence/MPEG/VideoUnit.h"
#include "MXF/Zelm/GenericContainer/EditUnit.h"

namespace MXF::Zelm::GenericContainer {

/// Finds out where pictures are shown and what they are predicted from, as they come in stored order. They
/// are shown as decoders do: a B picture at once, any other behind the B pictures that follow it. So the
/// order is one without gaps, whatever was cut out of the stream, and on whole streams that of the temporal
/// references.
class PictureIndexer {
public:
    /// The next picture, behind which so many B pictures come before another kind; 0 where pictures are shown
    /// in stored order.
    EditUnitIndex add(Essence::MPEG::VideoUnit const& unit, std::size_t followingB);

private:
    void addKey(Essence::MPEG::VideoUnit const& unit, std::size_t followingB, EditUnitIndex& index);
    void addB(EditUnitIndex& index) const;

    std::int64_t stored_ = -1; // the picture that was added last
    std::int64_t key_ = 0;     // the last I picture
    std::int64_t previousKey_ = 0;
    std::int64_t anchor_ = 0; // the last picture that was no B
    bool isClosed_ = true;    // the group of the last I picture
};

inline bool isB(Essence::MPEG::VideoUnit const& unit) {
    return unit.picture && unit.picture->type == Essence::MPEG::PictureType::B;
}

/// D pictures are intra coded too.
inline bool isIntra(Essence::MPEG::VideoUnit const& unit) {
    return unit.picture && (unit.picture->type == Essence::MPEG::PictureType::I ||
                            unit.picture->type == Essence::MPEG::PictureType::D);
}

} // namespace MXF::Zelm::GenericContainer
