/// What an essence container of a file really has, and what its index table is worth.
#pragma once

#include "MXF/Zelm/MXFIO/CommonPartitionWriter.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/MXFIO/RepairDurations.h"

#include <functional>

namespace MXF::Zelm::MXFIO {

/// Edit units of one size in a clip.
struct ClipUnitSize {
    std::uint64_t bytes = 0; ///< 0 when it is not known
    Templates::Rational<int> rate = {};
};

/// The size of a track's edit units in a clip, for an index table: by its samples, or by `declaredLength`,
/// the bytes that the clip was to have, and the track's duration.
ClipUnitSize clipUnitSize(EssenceTrack const& track, std::uint64_t declaredLength);

/// The same by the essence itself: what stands at the start of the clip comes again at constant distances.
/// 0 where it does not. Looks at some MiB.
std::uint64_t repeatedUnitSize(DataIO::RandomAccessDataSource& source, std::uint64_t offset,
                               std::uint64_t length);

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
    /// `wholeUnits`: the file was cut off, a part of an edit unit at the end of a clip does not count. `clip`
    /// is given for what is known to be a clip, with what is known of its edit units.
    ContainerMeasurer(Reader2& reader, EssenceContainer const& container, bool wholeUnits,
                      ClipUnitSize const* clip);

    /// Throws as BodyStream::peekPacket does, and UpdateCancelled.
    MeasuredContainer measure(std::function<bool(std::uint64_t, std::uint64_t)> const& progress);

private:
    using Offsets = std::function<std::optional<std::uint64_t>(std::int64_t)>;

    void measureNothing();
    void measureFrames(std::function<bool(std::uint64_t, std::uint64_t)> const& progress);
    void measureClip();
    void judge(IndexTables::EssenceExtent const& extent, Offsets const& offsetOf);
    void take(IndexTables::IndexTable const& table);
    bool lacksIndex() const;

    EssenceContainer const& container_;
    bool wholeUnits_;
    bool isClip_;
    ClipUnitSize clip_;
    EssenceReader essence_;
    MeasuredContainer measured_;
};

} // namespace MXF::Zelm::MXFIO
