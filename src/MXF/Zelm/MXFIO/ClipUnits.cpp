#include "MXF/Zelm/MXFIO/ClipUnits.h"

#include "MXF/Zelm/MXFIO/Offsets.h"

#include <algorithm>
#include <numeric>

namespace MXF::Zelm::MXFIO {

namespace {

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

/// Both sides of a grid's ratio, in lowest terms, stay below this, so that nothing overflows.
constexpr std::uint64_t largestTerm = std::uint64_t{1} << 31;

std::uint64_t multiplied(std::uint64_t a, std::uint64_t b) {
    return b != 0 && a > largest / b ? largest : a * b;
}

bool isPositive(Templates::Rational<int> const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

/// The bytes of each edit unit at a constant rate by the index table, and that rate.
SampleFormat constantUnits(IndexTables::IndexTable const* table, Templates::Rational<int> const& editRate) {
    if (table == nullptr || table->size() == 0)
        return {};
    auto const& segment = *table->begin()->second;
    if (segment.editUnitByteCount() == nullptr || segment.indexEntryCount() != 0)
        return {};
    auto const rate = segment.indexEditRate().value();
    return {segment.editUnitByteCount()->value(), isPositive(rate) ? rate : editRate};
}

} // namespace

SampleGrid::SampleGrid(SampleFormat const& samples, Templates::Rational<int> const& editRate) {
    if (samples.bytes == 0 || !isPositive(samples.rate) || !isPositive(editRate))
        return;
    auto const product = [](int a, int b) {
        return static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b);
    };
    numerator_ = product(samples.rate.numerator, editRate.denominator);
    denominator_ = product(samples.rate.denominator, editRate.numerator);
    std::uint64_t const common = std::gcd(numerator_, denominator_);
    numerator_ /= common;
    denominator_ /= common;
    // Less than a sample an edit unit is no cut of samples.
    if (numerator_ >= largestTerm || denominator_ > numerator_)
        return;
    shift_ = samples.sequenceOffset;
    bytes_ = samples.bytes;
}

/// Samples of the first `units` edit units of the cadence, to the nearest.
std::uint64_t SampleGrid::samplesBefore(std::uint64_t units) const {
    std::uint64_t const rest = (units % denominator_ * numerator_ * 2 + denominator_) / (denominator_ * 2);
    return addOffsets(multiplied(units / denominator_, numerator_), rest);
}

std::uint64_t SampleGrid::offset(std::uint64_t position) const {
    std::uint64_t const samples = samplesBefore(addOffsets(position, shift_));
    return samples == largest ? largest : multiplied(samples - samplesBefore(shift_), bytes_);
}

std::uint64_t SampleGrid::unitsIn(std::uint64_t length, bool wholeOnly) const {
    std::uint64_t const samples = length / bytes_;
    std::uint64_t units = samples / numerator_ * denominator_; // near, and not above
    units += samples % numerator_ * denominator_ / numerator_;
    while (units > 0 && offset(units) > length)
        --units;
    while (offset(units + 1) <= length)
        ++units;
    return wholeOnly || offset(units) >= length ? units : units + 1;
}

ClipUnits::ClipUnits(PacketHead const& element, std::uint64_t streamEnd, bool openEnded,
                     EssenceTrack const* track, IndexTables::IndexTable const* table,
                     IndexTables::EditUnitLocator const* index, Templates::Rational<int> editRate)
    : element_(element),
      valueOffset_(element.streamOffset + element.headLength),
      length_(std::min(element.length, streamEnd - valueOffset_)),
      isCut_(openEnded && length_ < element.length),
      index_(index) {
    chooseGrid(track, table, editRate);
    if (grid_.isKnown()) {
        index_ = nullptr;
        count_ = static_cast<std::int64_t>(grid_.unitsIn(length_, isCut_) & (largest >> 1));
    } else if (!useIndex()) {
        index_ = nullptr;
        count_ = isCut_ ? 0 : 1;
    }
}

/// Sound by the size of its samples, anything else by a constant size in the index table.
void ClipUnits::chooseGrid(EssenceTrack const* track, IndexTables::IndexTable const* table,
                           Templates::Rational<int> editRate) {
    if (!isPositive(editRate) && track != nullptr)
        editRate = track->editRate;
    if (track != nullptr)
        grid_ = SampleGrid(track->samples, editRate);
    auto const constant = constantUnits(table, editRate);
    if (!grid_.isKnown())
        grid_ = SampleGrid(constant, isPositive(editRate) ? editRate : constant.rate);
}

/// Takes the index's entries, as far as they lie in the element. Their offsets count from its key; those of
/// some writers from its value, where the first then is 0.
bool ClipUnits::useIndex() {
    if (index_ == nullptr)
        return false;
    auto const first = index_->locate(0);
    if (!first)
        return false;
    if (first->streamOffset < valueOffset_)
        indexShift_ = valueOffset_ - first->streamOffset;
    std::int64_t low = 0;
    std::int64_t high = index_->end().value_or(0);
    while (high - low > 0) {
        std::int64_t const middle = low + (high - low) / 2;
        if (indexed(middle))
            low = middle + 1;
        else
            high = middle;
    }
    count_ = low;
    return count_ != 0;
}

std::optional<StreamRange> ClipUnits::indexed(std::int64_t position) const {
    auto const location = index_->locate(position);
    if (!location)
        return std::nullopt;
    std::uint64_t const end = valueOffset_ + length_;
    std::uint64_t const offset = addOffsets(location->streamOffset, indexShift_);
    if (offset < valueOffset_ || offset >= end)
        return std::nullopt;
    std::uint64_t const unitEnd = location->length ? addOffsets(offset, *location->length) : end;
    if (isCut_ && unitEnd >= end)
        return std::nullopt;
    return StreamRange{offset, std::min(unitEnd, end) - offset};
}

std::optional<StreamRange> ClipUnits::range(std::int64_t position) const {
    if (position < 0 || position >= count_)
        return std::nullopt;
    if (index_ != nullptr)
        return indexed(position);
    if (!grid_.isKnown())
        return StreamRange{valueOffset_, length_};
    std::uint64_t const offset = grid_.offset(static_cast<std::uint64_t>(position));
    std::uint64_t const end = std::min(grid_.offset(static_cast<std::uint64_t>(position) + 1), length_);
    return StreamRange{valueOffset_ + offset, end - offset};
}

} // namespace MXF::Zelm::MXFIO
