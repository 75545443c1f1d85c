/// What the arrays of an index table segment share: entries of one size, packed in one buffer as they stand
/// in a file and decoded on access, so that an array in memory costs what it costs in the file. Laid out as a
/// batch (SMPTE 377M).
///
///     4    number of entries
///     4    bytes of an entry
///          entries
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <vector>

namespace MXF::Zelm::IndexTables {

class MXFZELM_EXPORT EntryArray : public Platform::Allocated {
public:
    virtual ~EntryArray();

    /// Number of entries.
    std::size_t size() const { return bytes_.size() / elementSize_; }
    bool empty() const { return bytes_.empty(); }

    /// Bytes of an entry.
    std::uint32_t elementSize() const { return elementSize_; }

    /// Takes entry `index` out. Throws Exceptions::BaseException with "Trying to remove an element beyond the
    /// end of the data".
    void remove(std::size_t index);

    void serialize(DataIO::DataSink& sink) const;

    /// Bytes that `serialize` writes: 8 and the entries.
    std::uint64_t serializedSize() const;

protected:
    /// `elementSize` is not 0.
    explicit EntryArray(std::uint32_t elementSize) : elementSize_(elementSize) {}
    EntryArray(EntryArray const&) = default;
    EntryArray(EntryArray&&) = default;
    EntryArray& operator=(EntryArray const&) = default;
    EntryArray& operator=(EntryArray&&) = default;

    /// Replaces the entries by those of a batch in a file, whatever size they have there. Throws
    /// Exceptions::InvalidLength with "Invalid data size in the Index Table collection. Not enough data to
    /// read element entry size" or "Number of expected values differ from the size of the local KLV value
    /// field. Index Table Segment".
    void read(KLV::Value& value);

    /// Settles the size of the entries that were read. Throws Exceptions::InvalidLength with "Invalid data
    /// size in Value to create an element in the Index Table collections." when they have another; the size
    /// that an empty array gives is passed over.
    void requireElementSize(std::uint32_t expected);

    /// The bytes of entry `index`, which is below `size()`.
    const unsigned char* bytesAt(std::size_t index) const { return bytes_.data() + index * elementSize_; }

    /// Puts the `elementSize()` bytes of `entry` before entry `index`, which is at most `size()`.
    void insertBytes(std::size_t index, DataIO::Memory::MemoryDataSink const& entry);

    /// Writes the `elementSize()` bytes of `entry` over entry `index`, which is below `size()`.
    void replaceBytes(std::size_t index, DataIO::Memory::MemoryDataSink const& entry);

private:
    std::vector<unsigned char> bytes_;
    std::uint32_t elementSize_;
};

} // namespace MXF::Zelm::IndexTables
