#include "MXF/Zelm/MXFIO/ElementLayout.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;

namespace {

/// More than the numbers of elements in keys tell apart.
constexpr std::size_t mostElements = 1024;

constexpr std::size_t mostSlices = std::numeric_limits<std::uint8_t>::max();

bool isPicture(ElementKey key) {
    return key.itemType() == ElementKey::Picture || key.itemType() == ElementKey::CPPicture ||
           key.itemType() == ElementKey::Compound;
}

} // namespace

bool ElementLayout::fits(std::vector<Start> const& starts) const {
    return starts.size() == keys_.size() &&
           std::equal(starts.begin(), starts.end(), keys_.begin(),
                      [](Start const& start, ElementKey key) { return start.key.isSameElement(key); }) &&
           starts.back().offset <= std::numeric_limits<std::uint32_t>::max();
}

void ElementLayout::add(std::vector<Start> const& starts) {
    if (count_ == 0 && !starts.empty() && starts.size() <= mostElements) {
        for (auto const& start : starts)
            keys_.push_back(start.key);
        columns_.resize(starts.size() - 1);
    }
    isRegular_ = isRegular_ && !starts.empty() && fits(starts);
    if (!isRegular_)
        return;
    for (std::size_t i = 0; i < columns_.size(); ++i)
        addSize(columns_[i], starts[i + 1].offset - starts[i].offset);
    ++count_;
}

/// A size that is another than all before makes a column of them.
void ElementLayout::addSize(Column& column, std::uint64_t size) {
    auto const stored = static_cast<std::uint32_t>(size);
    if (count_ == 0)
        column.size = stored;
    else if (!column.varies() && stored != column.size)
        column.sizes.assign(count_, column.size);
    if (column.varies())
        column.sizes.push_back(stored);
}

void ElementLayout::removeLast() {
    if (!isRegular_ || count_ == 0)
        return;
    --count_;
    for (auto& column : columns_)
        if (column.varies())
            column.sizes.pop_back();
    if (count_ == 0) {
        keys_.clear();
        columns_.clear();
    }
}

bool ElementLayout::isRegular() const {
    auto const varying =
        std::count_if(columns_.begin(), columns_.end(), [](Column const& column) { return column.varies(); });
    return isRegular_ && count_ != 0 && static_cast<std::size_t>(varying) <= mostSlices;
}

std::uint8_t ElementLayout::sliceCount() const {
    return static_cast<std::uint8_t>(std::count_if(columns_.begin(), columns_.end(),
                                                   [](Column const& column) { return column.varies(); }));
}

IndexTables::DeltaEntryArray ElementLayout::deltaEntries(bool isReordered) const {
    IndexTables::DeltaEntryArray entries;
    std::uint8_t slice = 0;
    std::uint32_t delta = 0;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        std::int8_t const shifted = isReordered && isPicture(keys_[i]) ? -1 : 0;
        entries.append(IndexTables::DeltaEntry(shifted, slice, delta));
        if (i == columns_.size())
            break;
        bool const varies = columns_[i].varies();
        slice = static_cast<std::uint8_t>(slice + (varies ? 1 : 0));
        delta = varies ? 0 : delta + columns_[i].size;
    }
    return entries;
}

void ElementLayout::addSliceOffsets(std::size_t unit, IndexTables::IndexEntry& entry) const {
    std::uint32_t offset = 0;
    for (auto const& column : columns_) {
        offset += column.varies() ? column.sizes[unit] : column.size;
        if (column.varies())
            entry.addSliceOffset(entry.sliceOffsetCount(), offset);
    }
}

} // namespace MXF::Zelm::MXFIO
