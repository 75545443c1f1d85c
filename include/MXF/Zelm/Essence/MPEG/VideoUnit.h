/// The headers in one edit unit of MPEG video: one coded frame, with whatever stands before it.
///
///     [sequence header, extensions] [group header] picture header, extension, slices …
///                                                  [picture header, extension, slices …]    the second field
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Essence/MPEG/GroupHeader.h"
#include "MXF/Zelm/Essence/MPEG/PictureHeader.h"
#include "MXF/Zelm/Essence/MPEG/SequenceHeader.h"

#include <span>

namespace MXF::Zelm::Essence::MPEG {

/// The bytes behind a start code prefix, 00 00 01.
enum StartCode : std::uint8_t {
    PictureStart = 0x00,
    FirstSliceStart = 0x01,
    LastSliceStart = 0xAF,
    UserDataStart = 0xB2,
    SequenceHeaderStart = 0xB3,
    ExtensionStart = 0xB5,
    SequenceEnd = 0xB7,
    GroupStart = 0xB8
};

/// True for what begins an edit unit, unless it follows another such code before the picture's slices.
inline bool beginsUnit(std::uint8_t code) {
    return code == SequenceHeaderStart || code == GroupStart || code == PictureStart;
}

inline bool isSlice(std::uint8_t code) { return code >= FirstSliceStart && code <= LastSliceStart; }

struct MXFZELM_EXPORT VideoUnit {
    enum class Part {
        /// Up to the first slice: all but the second field.
        Head,
        Whole
    };

    std::optional<SequenceHeader> sequence = std::nullopt;
    std::optional<GroupHeader> group = std::nullopt;

    /// The frame, or the first of its two fields, whose type is that of the frame.
    std::optional<PictureHeader> picture = std::nullopt;
    std::optional<PictureHeader> secondField = std::nullopt;

    /// The first slice was met, so that no header is missing before it. Where it was not, the bytes may have
    /// been too few.
    bool reachesSlices = false;

    /// A sequence end code stands behind the picture.
    bool endsSequence = false;

    /// Reads the headers in `bytes`, which may be the first ones of an edit unit only, or anything else: what
    /// is cut off, and what comes in no order of the standard, is left out.
    static VideoUnit read(DataIO::Chain const& bytes, Part part = Part::Head);

    /// The same up to the first slice, where the places of the start codes in `bytes` are known, in their
    /// order.
    static VideoUnit read(DataIO::Chain const& bytes, std::span<std::uint64_t const> startCodes);
};

} // namespace MXF::Zelm::Essence::MPEG
