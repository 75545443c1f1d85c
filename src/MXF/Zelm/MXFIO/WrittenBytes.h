/// Bytes that writers make themselves: packs, metadata and index segments as slices, fill items.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/KLV/Key.h"

#include <vector>

namespace MXF::Zelm::MXFIO {

/// What `object.serialize(sink, arguments…)` writes.
template <class Object, class... Arguments>
std::vector<unsigned char> bytesOf(Object& object, Arguments const&... arguments) {
    DataIO::Memory::MemoryDataSink sink;
    object.serialize(sink, arguments...);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

template <class Object, class... Arguments>
DataIO::Slice sliceOf(Object& object, Arguments const&... arguments) {
    return DataIO::Slice::adopt(bytesOf(object, arguments...));
}

/// The key of fill items with a version byte (byte 7): 2, or 1 as old writers have it.
KLV::Key fillKey(unsigned char version);

/// Bytes that a fill item has at least here: a key, and a length of four bytes.
constexpr std::uint32_t smallestWrittenFill = 20;

} // namespace MXF::Zelm::MXFIO
