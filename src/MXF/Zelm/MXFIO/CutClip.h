/// A clip whose element was never finished: its length field was to be set at the end, or goes beyond where
/// the file was cut off.
#pragma once

#include "MXF/Zelm/MXFIO/ClipShape.h"
#include "MXF/Zelm/MXFIO/FileWalk.h"

namespace MXF::Zelm::MXFIO {

struct CutClip {
    PacketHead head = {};     ///< with the length that the file has now
    std::uint64_t length = 0; ///< bytes that there are: whole edit units or samples where their size is known
    ClipUnitSize unit = {};

    /// False for one edit unit that is labelled as such.
    bool holdsSeveral = true;
};

/// The clip at the end of a file that was cut off amid `container`, if it is one and has any bytes.
std::optional<CutClip> findCutClip(DataIO::RandomAccessDataSource& source, FileWalk const& walk,
                                   EssenceContainer const& container);

/// A length field as long as the one that a packet has. Absent when it has no room.
std::optional<Bytes> lengthField(PacketHead const& head, std::uint64_t length);

} // namespace MXF::Zelm::MXFIO
