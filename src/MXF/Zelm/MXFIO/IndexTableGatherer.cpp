#include "MXF/Zelm/MXFIO/IndexTableGatherer.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/IndexAreaWalk.h"
#include "MXF/Zelm/MXFIO/PartitionList.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using ByteCoders::toHexadecimal;

IndexTableGatherer::IndexTableGatherer(Reader2& reader, Search search) : reader_(reader), search_(search) {}

IndexTableGatherer::~IndexTableGatherer() = default;

void IndexTableGatherer::start() {
    if (started_)
        return;
    for (auto const& [partition, end] : partitionsOf(reader_))
        partitions_.push_back({partition, end});
    if (!partitions_.empty()) // the last one first
        std::rotate(partitions_.begin(), partitions_.end() - 1, partitions_.end());
    started_ = true;
}

bool IndexTableGatherer::readNext() {
    start();
    if (done_ == partitions_.size()) {
        for (auto const& [sids, cache] : caches_)
            cache->isComplete(true);
        return false;
    }
    readPartition(partitions_[done_++]);
    return true;
}

void IndexTableGatherer::readAll() {
    while (readNext())
        continue;
}

void IndexTableGatherer::readPartition(Span const& span) {
    IndexAreaWalk walk(reader_, *span.partition, span.end, search_ == Search::Everywhere);
    while (auto const packet = walk.next())
        try {
            keep(*packet, span);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            faults_.push_back({failure.offset(), failure.message()});
        }
}

void IndexTableGatherer::keep(KLV::Packet& packet, Span const& span) {
    std::uint64_t const offset = packet.keyAbsoluteOffset();
    if (packet.klvLength() > span.end - std::min(span.end, offset))
        throw Exceptions::at(offset, Exceptions::InvalidIndexSegment(
                                         "An index table segment of 0x" + toHexadecimal(packet.klvLength()) +
                                         " bytes runs beyond the end of its partition at 0x" +
                                         toHexadecimal(span.end)));
    auto segment = std::make_unique<IndexTables::IndexTableSegment>(packet, nullptr);
    std::uint32_t const indexSID = segment->indexSID() != nullptr
                                       ? segment->indexSID()->value()
                                       : span.partition->partitionPack().indexSID();
    std::uint32_t const bodySID = segment->bodySID();
    CachePtr& cache = caches_[{indexSID, bodySID}];
    if (!cache)
        cache = std::make_shared<IndexTableCompleteCache>(indexSID, bodySID);
    cache->cache(std::move(segment));
}

IndexTableCompleteCache::TablePtr IndexTableGatherer::table(std::uint32_t bodySID, std::uint32_t indexSID) {
    readAll();
    if (auto const named = caches_.find({indexSID, bodySID}); named != caches_.end())
        return named->second->table();
    for (auto const& [sids, cache] : caches_)
        if (sids.second == bodySID)
            return cache->table();
    return nullptr;
}

IndexTableProvider::SegmentPtr IndexTableGatherer::knownSegment(std::uint32_t bodySID,
                                                                std::int64_t position) const {
    for (auto const& [sids, cache] : caches_)
        if (sids.second == bodySID)
            if (auto found = cache->segment(position))
                return found;
    return nullptr;
}

IndexTableProvider::SegmentPtr IndexTableGatherer::segment(std::uint32_t bodySID, std::int64_t position) {
    // The first search of a table after it grew takes linear time: read twice as many before each.
    for (std::size_t batch = 1;; batch *= 2) {
        if (auto found = knownSegment(bodySID, position))
            return found;
        bool more = true;
        for (std::size_t i = 0; more && i < batch; ++i)
            more = readNext();
        if (!more)
            return knownSegment(bodySID, position);
    }
}

} // namespace MXF::Zelm::MXFIO
