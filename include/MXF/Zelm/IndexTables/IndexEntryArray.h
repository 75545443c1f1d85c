/// The index entry array of an index table segment: one row for each edit unit from the segment's start
/// position on, in stored order. All have the same number of slice offsets and position table entries.
#pragma once

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/IndexTables/EntryArray.h"
#include "MXF/Zelm/IndexTables/IndexEntry.h"

namespace MXF::Zelm::IndexTables {

class MXFZELM_EXPORT IndexEntryArray : public EntryArray {
public:
    /// Empty, for entries with `sliceCount` (NSL) slice offsets and `posTableCount` (NPE) position table
    /// entries.
    IndexEntryArray(std::uint8_t sliceCount, std::uint8_t posTableCount);

    /// Reads a batch of such entries. Throws Exceptions::InvalidLength as `EntryArray` says.
    IndexEntryArray(KLV::Value& value, std::uint8_t sliceCount, std::uint8_t posTableCount);

    IndexEntryArray(IndexEntryArray const&) = default;
    IndexEntryArray(IndexEntryArray&&) = default;
    IndexEntryArray& operator=(IndexEntryArray const&) = default;
    IndexEntryArray& operator=(IndexEntryArray&&) = default;
    ~IndexEntryArray() override;

    std::uint8_t sliceCount() const { return sliceCount_; }
    std::uint8_t posTableCount() const { return posTableCount_; }

    /// Entry `index`, decoded: a copy, to be put back with `set` after a change. Throws
    /// Exceptions::BaseException with "Trying to access an element beyond the end of the data"; from an array
    /// that is constant with "IndexEntryArray::at() IndexOutOfBonds".
    IndexEntry const at(std::size_t index);
    IndexEntry const at(std::size_t index) const;

    /// Replaces entry `index`. Throws as `at` and `insertAt` do.
    void set(std::size_t index, IndexEntry const& entry);

    /// Throws Exceptions::BaseException with "Trying to append an invalid element" for an entry with another
    /// number of slice offsets or position table entries.
    void append(IndexEntry const& entry);

    /// Puts an entry before entry `index`. Throws Exceptions::BaseException with "Trying to insert an element
    /// beyond the end of the data" or, for an entry as above, "TRying to insert an invalid element".
    void insertAt(std::size_t index, IndexEntry const& entry);

    /// True for an entry that the array takes.
    bool accepts(IndexEntry const& entry) const;

    /// Single fields of entry `index`, for look-ups that need no whole entry. They throw as the constant `at`
    /// does. `slice` counts from 1 to `sliceCount()`.
    std::int8_t temporalOffset(std::size_t index) const { return field<std::int8_t>(index, 0); }
    std::int8_t keyFrameOffset(std::size_t index) const { return field<std::int8_t>(index, 1); }
    std::uint8_t flags(std::size_t index) const { return field<std::uint8_t>(index, 2); }
    std::uint64_t streamOffset(std::size_t index) const { return field<std::uint64_t>(index, 3); }
    std::uint32_t sliceOffset(std::size_t index, std::uint8_t slice) const;

private:
    friend class IndexTableSegment;

    /// Reads a batch of entries whose counts are settled later.
    explicit IndexEntryArray(KLV::Value& value);

    /// Settles the counts of entries that were read. Throws as `requireElementSize` does.
    void settle(std::uint8_t sliceCount, std::uint8_t posTableCount);

    template <class Integer>
    Integer field(std::size_t index, std::size_t offset) const {
        if (index >= size())
            failAccess();
        return ByteCoders::decodeInteger<Integer>(bytesAt(index) + offset);
    }
    [[noreturn]] static void failAccess();

    std::uint8_t sliceCount_;
    std::uint8_t posTableCount_;
};

} // namespace MXF::Zelm::IndexTables
