/// What one edit unit of AVC holds: a coded frame, or the two fields of one, with the units around it.
#pragma once

#include "MXF/Zelm/Essence/AVC/PictureTiming.h"
#include "MXF/Zelm/Essence/AVC/SliceHeader.h"

namespace MXF::Zelm::Essence::AVC {

struct MXFZELM_EXPORT AccessUnit {
    enum class Part {
        /// Up to the first slice.
        Head,
        Whole
    };

    bool hasSequenceParameters = false;
    bool hasPictureParameters = false;

    /// Of a recovery point message: the frames that must be decoded from here on until pictures are right.
    std::optional<std::uint32_t> recoveryFrames = std::nullopt;
    bool brokenLink = false;

    /// Slice types that the access unit delimiter allows: 0 I, 1 I and P, 2 I, P and B; others with SI and
    /// SP.
    std::optional<std::uint8_t> primaryPictureType = std::nullopt;

    /// The first slice; and the first one of the second field.
    std::optional<SliceHeader> slice = std::nullopt;
    std::optional<SliceHeader> secondField = std::nullopt;

    /// The sets that the first slice names; null without one.
    ParameterSets::Sequence sequence = nullptr;
    ParameterSets::PictureSet parameters = nullptr;

    /// Of the frame, or of its first field.
    std::optional<PictureTiming> timing = std::nullopt;

    /// The message with it, which only the first slice tells how to read.
    DataIO::Chain timingMessage = {};

    /// The types of the first field's or frame's slices that were read.
    bool hasPredicted = false;
    bool hasBidirectional = false;

    /// A slice was met, if not a readable one: nothing is missing before it.
    bool reachesSlices = false;

    /// What was read tells what slices the picture has: all were read, or one told of all.
    bool knowsAllSlices = false;

    /// Reads the units in `bytes`, which may be the first ones of an edit unit only, or anything else: what
    /// is cut off or against the standard is left out. `sets` takes the parameter sets.
    static AccessUnit read(DataIO::Chain const& bytes, ParameterSets& sets, Part part = Part::Head);

    /// Takes the next unit in, as `read` does.
    void take(NalUnit const& nal, ParameterSets& sets);
};

} // namespace MXF::Zelm::Essence::AVC
