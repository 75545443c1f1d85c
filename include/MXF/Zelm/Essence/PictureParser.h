/// Edit units of picture essence, whatever they are coded in, as pictures in stored order.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Essence/AVC/CodedPictures.h"
#include "MXF/Zelm/Essence/MPEG/VideoPictures.h"

namespace MXF::Zelm::Essence {

/// Reads MPEG video and AVC. Which of them it is, the first edit unit tells.
class MXFZELM_EXPORT PictureParser : public Platform::Allocated {
public:
    enum class Coding { Unknown, MPEGVideo, AVC };

    /// Bytes that tell all of most edit units.
    static constexpr std::uint64_t usualHead = 1024;

    /// Takes the next edit unit, or as much of its beginning as `bytes` has; `isWhole` when there is no more.
    /// False when that is too little to tell: the same edit unit must then be given again with more bytes.
    bool take(DataIO::Chain const& bytes, bool isWhole);

    /// The edit unit that was last taken; absent when no picture was found in it.
    std::optional<Picture> const& picture() const { return picture_; }

    Coding coding() const { return coding_; }

private:
    bool takeVideo(DataIO::Chain const& bytes, bool isWhole);
    bool takeAVC(DataIO::Chain const& bytes, bool isWhole);

    Coding coding_ = Coding::Unknown;
    MPEG::VideoPictures video_;
    AVC::CodedPictures avc_;
    std::optional<Picture> picture_;
};

} // namespace MXF::Zelm::Essence
