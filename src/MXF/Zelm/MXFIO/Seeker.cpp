#include "MXF/Zelm/MXFIO/Seeker.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/ConstantUnits.h"
#include "MXF/Zelm/MXFIO/IndexTableGatherer.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using GenericContainer::PackageBoundary;

namespace {

/// Edit units that are walked over in any case, before others are taken to have their size.
constexpr std::int64_t unitsWalked = 64;

/// Bytes of the smallest edit unit: one element without a value.
constexpr std::uint64_t smallestUnit = KLV::Key::size() + 1;

} // namespace

Seeker::Seeker(Reader2& reader, BodyStream& stream, std::uint32_t indexSID,
               Templates::SharedPtr<IndexTableGatherer> gatherer)
    : reader_(reader), stream_(stream), indexSID_(indexSID), gatherer_(std::move(gatherer)) {}

Seeker::~Seeker() = default;

void Seeker::gather() {
    if (gathered_)
        return;
    gathered_ = true;
    table_ = gatherer_ ? gatherer_->table(stream_.bodySID(), indexSID_)
                       : IndexTableGatherer(reader_).table(stream_.bodySID(), indexSID_);
    if (table_)
        index_.emplace(*table_, IndexTables::EssenceExtent{stream_.length()});
}

IndexTables::EditUnitLocator const* Seeker::index() {
    gather();
    return index_ && !rejected_ ? &*index_ : nullptr;
}

IndexTables::IndexTable const* Seeker::table() {
    gather();
    return rejected_ ? nullptr : table_.get();
}

/// Who asked for the index may still have it: it stays.
void Seeker::reject() {
    rejected_ = true;
    lastIndexed_.reset();
    walked_.reset();
    triedConstant_ = true;
    unitSize_ = 0;
}

void Seeker::refresh() {
    gatherer_.reset();          // it knows what there was
    if (index_ && !rejected_) { // there may be more of it, and it ends elsewhere
        gathered_ = false;
        index_.reset();
        lastIndexed_.reset();
        walked_.reset();
    } else if (gathered_ && walked_) {
        return; // the walk goes on
    } else {
        gathered_ = false;
    }
}

/// The last edit unit that the index knows within the stream, -1 when there is none.
std::int64_t Seeker::lastIndexed() {
    if (lastIndexed_)
        return *lastIndexed_;
    std::int64_t low = -1;
    std::int64_t high = index() != nullptr ? index_->end().value_or(0) : 0;
    high = std::min(high, static_cast<std::int64_t>(stream_.length() / smallestUnit) + 1);
    while (high - low > 1) {
        std::int64_t const middle = low + (high - low) / 2;
        (index_->locate(middle) ? low : high) = middle;
    }
    lastIndexed_ = low;
    return low;
}

/// Begins at the last edit unit that the index knows, if that is one.
WalkedIndex& Seeker::walked() {
    if (walked_)
        return *walked_;
    std::int64_t const last = lastIndexed();
    if (last >= 0) {
        std::uint64_t const offset = index_->locate(last)->streamOffset;
        if (isSound(last, offset))
            walked_ = std::make_unique<WalkedIndex>(stream_, last, offset);
        else
            reject();
    }
    if (!walked_)
        walked_ = std::make_unique<WalkedIndex>(stream_);
    return *walked_;
}

WalkedIndex const& Seeker::walkedIndex() { return walked(); }

/// Takes the first edit units for all of them, where nothing speaks against it.
void Seeker::tryConstant(std::int64_t position) {
    if (triedConstant_ || position < unitsWalked || lastIndexed() >= 0)
        return;
    triedConstant_ = true;
    walked().walkTo(unitsWalked - 1, progress_);
    auto const size = walked().constantSize();
    if (!size || walked().isComplete() || walked().end() < unitsWalked)
        return;
    std::uint64_t const units = constantUnits(stream_, *size);
    if (units <= static_cast<std::uint64_t>(unitsWalked))
        return;
    unitSize_ = *size;
    walked_ =
        std::make_unique<WalkedIndex>(stream_, static_cast<std::int64_t>(units - 1), (units - 1) * *size);
}

/// By the index, or where all edit units have one size.
std::optional<std::uint64_t> Seeker::calculated(std::int64_t position) {
    if (index() != nullptr)
        if (auto const location = index_->locate(position))
            return location->streamOffset;
    tryConstant(position);
    if (unitSize_ != 0 && position < walked().begin())
        return static_cast<std::uint64_t>(position) * unitSize_;
    return std::nullopt;
}

/// Whether an edit unit can begin there.
bool Seeker::isSound(std::int64_t position, std::uint64_t streamOffset) {
    if (streamOffset == 0)
        return position == 0;
    return static_cast<std::uint64_t>(position) <= streamOffset / smallestUnit &&
           isPackageStart(streamOffset) && isInOrder(position, streamOffset);
}

/// Whether by the index the edit units beside it stand before and behind it, and the first one first.
bool Seeker::isInOrder(std::int64_t position, std::uint64_t streamOffset) {
    if (index() == nullptr)
        return true;
    auto const first = index_->locate(0);
    auto const before = index_->locate(position - 1), behind = index_->locate(position + 1);
    return (!first || first->streamOffset <= firstOffset_) &&
           (!before || before->streamOffset < streamOffset) &&
           (!behind || behind->streamOffset > streamOffset);
}

/// Whether the first element of a content package stands there.
bool Seeker::isPackageStart(std::uint64_t streamOffset) {
    ElementKey const first = firstPackage().first();
    try {
        stream_.seek(streamOffset);
        while (auto const head = stream_.nextPacket())
            if (ElementKey::isContent(head->key))
                return ElementKey(head->key).isSameElement(first);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return false;
    }
    return true;
}

PackageBoundary const& Seeker::firstPackage() {
    if (firstIsFinal_)
        return first_;
    first_.clear();
    stream_.seek(0);
    while (auto const head = stream_.nextPacket()) {
        if (!ElementKey::isContent(head->key))
            continue;
        firstIsFinal_ = first_.startsNext(ElementKey(head->key));
        if (firstIsFinal_)
            break;
        if (first_.empty())
            firstOffset_ = head->streamOffset;
        first_.add(ElementKey(head->key));
    }
    return first_;
}

std::optional<std::uint64_t> Seeker::find(std::int64_t position) {
    if (position < 0)
        return std::nullopt;
    if (position == 0)
        return 0; // the stream's start: no need of an index
    if (auto const offset = calculated(position)) {
        if (isSound(position, *offset))
            return offset;
        reject();
    }
    if (position < walked().begin())
        reject(); // the index has a hole
    walked().walkTo(position, progress_);
    return walked().streamOffset(position);
}

std::optional<std::int64_t> Seeker::end() {
    tryConstant(std::numeric_limits<std::int64_t>::max());
    if (!walked().walk(progress_) || !walked().isComplete())
        return std::nullopt;
    return walked().end();
}

} // namespace MXF::Zelm::MXFIO
