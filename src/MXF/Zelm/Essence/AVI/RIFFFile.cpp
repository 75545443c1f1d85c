#include "MXF/Zelm/Essence/AVI/RIFFFile.h"

#include "MXF/Zelm/Essence/LittleEndian.h"

namespace MXF::Zelm::Essence::AVI {

std::size_t RIFFFile::read(std::uint64_t offset, unsigned char* bytes, std::size_t size) const {
    if (source_->seek(offset) != offset)
        return 0;
    return static_cast<std::size_t>(source_->read(bytes, size));
}

std::vector<unsigned char> RIFFFile::read(Range const& range, std::size_t most) const {
    std::uint64_t const there = range.begin < size_ ? size_ - range.begin : 0;
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>({range.size(), there, most})));
    bytes.resize(read(range.begin, bytes.data(), bytes.size()));
    return bytes;
}

std::optional<RIFFChunk> RIFFFile::chunkAt(std::uint64_t offset, std::uint64_t end) const {
    unsigned char head[RIFFChunk::headSize + RIFFChunk::typeSize] = {};
    end = std::min(end, size_);
    if (offset > end || end - offset < RIFFChunk::headSize)
        return std::nullopt;
    auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(sizeof head, end - offset));
    if (read(offset, head, wanted) < wanted)
        return std::nullopt;
    RIFFChunk chunk;
    chunk.id = littleEndian<std::uint32_t>(head);
    chunk.size = littleEndian<std::uint32_t>(head + 4);
    chunk.offset = offset;
    if (chunk.isList())
        chunk.type = littleEndian<std::uint32_t>(head + RIFFChunk::headSize);
    return chunk;
}

} // namespace MXF::Zelm::Essence::AVI
