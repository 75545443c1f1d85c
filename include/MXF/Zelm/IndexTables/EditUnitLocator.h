/// From edit units to bytes: the arithmetic of index tables (SMPTE 377M).
///
///     display position --temporal offset--> stored position --entry or byte count--> stream offset
///                                                |
///                                                +-- key frame offset --> where decoding must begin
///
/// Positions are edit units in stored order unless they are called display positions. Stream offsets count
/// from the first byte of the essence container, partition packs, header metadata and index tables left out.
#pragma once

#include "MXF/Zelm/IndexTables/IndexTable.h"

#include <optional>

namespace MXF::Zelm::IndexTables {

/// What the index itself does not tell of the container.
struct MXFZELM_EXPORT EssenceExtent {
    /// Bytes of the container in all, so that the last edit unit has a length and none lies beyond; absent
    /// when it is not known.
    std::optional<std::uint64_t> streamLength = std::nullopt;

    /// Where edit unit 0 begins if the rate is constant: 0 when each edit unit is wrapped by itself. Of a
    /// clip that is wrapped as a whole, files count the bytes from its first value byte on: the number of
    /// bytes of its key and length.
    std::uint64_t constantRateStart = 0;
};

/// Where an edit unit stands.
struct MXFZELM_EXPORT EditUnitLocation {
    std::int64_t position = 0;

    /// Its first byte.
    std::uint64_t streamOffset = 0;

    /// Its bytes, with keys, lengths and fill; absent when neither the index nor the essence's length tells
    /// where it ends.
    std::optional<std::uint64_t> length = std::nullopt;

    /// The segment that it was found in, owned by the table.
    IndexTableSegment const* segment = nullptr;

    /// Its entry there; absent where it was found by EditUnitByteCount.
    std::optional<std::size_t> entry = std::nullopt;
};

/// Where one element of an edit unit stands.
struct MXFZELM_EXPORT ElementLocation {
    /// Its first byte.
    std::uint64_t streamOffset = 0;

    /// Its bytes, with key, length and fill; absent when it is not known where it ends.
    std::optional<std::uint64_t> length = std::nullopt;

    /// -1 temporally reordered, 0 not, n shifted by the edit unit's position table entry n.
    std::int8_t posTableIndex = 0;
};

/// Stored edit units that must be decoded, from `first` on, to show what stands in `last`.
struct MXFZELM_EXPORT DecodingRange {
    std::int64_t first = 0;
    std::int64_t last = 0;
};

/// Looks edit units up in one table. All answers are absent where the index has no information, or none that
/// can be true: a table from a file may say anything. A look-up takes logarithmic time in the number of
/// segments.
///
/// The segment that serves a position is the one that `IndexTable::find` finds; if there is none, the one
/// with the latest start among those whose duration does not say how far they reach (0 or negative): at a
/// constant rate to the end of the essence, otherwise as far as they have entries.
class MXFZELM_EXPORT EditUnitLocator : public Platform::Allocated {
public:
    /// `table` is not owned, must outlive the locator, and is taken as it is: segments that are added later
    /// are not seen. Takes linear time.
    explicit EditUnitLocator(IndexTable const& table, EssenceExtent const& extent = {});
    explicit EditUnitLocator(IndexTable const&& table, EssenceExtent const& extent = {}) = delete;
    EditUnitLocator(EditUnitLocator&& other) noexcept;
    EditUnitLocator& operator=(EditUnitLocator&& other) noexcept;
    ~EditUnitLocator();

    /// Where edit unit `position` stands.
    std::optional<EditUnitLocation> locate(std::int64_t position) const;

    /// The edit unit that byte `streamOffset` of the container belongs to; of an edit unit whose length is
    /// not known all that follows it does. Where offsets do not rise with the positions, an edit unit may be
    /// missed. Takes linear time in the number of segments, logarithmic in that of their entries.
    std::optional<std::int64_t> positionAt(std::uint64_t streamOffset) const;

    /// Where element `element` of edit unit `position` stands, counted from 0 in the order in which elements
    /// are stored. Where the segment has no delta entries, element 0 is the whole edit unit.
    std::optional<ElementLocation> locateElement(std::int64_t position, std::size_t element) const;

    /// Number of elements that `locateElement` knows in edit unit `position`, 0 outside the table.
    std::size_t elementCount(std::int64_t position) const;

    /// The flags of an index entry; absent also at a constant rate.
    std::optional<std::uint8_t> flags(std::int64_t position) const;

    /// Where the picture that is shown at `displayPosition` is stored. At a constant rate both are the same,
    /// as they always are of elements whose PosTableIndex is not -1.
    std::optional<std::int64_t> storedPosition(std::int64_t displayPosition) const;

    /// Where the picture that is stored at `position` is shown.
    std::optional<std::int64_t> displayPosition(std::int64_t position) const;

    /// The edit unit where decoding must begin to show what is stored at `position`; absent also when its
    /// entry says that the offset is out of range. At a constant rate it is `position`.
    std::optional<std::int64_t> keyFrame(std::int64_t position) const;

    /// What must be decoded to show what is shown at `displayPosition`.
    std::optional<DecodingRange> decodingRange(std::int64_t displayPosition) const;

    /// Behind the last edit unit that the table covers. Where the rate is constant to the end of the essence
    /// its length tells, and a part of an edit unit at the end counts as one.
    std::optional<std::int64_t> end() const;

private:
    struct State;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::IndexTables
