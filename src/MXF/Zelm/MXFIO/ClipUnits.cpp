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

void ClipPackets::add(PacketHead const& head, std::uint64_t streamEnd, bool openEnded) {
    if (values.empty())
        first = head;
    std::uint64_t const offset = head.streamOffset + head.headLength;
    values.push_back({offset, std::min(head.length, streamEnd - offset)});
    isCut = openEnded && values.back().length < head.length;
}

ClipUnits::ClipUnits(ClipPackets packets, EssenceTrack const* track, IndexTables::IndexTable const* table,
                     IndexTables::EditUnitLocator const* index, Templates::Rational<int> editRate)
    : packets_(std::move(packets)), index_(index) {
    for (auto const& value : packets_.values) {
        before_.push_back(length_);
        length_ = addOffsets(length_, value.length);
    }
    chooseGrid(track, table, editRate);
    if (grid_.isKnown()) {
        index_ = nullptr;
        count_ = static_cast<std::int64_t>(grid_.unitsIn(length_, packets_.isCut) & (largest >> 1));
    } else if (!useIndex()) {
        index_ = nullptr;
        count_ = packets_.isCut ? 0 : 1;
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
    if (first->streamOffset < packets_.values.front().offset)
        indexShift_ = packets_.values.front().offset - first->streamOffset;
    // Each edit unit has a byte at least: there are no more of them, whatever the index says.
    std::int64_t low = 0;
    std::int64_t high =
        std::min(index_->end().value_or(0), static_cast<std::int64_t>(length_ & (largest >> 1)));
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
    std::uint64_t const offset = addOffsets(location->streamOffset, indexShift_);
    if (offset < packets_.values.front().offset || offset >= end())
        return std::nullopt;
    if (!location->length && index_->locate(position + 1))
        return std::nullopt; // the next one stands before it
    std::uint64_t const unitEnd = location->length ? addOffsets(offset, *location->length) : end();
    if (packets_.isCut && unitEnd >= end())
        return std::nullopt;
    return StreamRange{offset, std::min(unitEnd, end()) - offset};
}

/// The bytes of values in a part of the stream.
std::vector<StreamRange> ClipUnits::valuesIn(StreamRange const& range) const {
    std::vector<StreamRange> found;
    std::uint64_t const to = range.offset + range.length;
    auto value = std::upper_bound(
        packets_.values.begin(), packets_.values.end(), range.offset,
        [](std::uint64_t offset, StreamRange const& one) { return offset < one.offset + one.length; });
    for (; value != packets_.values.end() && value->offset < to; ++value) {
        std::uint64_t const from = std::max(range.offset, value->offset);
        found.push_back({from, std::min(to, value->offset + value->length) - from});
    }
    return found;
}

/// `length` bytes of the values, from byte `offset` of all of them on.
std::vector<StreamRange> ClipUnits::bytes(std::uint64_t offset, std::uint64_t length) const {
    std::vector<StreamRange> found;
    auto const behind = std::upper_bound(before_.begin(), before_.end(), offset);
    for (auto i = static_cast<std::size_t>(behind - before_.begin()) - 1; length != 0 && i < before_.size();
         ++i) {
        auto const& value = packets_.values[i];
        std::uint64_t const passed = offset - before_[i];
        std::uint64_t const taken = std::min(length, value.length - std::min(value.length, passed));
        if (taken != 0)
            found.push_back({value.offset + passed, taken});
        offset += taken;
        length -= taken;
    }
    return found;
}

std::vector<StreamRange> ClipUnits::ranges(std::int64_t position) const {
    if (position < 0 || position >= count_)
        return {};
    if (index_ != nullptr) {
        auto const range = indexed(position);
        return range ? valuesIn(*range) : std::vector<StreamRange>();
    }
    if (!grid_.isKnown())
        return packets_.values;
    std::uint64_t const offset = grid_.offset(static_cast<std::uint64_t>(position));
    std::uint64_t const end = std::min(grid_.offset(static_cast<std::uint64_t>(position) + 1), length_);
    return bytes(offset, end - offset);
}

} // namespace MXF::Zelm::MXFIO
