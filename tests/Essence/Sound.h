/// Sound for tests: samples that are all different, sources over bytes, what sources give.
#pragma once

#include "DataIO/Cuts.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"

namespace MXF::Zelm::Test {

/// `count` little-endian words of `bits` bits, 20 of them in 3 bytes.
inline Bytes samples(std::size_t count, unsigned bits) {
    Bytes bytes = pattern(count * ((bits + 7) / 8));
    for (std::size_t i = 0; bits == 20 && i < bytes.size(); i += 3)
        bytes[i] &= 0xF0;
    return bytes;
}

inline Templates::SharedPtr<DataIO::SliceSource> sourceOf(DataIO::Chain bytes) {
    return std::make_shared<DataIO::BufferSliceSource>(std::move(bytes));
}

inline Templates::SharedPtr<DataIO::SliceSource> sourceOf(Bytes const& bytes) {
    return sourceOf(cut(bytes, std::max<std::size_t>(bytes.size(), 1), 0));
}

/// All that a source has left, read in pieces of an odd size.
inline Bytes readAll(DataIO::SliceSource& source, std::uint64_t piece = 1021) {
    DataIO::Chain chain;
    while (source.read(piece, chain) == piece)
        continue;
    EXPECT_TRUE(source.endOfStream());
    return bytesOf(chain);
}

} // namespace MXF::Zelm::Test
