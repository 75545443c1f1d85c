#include "MXF/Zelm/MXFIO/BodySource.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::MXFIO {

using IndexTables::IndexTableSegment;

namespace {

/// Bytes that an item of an index table segment has at most (SMPTE 377M: two-byte lengths).
constexpr std::uint64_t longestItem = 0xFFFF;

std::int64_t startOf(IndexTableSegment const& segment) { return segment.indexStartPosition().value(); }

std::int64_t endOf(IndexTableSegment const& segment) {
    return startOf(segment) + static_cast<std::int64_t>(segment.indexEntryCount());
}

void setRange(IndexTableSegment& segment, std::int64_t start, std::size_t entries) {
    segment.indexStartPosition(Types::Position(start));
    segment.indexDuration(Types::Length(static_cast<std::int64_t>(entries)));
}

bool hasRoom(IndexTableSegment const& segment) {
    auto const* const entries = segment.indexEntryArray();
    return entries != nullptr && entries->serializedSize() + entries->elementSize() <= longestItem;
}

} // namespace

BodySource::BodySource(Templates::auto_ptr<GenericContainer::Source> source, std::uint32_t bodySID,
                       std::uint32_t indexSID, bool canUpdate)
    : source_(std::move(source)), bodySID_(bodySID), indexSID_(indexSID), canUpdate_(canUpdate) {}

BodySource::~BodySource() = default;

bool BodySource::fetch() {
    if (atHand_) {
        requireChangeable();
        return true;
    }
    if (finalized_)
        return false;
    if (stopped_ || !source_->next(package_, mayStartPartition_, updater_, position_)) {
        finalized_ = true;
        source_->finalize();
        return false;
    }
    atHand_ = true;
    requireChangeable();
    return true;
}

void BodySource::requireChangeable() const {
    if (updater_ && updater_->isRequired() && !canUpdate_)
        throw Exceptions::InvalidStructure(
            "The essence has to be changed after it was written, and the file cannot be changed");
}

DataIO::Chain BodySource::take(std::uint64_t fileOffset) {
    if (updater_) {
        updater_->written(fileOffset);
        if (canUpdate_)
            updaters_.push_back(std::move(updater_));
        updater_.reset();
    }
    atHand_ = false;
    ++packages_;
    streamOffset_ += package_.size();
    return std::move(package_);
}

Templates::vector<BodySource::SegmentPtr> BodySource::takeIndexSegments() {
    auto segments = source_->takeIndexSegments();
    if (indexSID_ == 0)
        return {};
    prependHeldBack(segments);
    if (atHand_)
        holdBack(segments);
    for (auto const& segment : segments)
        complete(*segment);
    return segments;
}

void BodySource::complete(IndexTableSegment& segment) const {
    segment.indexSID(Types::UInt32(indexSID_));
    segment.bodySID(Types::UInt32(bodySID_));
    if (segment.instanceUID() == Types::UUID())
        segment.instanceUID(Types::UUID::generate());
}

/// The entry that was held back goes before the others, into their segment where there is room.
void BodySource::prependHeldBack(Templates::vector<SegmentPtr>& segments) {
    if (!heldBack_)
        return;
    if (!segments.empty() && startOf(*segments.front()) == endOf(*heldBack_) && hasRoom(*segments.front())) {
        auto& first = *segments.front();
        first.addIndexEntry(0, heldBack_->indexEntry(0));
        setRange(first, startOf(*heldBack_), first.indexEntryCount());
    } else {
        segments.insert(segments.begin(), heldBack_);
    }
    heldBack_.reset();
}

/// The source has given the package at hand, and its entry with it; it belongs to the next partition.
void BodySource::holdBack(Templates::vector<SegmentPtr>& segments) {
    if (segments.empty() || segments.back()->indexEntryCount() == 0 ||
        endOf(*segments.back()) != static_cast<std::int64_t>(packages_) + 1)
        return;
    auto& last = *segments.back();
    std::size_t const index = last.indexEntryCount() - 1;
    auto const entry = last.indexEntry(index);
    heldBack_ = std::make_shared<IndexTableSegment>(last);
    heldBack_->instanceUID(Types::UUID());
    heldBack_->resetIndexEntryArray();
    heldBack_->addIndexEntry(0, entry);
    setRange(*heldBack_, static_cast<std::int64_t>(packages_), 1);
    last.removeIndexEntry(index);
    setRange(last, startOf(last), index);
    if (index == 0)
        segments.pop_back();
}

Templates::vector<FileUpdate> BodySource::updates() const {
    Templates::vector<FileUpdate> all;
    for (auto const& updater : updaters_)
        for (auto& update : updater->updates())
            all.push_back(std::move(update));
    return all;
}

} // namespace MXF::Zelm::MXFIO
