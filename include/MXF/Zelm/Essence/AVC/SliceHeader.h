/// The first fields of a slice: what kind of picture it belongs to (ISO/IEC 14496-10, 7.3.3).
#pragma once

#include "MXF/Zelm/Essence/AVC/ParameterSets.h"

namespace MXF::Zelm::Essence::AVC {

enum class SliceType : std::uint8_t { P = 0, B = 1, I = 2, SP = 3, SI = 4 };

struct MXFZELM_EXPORT SliceHeader {
    /// In its picture; in frames with adaptive fields, pairs of macroblocks.
    std::uint32_t firstMacroblock = 0;

    SliceType type = SliceType::I;

    /// All slices of the picture have this type.
    bool isTypeOfPicture = false;

    std::uint8_t pictureSetID = 0;
    std::uint32_t frameNumber = 0;
    bool isField = false;
    bool isBottomField = false;
    bool isIDR = false;
    bool isReference = false;

    /// Of an IDR picture: tells it from the one before.
    std::uint32_t idrPictureID = 0;

    /// Operation 5 of memory management: no picture behind this one is predicted from those before, and order
    /// counts begin anew, as with an IDR picture.
    bool resetsMemory = false;

    /// Of the picture order count, by the sequence's type.
    std::uint32_t orderCountLow = 0;
    std::int32_t deltaBottom = 0;
    std::int32_t deltaOrder[2] = {0, 0};

    bool isIntra() const { return type == SliceType::I || type == SliceType::SI; }
    bool isBidirectional() const { return type == SliceType::B; }

    /// Whether a slice behind this one belongs to another coded frame or field (ISO/IEC 14496-10, 7.4.1.2.4).
    bool isOfOtherPicture(SliceHeader const& next) const;

    /// Whether `next` is of the second field of the frame whose first one this slice is of.
    bool isFirstFieldOf(SliceHeader const& next) const;

    /// Reads the payload of a unit. Throws Exceptions::InvalidLength when it is cut off,
    /// Exceptions::InvalidValue for what the standard does not allow and Exceptions::InvalidID when its
    /// parameter sets have not come. What the end of the bytes leaves out behind the order count is as if it
    /// were not there.
    static SliceHeader read(NalUnit const& unit, ParameterSets const& sets);
};

/// Gives the pictures of a stream their picture order counts (ISO/IEC 14496-10, 8.2.1): numbers that rise in
/// display order from one IDR picture, or other one that resets the memory of decoders, to the next.
class MXFZELM_EXPORT PictureOrderCounter : public Platform::Allocated {
public:
    /// The count of the next picture in stored order, for a frame that of its earlier field. Of a frame in
    /// two fields the first one is enough.
    std::int64_t next(SequenceParameterSet const& sequence, PictureParameterSet const& picture,
                      SliceHeader const& slice);

private:
    void reset(SliceHeader const& slice);
    std::int64_t byLowBits(SequenceParameterSet const& sequence, PictureParameterSet const& picture,
                           SliceHeader const& slice);
    std::int64_t byOffsets(SequenceParameterSet const& sequence, SliceHeader const& slice);
    std::uint64_t countFrames(SequenceParameterSet const& sequence, SliceHeader const& slice);

    std::int64_t high_ = 0; // of the last reference picture
    std::uint32_t low_ = 0;
    std::uint64_t frames_ = 0; // frame numbers that went by when they last began anew
    std::uint32_t lastFrame_ = 0;
};

} // namespace MXF::Zelm::Essence::AVC
