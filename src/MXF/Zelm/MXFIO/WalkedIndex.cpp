#include "MXF/Zelm/MXFIO/WalkedIndex.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using GenericContainer::PackageBoundary;

namespace {

/// Edit units between two calls of a progress function.
constexpr std::uint64_t unitsPerStep = 1024;

/// Entries of a segment: their array stays below 65536 bytes.
constexpr std::size_t segmentEntries = 5900;

} // namespace

WalkedIndex::WalkedIndex(BodyStream& stream, std::int64_t position, std::uint64_t streamOffset)
    : stream_(stream), begin_(position), first_(streamOffset), next_(streamOffset) {}

WalkedIndex::~WalkedIndex() = default;

bool WalkedIndex::isComplete() const { return walked_ == stream_.length(); }

std::uint64_t WalkedIndex::start(std::uint64_t index) const {
    return starts_.empty() ? first_ + index * unitSize_ : starts_[static_cast<std::size_t>(index)];
}

std::optional<std::uint64_t> WalkedIndex::streamOffset(std::int64_t position) const {
    if (position < begin_ || position >= end())
        return std::nullopt;
    return start(static_cast<std::uint64_t>(position - begin_));
}

std::optional<std::uint64_t> WalkedIndex::length(std::int64_t position) const {
    auto const offset = streamOffset(position);
    if (!offset)
        return std::nullopt;
    return (position + 1 < end() ? *streamOffset(position + 1) : next_) - *offset;
}

/// Takes an edit unit in. Those of one size are counted, until one comes that begins elsewhere.
void WalkedIndex::add(std::uint64_t start, std::uint64_t end) {
    if (count_ == 0)
        first_ = start;
    else if (count_ == 1 && starts_.empty())
        unitSize_ = start - first_;
    if (starts_.empty() && start != first_ + count_ * unitSize_)
        for (std::uint64_t i = 0; i < count_; ++i)
            starts_.push_back(first_ + i * unitSize_);
    if (!starts_.empty())
        starts_.push_back(start);
    ++count_;
    next_ = end;
}

void WalkedIndex::forgetProvisional() {
    if (!isProvisional_ || isComplete())
        return;
    next_ = start(--count_);
    if (!starts_.empty())
        starts_.pop_back();
    isProvisional_ = false;
}

/// Walks over one edit unit; false at the end of the stream.
bool WalkedIndex::walkUnit() {
    PackageBoundary boundary;
    std::uint64_t start = next_;
    stream_.seek(next_);
    auto head = stream_.peekPacket();
    for (; head; head = stream_.peekPacket()) {
        if (ElementKey::isContent(head->key)) {
            if (boundary.startsNext(ElementKey(head->key)))
                break;
            if (boundary.empty())
                start = head->streamOffset;
            boundary.add(ElementKey(head->key));
        }
        stream_.seek(head->end());
    }
    if (!head)
        walked_ = stream_.length();
    bool const isWhole = head || !stream_.isOpenEnded() || shape_.empty() || boundary.isLike(shape_);
    if (boundary.empty() || !isWhole)
        return false;
    if (shape_.empty() && (head || !stream_.isOpenEnded()))
        shape_ = boundary;
    add(start, stream_.absoluteOffset());
    isProvisional_ = !head && stream_.isOpenEnded();
    return head.has_value();
}

bool WalkedIndex::walkTo(std::int64_t position, Progress const& progress) {
    if (isComplete())
        return true;
    forgetProvisional();
    for (std::uint64_t done = 1; position >= end(); ++done) {
        if (!walkUnit())
            return true;
        if (done % unitsPerStep == 0 && progress && !progress(next_, stream_.length()))
            return false;
    }
    return true;
}

bool WalkedIndex::walk(Progress const& progress) {
    return walkTo(std::numeric_limits<std::int64_t>::max(), progress);
}

Templates::auto_ptr<IndexTables::IndexTable>
WalkedIndex::table(std::uint32_t indexSID, Templates::Rational<int> const& editRate) const {
    using namespace IndexTables;
    auto table = std::make_unique<IndexTable>(indexSID, stream_.bodySID());
    bool const isConstant = starts_.empty() && begin_ == 0 && first_ == 0 && count_ > 1 &&
                            next_ == count_ * unitSize_ && unitSize_ <= UINT32_MAX;
    for (std::uint64_t at = 0; at < count_;) {
        std::uint64_t const count =
            isConstant ? count_ : std::min<std::uint64_t>(count_ - at, segmentEntries);
        auto segment = std::make_unique<IndexTableSegment>(std::uint8_t{4});
        segment->indexEditRate(Types::Rational(editRate));
        segment->indexStartPosition(Types::Position(begin_ + static_cast<std::int64_t>(at)));
        segment->indexDuration(Types::Length(static_cast<std::int64_t>(count)));
        segment->indexSID(Types::UInt32(indexSID));
        segment->bodySID(Types::UInt32(stream_.bodySID()));
        if (isConstant) {
            segment->editUnitByteCount(Types::UInt32(static_cast<std::uint32_t>(unitSize_)));
        } else {
            IndexEntryArray entries(0, 0);
            for (std::uint64_t i = 0; i < count; ++i)
                entries.append(IndexEntry(start(at + i)));
            segment->indexEntryArray(entries);
        }
        table->add(std::move(segment), false);
        at += count;
    }
    return table;
}

} // namespace MXF::Zelm::MXFIO
