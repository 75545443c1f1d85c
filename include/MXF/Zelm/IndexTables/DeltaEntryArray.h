/// The delta entry array of an index table segment: one row for each element of an edit unit, in the order in
/// which the elements are stored.
#pragma once

#include "MXF/Zelm/IndexTables/DeltaEntry.h"
#include "MXF/Zelm/IndexTables/EntryArray.h"

namespace MXF::Zelm::IndexTables {

class MXFZELM_EXPORT DeltaEntryArray : public EntryArray {
public:
    /// Empty.
    DeltaEntryArray();

    /// Reads a batch. Throws Exceptions::InvalidLength as `EntryArray` says.
    explicit DeltaEntryArray(KLV::Value& value);

    DeltaEntryArray(DeltaEntryArray const&) = default;
    DeltaEntryArray(DeltaEntryArray&&) = default;
    DeltaEntryArray& operator=(DeltaEntryArray const&) = default;
    DeltaEntryArray& operator=(DeltaEntryArray&&) = default;
    ~DeltaEntryArray() override;

    /// Entry `index`, decoded: a copy, to be put back with `set` after a change. Throws
    /// Exceptions::BaseException with "Trying to access a element beyond the end of data".
    DeltaEntry const at(std::size_t index) const;

    /// Replaces entry `index`. Throws as `at` and `insertAt` do.
    void set(std::size_t index, DeltaEntry const& entry);

    /// Throws Exceptions::BaseException with "Trying to append an invalid entry." (see
    /// `DeltaEntry::isValid`).
    void append(DeltaEntry const& entry);

    /// Puts an entry before entry `index`. Throws Exceptions::BaseException with "Trying to insert an element
    /// beyond the end of the data" or, for an invalid entry, "TRying to insert an invalid element".
    void insertAt(std::size_t index, DeltaEntry const& entry);
};

} // namespace MXF::Zelm::IndexTables
