/// Where elements begin in the edit units of a container: what the delta entries and slice offsets of an
/// index table say of them (SMPTE 377M).
///
///     element      | system | picture            | sound 1 | sound 2 |
///     size           512      varies               6656      6656
///     slice        | 0                           | 1                 |
///     delta          0        512                  0         6656
#pragma once

#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/IndexTables/DeltaEntryArray.h"
#include "MXF/Zelm/IndexTables/IndexEntry.h"

#include <optional>
#include <vector>

namespace MXF::Zelm::MXFIO {

/// Takes 4 bytes for each edit unit and element whose size varies; the size of the last element does not
/// matter.
class ElementLayout {
public:
    /// One element of an edit unit. The packets of a system item are one.
    struct Start {
        GenericContainer::ElementKey key;
        std::uint64_t offset = 0; // from the edit unit's first byte
    };

    /// The elements of the next edit unit, in order, the first at 0.
    void add(std::vector<Start> const& starts);

    /// Forgets the last edit unit.
    void removeLast();

    /// All edit units have the elements of the first, and an index table can say where they are.
    bool isRegular() const;

    /// Number of elements of each edit unit.
    std::size_t size() const { return keys_.size(); }

    /// Number of elements, but the last, whose size varies: NSL.
    std::uint8_t sliceCount() const;

    /// An entry for each element; pictures are shifted in time where `isReordered`.
    IndexTables::DeltaEntryArray deltaEntries(bool isReordered) const;

    /// Puts the slice offsets of edit unit `unit` into its entry.
    void addSliceOffsets(std::size_t unit, IndexTables::IndexEntry& entry) const;

private:
    struct Column {
        std::uint32_t size = 0;           // while all have the same
        std::vector<std::uint32_t> sizes; // otherwise, of each edit unit
        bool varies() const { return !sizes.empty(); }
    };
    bool fits(std::vector<Start> const& starts) const;
    void addSize(Column& column, std::uint64_t size);

    std::vector<GenericContainer::ElementKey> keys_;
    std::vector<Column> columns_; // of all elements but the last
    std::size_t count_ = 0;       // edit units
    bool isRegular_ = true;
};

} // namespace MXF::Zelm::MXFIO
