/// What the pictures of an AVC stream have in common (ISO/IEC 14496-10, 7.3.2 and annex E).
#pragma once

#include "MXF/Zelm/Essence/AVC/NalUnit.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <memory>

namespace MXF::Zelm::Essence::AVC {

/// How pictures are to be shown, as far as it is told.
struct MXFZELM_EXPORT VideoUsability {
    /// Width to height of a sample, 0/0 when it is not told.
    Templates::Rational<int> sampleAspectRatio = {};

    bool fullRange = false;

    /// By the tables of the standard; 2 where it is not told.
    std::uint8_t colourPrimaries = 2;
    std::uint8_t transferCharacteristics = 2;
    std::uint8_t matrixCoefficients = 2;

    /// Fields a second are the time scale by the units in a tick; 0 when it is not told.
    std::uint32_t unitsInTick = 0;
    std::uint32_t timeScale = 0;
    bool fixedFrameRate = false;

    /// Bits of the fields of a picture timing message, and whether it tells of fields and clocks.
    bool hasDelays = false;
    std::uint8_t removalDelayBits = 24, outputDelayBits = 24;
    bool tellsPictureStructure = false;

    /// Bits in a second at most, by the reference decoder; 0 when it is not told.
    std::uint64_t maximumBitRate = 0;

    /// Frames that stand before one in the stream and are shown behind it, at most; absent when not told.
    std::optional<std::uint8_t> reorderedFrames = std::nullopt;
};

struct MXFZELM_EXPORT SequenceParameterSet {
    std::uint8_t profile = 0;

    /// The bits of constraint_set0_flag to constraint_set5_flag, the first one topmost.
    std::uint8_t constraints = 0;
    std::uint8_t level = 0;
    std::uint8_t id = 0;

    /// 0 without colour, 1 4:2:0, 2 4:2:2, 3 4:4:4.
    std::uint8_t chromaFormat = 1;
    bool separateColourPlanes = false;
    std::uint8_t lumaBits = 8;
    std::uint8_t chromaBits = 8;

    /// Bits of frame_num.
    std::uint8_t frameNumberBits = 4;

    /// How the picture order count is coded: 0, 1 or 2; what follows counts for 0, and for 1.
    std::uint8_t orderCountType = 0;
    std::uint8_t orderCountBits = 4;
    bool deltaOrderAlwaysZero = false;
    std::int32_t offsetForNonReference = 0;
    std::int32_t offsetForTopToBottom = 0;
    Templates::vector<std::int32_t> offsetsForReferences = {};

    std::uint8_t referenceFrames = 0;

    /// False where pictures may be coded as fields.
    bool frameMacroblocksOnly = true;
    bool adaptiveFrameField = false;

    /// As it is coded, in whole macroblocks: samples, and lines of a frame.
    std::uint32_t codedWidth = 0;
    std::uint32_t codedHeight = 0;

    /// Samples and frame lines that are cut off at each side.
    std::uint32_t cropLeft = 0, cropRight = 0, cropTop = 0, cropBottom = 0;

    std::optional<VideoUsability> usability = std::nullopt;

    /// What is left when the borders are cut off.
    std::uint32_t width() const { return codedWidth - cropLeft - cropRight; }
    std::uint32_t height() const { return codedHeight - cropTop - cropBottom; }

    /// Frames a second, 0/0 when it is not told.
    Templates::Rational<std::int64_t> frameRate() const;

    /// Frames that stand before one in the stream and are shown behind it, at most: as it is told, else as
    /// many as a decoder of the level holds.
    std::size_t mostReordered() const;

    /// By its profile: no picture is predicted from another.
    bool isIntraProfile() const;

    /// Reads the payload of a unit. Throws Exceptions::InvalidLength when it is cut off and
    /// Exceptions::InvalidValue for what the standard does not allow.
    static SequenceParameterSet read(NalUnit const& unit);
};

struct MXFZELM_EXPORT PictureParameterSet {
    std::uint8_t id = 0;
    std::uint8_t sequenceID = 0;
    bool arithmeticCoding = false;

    /// Slices of frames tell of the bottom field's order.
    bool bottomFieldOrderPresent = false;

    /// References of a slice that does not tell, for forward and backward prediction.
    std::uint8_t references[2] = {1, 1};
    bool weightedPrediction = false;
    std::uint8_t weightedBiprediction = 0;

    /// Slices tell whether they repeat others.
    bool redundantPicturesPresent = false;

    /// Macroblocks are shared out to slices by a map: what follows it is not read.
    bool hasSliceGroups = false;

    /// Throws as `SequenceParameterSet::read` does. What follows is not read.
    static PictureParameterSet read(NalUnit const& unit);
};

/// The sets that a stream has brought so far; a later one takes the place of an earlier one with its ID.
class MXFZELM_EXPORT ParameterSets : public Platform::Allocated {
public:
    using Sequence = std::shared_ptr<SequenceParameterSet const>;
    using PictureSet = std::shared_ptr<PictureParameterSet const>;

    void take(SequenceParameterSet set);
    void take(PictureParameterSet const& set);

    /// Null when there is none.
    Sequence const& sequence(std::uint8_t id) const;
    PictureSet const& picture(std::uint8_t id) const;

private:
    Templates::map<std::uint8_t, Sequence> sequences_;
    Templates::map<std::uint8_t, PictureSet> pictures_;
};

} // namespace MXF::Zelm::Essence::AVC
