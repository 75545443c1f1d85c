#include "MXF/Zelm/MXFIO/WalkedIndex.h"

#include "MXF/Zelm/MXFIO/ElementLayout.h"
#include "MXF/Zelm/MXFIO/WalkedPictures.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using GenericContainer::PackageBoundary;

namespace {

/// Edit units between two calls of a progress function.
constexpr std::uint64_t unitsPerStep = 1024;

/// Bytes of an entry array, its head left out: an item has at most 65535.
constexpr std::uint64_t mostArrayBytes = 65535 - 8;

constexpr unsigned predicted =
    IndexTables::IndexEntry::ForwardPrediction | IndexTables::IndexEntry::BackwardPrediction;

/// Decoding begins there: neither predicted nor dependent on an earlier edit unit.
bool isKeyFrame(Essence::PictureEntry const& entry) {
    return entry.keyFrameOffset == 0 && (entry.flags & predicted) == 0;
}

bool isPlain(Essence::PictureEntry const& entry) { return isKeyFrame(entry) && entry.temporalOffset == 0; }

} // namespace

/// One edit unit as it is walked over.
struct WalkedIndex::Unit {
    std::uint64_t start = 0;
    PackageBoundary boundary = {};
    std::vector<ElementLayout::Start> elements = {};
    std::optional<PacketHead> picture = std::nullopt;

    void take(PacketHead const& head, bool learnsElements);
};

/// What entries say beside the offsets of edit units.
struct WalkedIndex::Entries {
    std::vector<Essence::PictureEntry> pictures = {}; // empty when they are not known
    std::uint8_t sliceCount = 0;
    bool isReordered = false;
};

WalkedIndex::WalkedIndex(BodyStream& stream, std::int64_t position, std::uint64_t streamOffset, Learn learn)
    : stream_(stream), begin_(position), first_(streamOffset), next_(streamOffset) {
    if (learn != Learn::Offsets)
        elements_ = std::make_unique<ElementLayout>();
    if (learn == Learn::Pictures)
        pictures_ = std::make_unique<WalkedPictures>();
}

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
    if (elements_)
        elements_->removeLast();
    if (pictures_)
        pictures_->removeLast();
    isProvisional_ = false;
}

void WalkedIndex::Unit::take(PacketHead const& head, bool learnsElements) {
    ElementKey const key(head.key);
    if (boundary.empty())
        start = head.streamOffset;
    boundary.add(key);
    if (!learnsElements)
        return;
    if (elements.empty() || !key.isSystem() || !elements.back().key.isSystem())
        elements.push_back({key, head.streamOffset - start});
    if (!picture && WalkedPictures::isCoded(key))
        picture = head;
}

/// Reads up to the packet that begins the next edit unit; absent at the end of the stream.
std::optional<PacketHead> WalkedIndex::readUnit(Unit& unit) {
    stream_.seek(next_);
    auto head = stream_.peekPacket();
    for (; head; head = stream_.peekPacket()) {
        if (ElementKey::isContent(head->key)) {
            if (unit.boundary.startsNext(ElementKey(head->key)))
                break;
            unit.take(*head, elements_ != nullptr);
        }
        stream_.seek(head->end());
    }
    return head;
}

void WalkedIndex::learn(Unit const& unit) {
    if (elements_)
        elements_->add(unit.elements);
    if (pictures_)
        pictures_->add(stream_, unit.picture ? &*unit.picture : nullptr);
}

/// Walks over one edit unit; false at the end of the stream.
bool WalkedIndex::walkUnit() {
    Unit unit{next_};
    auto const head = readUnit(unit);
    if (!head)
        walked_ = stream_.length();
    bool const isWhole = head || !stream_.isOpenEnded() || shape_.empty() || unit.boundary.isLike(shape_);
    if (unit.boundary.empty() || !isWhole)
        return false;
    if (shape_.empty() && (head || !stream_.isOpenEnded()))
        shape_ = unit.boundary;
    add(unit.start, stream_.absoluteOffset());
    learn(unit);
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

std::optional<std::uint64_t> WalkedIndex::constantSize() const {
    bool const isConstant = starts_.empty() && begin_ == 0 && first_ == 0 && count_ > 1 &&
                            next_ == count_ * unitSize_ && unitSize_ <= UINT32_MAX;
    return isConstant ? std::optional(unitSize_) : std::nullopt;
}

bool WalkedIndex::knowsElements() const { return elements_ && elements_->isRegular(); }

bool WalkedIndex::knowsPictures() const { return pictures_ && pictures_->any(); }

std::uint64_t WalkedIndex::unitsWithoutPicture() const { return pictures_ ? pictures_->unread() : 0; }

WalkedIndex::Entries WalkedIndex::entries() const {
    Entries entries;
    if (knowsPictures())
        entries.pictures = pictures_->entries();
    if (knowsElements())
        entries.sliceCount = elements_->sliceCount();
    entries.isReordered = std::any_of(entries.pictures.begin(), entries.pictures.end(),
                                      [](auto const& entry) { return entry.temporalOffset != 0; });
    return entries;
}

/// As many as an array takes; fewer where it then ends before a key frame, which is not far.
std::uint64_t WalkedIndex::segmentSize(Entries const& entries, std::uint64_t from) const {
    std::uint64_t const most = mostArrayBytes / IndexTables::IndexEntry::wireSize(entries.sliceCount, 0);
    if (count_ - from <= most)
        return count_ - from;
    for (std::uint64_t size = most; size > most / 2 && !entries.pictures.empty(); --size)
        if (isKeyFrame(entries.pictures[static_cast<std::size_t>(from + size)]))
            return size;
    return most;
}

IndexTables::IndexEntryArray WalkedIndex::entryArray(Entries const& entries, std::uint64_t from,
                                                     std::uint64_t count) const {
    IndexTables::IndexEntryArray array(entries.sliceCount, 0);
    for (auto at = static_cast<std::size_t>(from); at < from + count; ++at) {
        IndexTables::IndexEntry entry(start(at));
        if (!entries.pictures.empty()) {
            entry.temporalOffset(entries.pictures[at].temporalOffset);
            entry.keyFrameOffset(entries.pictures[at].keyFrameOffset);
            entry.flags(entries.pictures[at].flags);
        }
        if (entries.sliceCount != 0)
            elements_->addSliceOffsets(at, entry);
        array.append(entry);
    }
    return array;
}

Templates::auto_ptr<IndexTables::IndexTable> WalkedIndex::table(std::uint32_t indexSID,
                                                                Templates::Rational<int> const& editRate,
                                                                std::int64_t from) const {
    using namespace IndexTables;
    auto table = std::make_unique<IndexTable>(indexSID, stream_.bodySID());
    auto const all = entries();
    bool const isConstant = constantSize() && std::all_of(all.pictures.begin(), all.pictures.end(), isPlain);
    for (auto at = static_cast<std::uint64_t>(std::max(from, begin_) - begin_); at < count_;) {
        std::uint64_t const count = isConstant ? count_ - at : segmentSize(all, at);
        auto segment = std::make_unique<IndexTableSegment>(std::uint8_t{4});
        segment->indexEditRate(Types::Rational(editRate));
        segment->indexStartPosition(Types::Position(begin_ + static_cast<std::int64_t>(at)));
        segment->indexDuration(Types::Length(static_cast<std::int64_t>(count)));
        segment->indexSID(Types::UInt32(indexSID));
        segment->bodySID(Types::UInt32(stream_.bodySID()));
        if (knowsElements()) {
            segment->sliceCount(Types::UInt8(all.sliceCount));
            segment->deltaEntryArray(elements_->deltaEntries(all.isReordered));
        }
        if (isConstant)
            segment->editUnitByteCount(Types::UInt32(static_cast<std::uint32_t>(*constantSize())));
        else
            segment->indexEntryArray(entryArray(all, at, count));
        table->add(std::move(segment), false);
        at += count;
    }
    return table;
}

} // namespace MXF::Zelm::MXFIO
