#include "BodyWalk.h"

#include <MXF/Zelm/Packs/RandomIndexPack.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;

bool BodyWalk::next(KlvWalk::Packet& packet) {
    for (;;) {
        if (!walk_ && !enterPartition())
            return false;
        while (walk_->offset() < end_ && walk_->next(packet))
            if (wants(packet.key))
                return true;
        if (walk_->fault() && !fault_)
            fault_ = walk_->fault();
        walk_.reset();
    }
}

/// By the byte counts of the partition pack: where those are wrong, the partition checks say so.
bool BodyWalk::enterPartition() {
    for (; partition_ < survey_.partitions.size(); ++partition_) {
        auto const& partition = survey_.partitions[partition_];
        bool const hasIndex = partition.pack().indexByteCount() != 0;
        bool const essence = kind_ == Kind::Essence;
        if (essence ? partition.pack().bodySID() != bodySID_ : !hasIndex)
            continue;
        std::uint64_t const body = partition.partition->bodyAbsoluteOffset();
        std::uint64_t const start = essence ? body : partition.partition->indexTableAbsoluteOffset();
        end_ = essence ? partition.end : std::min(body, partition.end);
        walk_.emplace(input_, start);
        ++partition_;
        return true;
    }
    return false;
}

bool BodyWalk::wants(KLV::Key const& key) const {
    if (kind_ == Kind::IndexSegments)
        return KLV::isIndexTableKlvSegment(key);
    return !KLV::isFillItem(key) && key != Packs::RandomIndexPack::key();
}

} // namespace Zelm
