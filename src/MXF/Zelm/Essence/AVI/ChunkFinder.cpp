#include "MXF/Zelm/Essence/AVI/ChunkFinder.h"

#include "MXF/Zelm/Essence/LittleEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::AVI {

namespace {

constexpr std::size_t readAtOnce = std::size_t{64} << 10;
constexpr std::size_t indexHeadSize = 24; // of indx and ix##

std::uint32_t longAt(const unsigned char* bytes) { return littleEndian<std::uint32_t>(bytes); }

/// Calls `use(entry)` for entries of `size` bytes in a stretch, until it returns false.
template <class Use>
void forEntries(RIFFFile const& file, Range range, std::size_t size, Use use) {
    for (std::size_t const atOnce = readAtOnce / size * size; range.size() >= size;) {
        auto const bytes = file.read(range, atOnce);
        for (std::size_t at = 0; bytes.size() - at >= size; at += size)
            if (!use(bytes.data() + at))
                return;
        if (bytes.size() < size)
            return;
        range.begin += bytes.size() / size * size;
    }
}

/// Whether `id` is one of stream data, 00 to 99 with two characters.
bool isStreamData(FourCC id) {
    auto const isDigit = [](unsigned character) { return character >= '0' && character <= '9'; };
    bool const isPalette = id >> 16 == ('p' | 'c' << 8);
    return isDigit(id & 0xFF) && isDigit(id >> 8 & 0xFF) && !isPalette;
}

} // namespace

void ChunkFinder::fault(std::uint64_t offset, std::string message, bool isLoss) {
    faults_.push_back({offset, std::move(message), isLoss});
}

void ChunkFinder::add(std::vector<Chunk>& chunks, Chunk const& chunk) {
    if (++count_ > mostChunks_)
        throw Exceptions::InvalidStructure("An AVI file has more than " + std::to_string(mostChunks_) +
                                           " chunks");
    chunks.push_back(chunk);
}

std::optional<std::size_t> ChunkFinder::streamOf(FourCC id) const {
    std::size_t const number = (id & 0x0F) * 10 + (id >> 8 & 0x0F);
    return isStreamData(id) && number < streams_.size() ? std::optional(number) : std::nullopt;
}

std::optional<ChunkLists> ChunkFinder::byOpenDML() {
    auto const has = [](StreamEntry const& stream) { return stream.superIndex.has_value(); };
    if (!std::all_of(streams_.begin(), streams_.end(), has))
        return std::nullopt;
    count_ = 0;
    auto lists = empty();
    for (std::size_t i = 0; i < streams_.size(); ++i)
        if (!readSuperIndex(i, lists[i])) {
            fault(streams_[i].superIndex->begin,
                  "The super index of stream " + std::to_string(i) + " is wrong");
            return std::nullopt;
        }
    return checked(std::move(lists), streams_.front().superIndex->begin);
}

/// Entries: offset of an index (8), its size (4), duration (4). Indexes stand in rising order, so that they
/// cannot hold more than the file does.
bool ChunkFinder::readSuperIndex(std::size_t stream, std::vector<Chunk>& chunks) {
    constexpr std::size_t entrySize = 16;
    auto const range = *streams_[stream].superIndex;
    auto const head = file_.read(range, indexHeadSize);
    bool const isSuper = head.size() == indexHeadSize && head[0] == 4 && head[1] <= 1 && head[3] == 0;
    std::uint64_t const entries = isSuper ? longAt(head.data() + 4) : 0;
    if (!isSuper || entries > (range.size() - indexHeadSize) / entrySize)
        return false;
    Range const table = {range.begin + indexHeadSize, range.begin + indexHeadSize + entries * entrySize};
    std::uint64_t behind = 1; // the index before; 0 once one is wrong
    forEntries(file_, table, entrySize, [&](const unsigned char* entry) {
        auto const offset = littleEndian<std::uint64_t>(entry);
        behind = offset >= behind ? readStandardIndex(offset, chunks) : 0;
        return behind != 0;
    });
    return behind != 0;
}

/// Reads ix## and returns where it ends, 0 when it is wrong. Entries: offset (4), size (4), and in a field
/// index the offset of the second field (4).
std::uint64_t ChunkFinder::readStandardIndex(std::uint64_t offset, std::vector<Chunk>& chunks) {
    constexpr std::uint32_t notKey = 0x80000000;
    auto const chunk = file_.chunkAt(offset, file_.size());
    if (!chunk)
        return 0;
    auto const content = chunk->content(file_.size());
    auto const head = file_.read(content, indexHeadSize);
    if (head.size() < indexHeadSize || head[1] > 1 || head[0] != 2 + head[1] || head[3] != 1)
        return 0;
    std::size_t const entrySize = std::size_t{head[0]} * 4;
    std::uint64_t const entries = longAt(head.data() + 4);
    auto const base = littleEndian<std::uint64_t>(head.data() + 12);
    if (entries > (content.size() - indexHeadSize) / entrySize || base > file_.size())
        return 0;
    Range const table = {content.begin + indexHeadSize, content.begin + indexHeadSize + entries * entrySize};
    forEntries(file_, table, entrySize, [&](const unsigned char* entry) {
        std::uint32_t const size = longAt(entry + 4);
        add(chunks, {base + longAt(entry), size & ~notKey, (size & notKey) == 0});
        return true;
    });
    return content.end;
}

std::optional<ChunkLists> ChunkFinder::byIdx1(std::optional<Range> const& range) {
    if (!range || movies_.size() != 1) // it does not reach beyond the first list
        return std::nullopt;
    count_ = 0;
    auto lists = empty();
    if (!readIdx1(*range, lists)) {
        fault(range->begin, "The index idx1 is wrong");
        return std::nullopt;
    }
    return checked(std::move(lists), range->begin);
}

/// Offsets count from the type of the list 'movi', or, in some files, from the start of the file.
std::optional<std::uint64_t> ChunkFinder::idx1Base(const unsigned char* entry) const {
    for (std::uint64_t const base : {movies_.front().begin - RIFFChunk::typeSize, std::uint64_t{0}})
        if (auto const chunk = file_.chunkAt(base + longAt(entry + 8), file_.size());
            chunk && chunk->id == longAt(entry) && chunk->size == longAt(entry + 12))
            return base;
    return std::nullopt;
}

/// Entries: chunk id (4), flags (4), offset of the chunk (4), size of its data (4).
bool ChunkFinder::readIdx1(Range const& range, ChunkLists& lists) {
    constexpr std::size_t entrySize = 16;
    constexpr std::uint32_t keyFlag = 0x10;
    std::optional<std::uint64_t> base;
    forEntries(file_, range, entrySize, [&](const unsigned char* entry) {
        auto const stream = streamOf(longAt(entry));
        if (!stream)
            return true; // lists 'rec ', and what belongs to no stream
        if (!base)
            base = idx1Base(entry);
        if (base)
            add(lists[*stream], {*base + longAt(entry + 8) + RIFFChunk::headSize, longAt(entry + 12),
                                 (longAt(entry + 4) & keyFlag) != 0});
        return base.has_value();
    });
    return base.has_value();
}

ChunkLists ChunkFinder::byWalk() {
    count_ = 0;
    auto lists = empty();
    for (auto const& movie : movies_)
        for (std::uint64_t at = movie.begin; auto const chunk = file_.chunkAt(at, movie.end);) {
            auto const stream = streamOf(chunk->id);
            if (stream && chunk->size > file_.size() - chunk->data()) {
                fault(chunk->offset, "A chunk of " + std::to_string(chunk->size) + " bytes is cut off", true);
                break;
            }
            if (stream)
                add(lists[*stream], {chunk->data(), chunk->size, true});
            at = chunk->isList() ? chunk->data() + RIFFChunk::typeSize : chunk->next();
        }
    return lists;
}

bool ChunkFinder::isRight(std::size_t stream, Chunk const& chunk) const {
    if (chunk.offset < RIFFChunk::headSize || chunk.offset > file_.size() ||
        chunk.size > file_.size() - chunk.offset)
        return false;
    auto const found = file_.chunkAt(chunk.offset - RIFFChunk::headSize, file_.size());
    return found && streamOf(found->id) == stream && found->size == chunk.size;
}

/// Looks at some chunks of each stream, and at the bounds of all.
bool ChunkFinder::agrees(ChunkLists const& lists) const {
    constexpr std::size_t looks = 16;
    for (std::size_t stream = 0; stream < lists.size(); ++stream) {
        auto const& chunks = lists[stream];
        for (auto const& chunk : chunks)
            if (chunk.offset > file_.size() || chunk.size > file_.size() - chunk.offset)
                return false;
        for (std::size_t look = 0; look < looks && !chunks.empty(); ++look)
            if (!isRight(stream, chunks[(chunks.size() - 1) * look / (looks - 1)]))
                return false;
    }
    return true;
}

/// Whether data of a stream begins in a stretch, which begins with a chunk.
bool ChunkFinder::hasStreamData(Range const& range) const {
    for (std::uint64_t at = range.begin; auto const chunk = file_.chunkAt(at, range.end);) {
        if (streamOf(chunk->id))
            return true;
        at = chunk->isList() ? chunk->data() + RIFFChunk::typeSize : chunk->next();
    }
    return false;
}

/// Whether data of a stream stands between the chunks that are listed, or behind them.
bool ChunkFinder::leavesOut(ChunkLists const& lists) const {
    std::vector<Range> listed;
    for (auto const& chunks : lists)
        for (auto const& chunk : chunks)
            listed.push_back({std::max(chunk.offset, RIFFChunk::headSize) - RIFFChunk::headSize,
                              chunk.offset + chunk.size + chunk.size % 2});
    std::sort(listed.begin(), listed.end(), [](auto const& a, auto const& b) { return a.begin < b.begin; });
    auto next = listed.begin();
    for (auto const& movie : movies_) {
        std::uint64_t at = movie.begin;
        for (; next != listed.end() && next->begin < movie.end; ++next) {
            if (next->begin > at && hasStreamData({at, next->begin}))
                return true;
            at = std::max(at, next->end);
        }
        if (at < movie.end && hasStreamData({at, movie.end}))
            return true;
    }
    return false;
}

std::optional<ChunkLists> ChunkFinder::checked(ChunkLists lists, std::uint64_t offset) {
    if (!agrees(lists))
        fault(offset, "An index does not agree with the chunks");
    else if (leavesOut(lists))
        fault(offset, "An index leaves chunks out");
    else
        return lists;
    return std::nullopt;
}

} // namespace MXF::Zelm::Essence::AVI
