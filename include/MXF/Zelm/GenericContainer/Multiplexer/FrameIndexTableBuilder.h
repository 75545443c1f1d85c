/// The index table of essence that is wrapped by content packages: where the elements stand in them.
///
/// A slice begins behind every element whose size varies; delta entries count from the start of a slice:
///
///     system, 512    picture, varies  | sound, constant
///     slice 0, 0     slice 0, 512     | slice 1, 0          NSL 1: each index entry has one slice offset
#pragma once

#include "MXF/Zelm/GenericContainer/Multiplexer/IndexTableBuilder.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

/// One element of the content package, as far as the index is concerned.
struct IndexedElement {
    /// From its key to that of the next element, fill included; 0 when it varies.
    std::uint64_t byteCount = 0;

    /// It has pictures that are stored in another order than shown.
    bool isReordered = false;

    /// Its pictures, or what stands for them, rule the flags and offsets of the index entries.
    bool rules = false;
};

class MXFZELM_EXPORT FrameIndexTableBuilder : public IndexTableBuilder {
public:
    /// The elements in their order; one with a number beyond what 255 slices reach gets no delta entry. With
    /// `indexFillPackets` what stands behind an element up to the next one has a delta entry of its own,
    /// which points at the next element where there is no fill; not so in packages of one size, where the
    /// place of fill may vary. A `packageSize` other than 0 says that all packages have that many bytes.
    FrameIndexTableBuilder(Templates::Rational<int> const& packageRate,
                           std::vector<IndexedElement> const& elements, bool indexFillPackets,
                           std::uint32_t packageSize);
    ~FrameIndexTableBuilder() override;

    /// A content package begins, `streamOffset` bytes behind the start of the container.
    void startIndexEntry(std::uint64_t streamOffset);

    /// What the index is to know of an edit unit of element `element`: essence that is stored as it is shown
    /// has no temporal offsets.
    EditUnitIndex preProcessAnalyzerIndexEntry(std::size_t element, EditUnitIndex const& index) const;

    /// The element begins, or ends and its fill begins, `offset` bytes behind the start of the package.
    /// Throws Exceptions::BaseException with "Type size exceeded" when a slice offset does not fit in 32
    /// bits.
    void processAnalyzerIndexEntrySliceOffset(std::size_t element, std::uint64_t offset);
    void processFillSliceOffset(std::size_t element, std::uint64_t offset);

    /// Takes the index information of the element's edit unit that was stored first in the package.
    void processAnalyzerIndexEntry(std::size_t element, EditUnitIndex const& index);

    /// The package is complete.
    void appendIndexEntry();

private:
    /// Where an element or its fill begins: 0 for where no slice does.
    struct Place {
        bool isReordered = false;
        bool rules = false;
        std::uint8_t startsSlice = 0;
        std::uint8_t fillStartsSlice = 0;
    };

    class Layout;
    void noteSlice(std::uint8_t slice, std::uint64_t offset);

    std::vector<Place> places_;
    std::vector<std::uint32_t> sliceOffsets_; // of slices 1 on
    std::uint64_t streamOffset_ = 0;
    EditUnitIndex index_;
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
