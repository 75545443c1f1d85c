#include "MXF/Zelm/GenericContainer/Multiplexer/FrameIndexTableBuilder.h"

#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::GenericContainer::Multiplexer {

/// Walks over a content package and says in which slice, and how far from its start, things stand.
class FrameIndexTableBuilder::Layout {
public:
    /// Passes over `bytes` bytes.
    void advance(std::uint64_t bytes) { delta_ += bytes; }

    /// Here begins a slice. Returns its number, 0 when there are too many.
    std::uint8_t startSlice() {
        delta_ = 0;
        isFull_ = isFull_ || slice_ == std::numeric_limits<std::uint8_t>::max();
        return isFull_ ? std::uint8_t{0} : ++slice_;
    }

    bool isFull() const { return isFull_; }
    std::uint8_t slice() const { return slice_; }
    IndexTables::DeltaEntry entry(bool isReordered) const {
        return {static_cast<std::int8_t>(isReordered ? -1 : 0), slice_,
                Templates::safeCast<std::uint32_t>(delta_)};
    }

private:
    std::uint64_t delta_ = 0;
    std::uint8_t slice_ = 0;
    bool isFull_ = false;
};

FrameIndexTableBuilder::FrameIndexTableBuilder(Templates::Rational<int> const& packageRate,
                                               std::vector<IndexedElement> const& elements,
                                               bool indexFillPackets, std::uint32_t packageSize)
    : IndexTableBuilder(packageRate), places_(elements.size()) {
    bool const withFill = indexFillPackets && packageSize == 0;
    Layout layout;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        bool const isBehindVarying = i > 0 && (elements[i - 1].byteCount == 0 || withFill);
        places_[i].isReordered = elements[i].isReordered;
        places_[i].rules = elements[i].rules;
        places_[i].startsSlice = isBehindVarying ? layout.startSlice() : std::uint8_t{0};
        if (layout.isFull())
            continue;
        addDeltaEntry(layout.entry(elements[i].isReordered));
        layout.advance(elements[i].byteCount);
        places_[i].fillStartsSlice = withFill ? layout.startSlice() : std::uint8_t{0};
        if (places_[i].fillStartsSlice != 0)
            addDeltaEntry(layout.entry(false));
    }
    if (packageSize != 0 && layout.slice() != 0)
        clearDeltaEntries(); // entries with slice offsets would be needed
    editUnitByteCount(packageSize);
    sliceCount(packageSize == 0 ? layout.slice() : std::uint8_t{0});
    sliceOffsets_.resize(layout.slice());
    reordered(std::any_of(elements.begin(), elements.end(), [](auto const& one) { return one.isReordered; }));
}

FrameIndexTableBuilder::~FrameIndexTableBuilder() = default;

void FrameIndexTableBuilder::startIndexEntry(std::uint64_t streamOffset) {
    streamOffset_ = streamOffset;
    index_ = {};
}

EditUnitIndex FrameIndexTableBuilder::preProcessAnalyzerIndexEntry(std::size_t element,
                                                                   EditUnitIndex const& index) const {
    return {places_[element].isReordered ? index.temporalOffset : 0, index.keyFrameOffset, index.flags};
}

void FrameIndexTableBuilder::noteSlice(std::uint8_t slice, std::uint64_t offset) {
    if (slice != 0)
        sliceOffsets_[slice - 1u] = Templates::safeCast<std::uint32_t>(offset);
}

void FrameIndexTableBuilder::processAnalyzerIndexEntrySliceOffset(std::size_t element, std::uint64_t offset) {
    noteSlice(places_[element].startsSlice, offset);
}

void FrameIndexTableBuilder::processFillSliceOffset(std::size_t element, std::uint64_t offset) {
    noteSlice(places_[element].fillStartsSlice, offset);
}

void FrameIndexTableBuilder::processAnalyzerIndexEntry(std::size_t element, EditUnitIndex const& index) {
    if (places_[element].rules)
        index_ = index;
}

void FrameIndexTableBuilder::appendIndexEntry() {
    IndexTableBuilder::appendIndexEntry(streamOffset_, index_, sliceOffsets_);
}

} // namespace MXF::Zelm::GenericContainer::Multiplexer
