#include "MXF/Zelm/MXFIO/Seeker.h"

#include "MXF/Zelm/MXFIO/ConstantUnits.h"
#include "MXF/Zelm/MXFIO/IndexTableGatherer.h"

#include <limits>

namespace MXF::Zelm::MXFIO {

namespace {

/// Edit units that are walked over in any case, before others are taken to have their size.
constexpr std::int64_t unitsWalked = 64;

} // namespace

Seeker::Seeker(Reader2& reader, BodyStream& stream) : reader_(reader), stream_(stream) {}

Seeker::~Seeker() = default;

void Seeker::gather() {
    if (gathered_)
        return;
    gathered_ = true;
    IndexTableGatherer gatherer(reader_);
    table_ = gatherer.table(stream_.bodySID());
    if (table_)
        index_.emplace(*table_, IndexTables::EssenceExtent{stream_.length()});
}

IndexTables::EditUnitLocator const* Seeker::index() {
    gather();
    return index_ ? &*index_ : nullptr;
}

IndexTables::IndexTable const* Seeker::table() {
    gather();
    return table_.get();
}

void Seeker::rejectIndex() {
    gathered_ = true;
    index_.reset();
    table_.reset();
    lastIndexed_.reset();
    walked_.reset();
    triedConstant_ = true;
    unitSize_ = 0;
}

void Seeker::refresh() {
    if (index_) { // there may be more of it, and it ends elsewhere
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
    while (high - low > 1) {
        std::int64_t const middle = low + (high - low) / 2;
        (index_->locate(middle) ? low : high) = middle;
    }
    lastIndexed_ = low;
    return low;
}

WalkedIndex& Seeker::walked() {
    if (!walked_) {
        std::int64_t const last = lastIndexed();
        walked_ = last < 0 ? std::make_unique<WalkedIndex>(stream_)
                           : std::make_unique<WalkedIndex>(stream_, last, index_->locate(last)->streamOffset);
    }
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

std::optional<std::uint64_t> Seeker::find(std::int64_t position) {
    if (position < 0)
        return std::nullopt;
    if (position == 0 && !gathered_)
        return 0; // the stream's start: no need of an index
    if (index() != nullptr)
        if (auto const location = index_->locate(position))
            return location->streamOffset;
    tryConstant(position);
    if (position < walked().begin()) {
        if (unitSize_ != 0)
            return static_cast<std::uint64_t>(position) * unitSize_;
        rejectIndex(); // it has a hole
    }
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
