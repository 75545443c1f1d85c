/// What the entry arrays share in taking entries.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::IndexTables {

/// What `entry` serializes.
template <class Entry>
DataIO::Memory::MemoryDataSink entryBytes(Entry const& entry) {
    DataIO::Memory::MemoryDataSink sink(entry.serializedSize());
    entry.serialize(sink);
    return sink;
}

[[noreturn]] inline void failInvalidInsert() {
    throw Exceptions::BaseException("TRying to insert an invalid element");
}

inline void requireInsertPosition(std::size_t index, std::size_t size) {
    if (index > size)
        throw Exceptions::BaseException("Trying to insert an element beyond the end of the data");
}

} // namespace MXF::Zelm::IndexTables
