/// What an essence container of a file really has, and what its index table is worth.
#pragma once

#include "MXF/Zelm/MXFIO/CommonPartitionWriter.h"
#include "MXF/Zelm/MXFIO/CutClip.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/MXFIO/RepairDurations.h"

#include <functional>

namespace MXF::Zelm::MXFIO {

struct MeasuredContainer {
    enum class Index {
        Unwanted, ///< the metadata names none, or nothing is known of the edit units
        Good,
        Missing,
        Short,
        Wrong
    };

    std::optional<std::int64_t> units; ///< at the container's edit rate
    Index index = Index::Unwanted;
    std::int64_t good = 0; ///< edit units that the file's own index table has right, from the first on

    /// What the index table lacks; all of it where it is wrong.
    Templates::vector<CommonPartitionWriter::SegmentPtr> segments;
    std::int64_t made = 0; ///< edit units in them
};

class ContainerMeasurer {
public:
    /// `source` is what `reader` reads; both are moved. `wholeUnits`: the file was cut off, a part of an edit
    /// unit at the end of a clip does not count, and durations prove nothing. `cut` is the
    /// container's clip that was never finished, null when there is none.
    ContainerMeasurer(DataIO::RandomAccessDataSource& source, Reader2& reader,
                      EssenceContainer const& container, bool wholeUnits, CutClip const* cut);

    /// Throws as BodyStream::peekPacket does, and UpdateCancelled.
    MeasuredContainer measure(std::function<bool(std::uint64_t, std::uint64_t)> const& progress);

private:
    using Offsets = std::function<std::optional<std::uint64_t>(std::int64_t)>;

    bool isClip();
    bool isOneClip();
    ElementPlace placeOf(PacketHead const& head);
    std::optional<PacketHead> nextElement();
    void measureNothing();
    void measureFrames(std::function<bool(std::uint64_t, std::uint64_t)> const& progress);
    void measureClip();
    void makeClipIndex(std::uint64_t length);
    void judge(IndexTables::EssenceExtent const& extent, Offsets const& offsetOf);
    void take(IndexTables::IndexTable const& table);
    bool lacksIndex() const;

    DataIO::RandomAccessDataSource& source_;
    EssenceContainer const& container_;
    bool wholeUnits_;
    CutClip const* cut_;
    ClipUnitSize clip_;
    EssenceReader essence_;
    MeasuredContainer measured_;
};

} // namespace MXF::Zelm::MXFIO
