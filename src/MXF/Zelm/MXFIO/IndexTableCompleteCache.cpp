#include "MXF/Zelm/MXFIO/IndexTableCompleteCache.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::MXFIO {

IndexTableCompleteCache::IndexTableCompleteCache(std::uint32_t indexSID, std::uint32_t bodySID)
    : table_(std::make_shared<IndexTables::IndexTable>(indexSID, bodySID)) {}

IndexTableCompleteCache::~IndexTableCompleteCache() = default;

void IndexTableCompleteCache::cache(Templates::auto_ptr<IndexTables::IndexTableSegment> segment) {
    if (segment->bodySID() != bodySID())
        throw Exceptions::BaseException("Trying to cache an IndexTableSegment with different bodySID");
    if (segment->indexSID() != nullptr && *segment->indexSID() != indexSID())
        throw Exceptions::BaseException("Trying to cache an IndexTableSegment with different indexSID");
    table_->add(std::move(segment), false);
}

std::uint32_t IndexTableCompleteCache::indexSID() const { return table_->indexSID(); }
std::uint32_t IndexTableCompleteCache::bodySID() const { return table_->bodySID(); }

IndexTableProvider::SegmentPtr IndexTableCompleteCache::segment(std::int64_t position) {
    auto const* const found = table_->find(position);
    return found != nullptr ? SegmentPtr(table_, found) : nullptr; // owned by the table, which it keeps
}

IndexTableCompleteCache::TablePtr IndexTableCompleteCache::table() const { return table_; }

} // namespace MXF::Zelm::MXFIO
