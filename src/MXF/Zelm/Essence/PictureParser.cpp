#include "MXF/Zelm/Essence/PictureParser.h"

namespace MXF::Zelm::Essence {

namespace {

/// A byte stream of MPEG video begins with a start code that no unit of AVC has: 0, or the topmost bit set.
PictureParser::Coding codingOf(DataIO::Chain const& bytes) {
    AVC::NalReader nals(bytes);
    unsigned char code = 0;
    auto const first = nals.next();
    if (!first || bytes.copyTo(&code, 1, first->offset) == 0)
        return PictureParser::Coding::Unknown;
    return MPEG::beginsUnit(code) ? PictureParser::Coding::MPEGVideo : PictureParser::Coding::AVC;
}

} // namespace

bool PictureParser::take(DataIO::Chain const& bytes, bool isWhole) {
    picture_.reset();
    auto const coding = coding_ != Coding::Unknown ? coding_ : codingOf(bytes);
    bool const isTaken = coding == Coding::MPEGVideo ? takeVideo(bytes, isWhole)
                         : coding == Coding::AVC     ? takeAVC(bytes, isWhole)
                                                     : isWhole;
    if (picture_)
        coding_ = coding;
    return isTaken;
}

bool PictureParser::takeVideo(DataIO::Chain const& bytes, bool isWhole) {
    auto const unit = MPEG::VideoUnit::read(bytes);
    if (!unit.reachesSlices && !isWhole)
        return false;
    picture_ = video_.next(unit);
    return true;
}

/// The end of the bytes may cut the first slice: it is read when it reaches far enough.
bool PictureParser::takeAVC(DataIO::Chain const& bytes, bool isWhole) {
    using AVC::AccessUnit;
    auto unit =
        AccessUnit::read(bytes, avc_.sets(), isWhole ? AccessUnit::Part::Whole : AccessUnit::Part::Head);
    if (!isWhole && !(unit.slice && unit.knowsAllSlices))
        return false;
    picture_ = avc_.next(unit);
    return true;
}

} // namespace MXF::Zelm::Essence
