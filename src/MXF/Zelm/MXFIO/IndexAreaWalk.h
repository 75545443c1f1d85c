/// Finds the index table segments of one partition: in its index area, and behind it where the pack's byte
/// counts say less than there is.
#pragma once

#include "MXF/Zelm/MXFIO/Partition.h"
#include "MXF/Zelm/MXFIO/Reader.h"

namespace MXF::Zelm::MXFIO {

class IndexAreaWalk {
public:
    /// `end` is where the partition ends: walks over different partitions never meet, so that they do not
    /// cost more than one over the file. With `everywhere` all packets of the partition are walked over,
    /// whatever its pack says.
    IndexAreaWalk(Reader& reader, Partition const& partition, std::uint64_t end, bool everywhere);

    /// The next segment, its value not read; empty when there are no more. Valid until the source is used for
    /// something else.
    Templates::auto_ptr<KLV::Packet> next();

    /// Where the essence begins. Known when `next` has come to the end.
    std::uint64_t essenceOffset() const;

private:
    bool endsAt(KLV::Key const& key);

    Reader& reader_;
    std::uint64_t end_;
    bool everywhere_;
    std::uint64_t at_;
    std::uint64_t declaredEnd_;
    std::uint64_t segmentsEnd_ = 0; // behind the last segment that was found
    bool essenceFound_ = false;
};

} // namespace MXF::Zelm::MXFIO
