/// Where the chunks of the streams of an AVI file are.
#pragma once

#include "MXF/Zelm/Essence/AVI/Headers.h"
#include "MXF/Zelm/Essence/AVI/Reader.h"

namespace MXF::Zelm::Essence::AVI {

/// Chunks of each stream.
using ChunkLists = std::vector<std::vector<Chunk>>;

class ChunkFinder {
public:
    /// `movies` are the contents of the lists 'movi', in the order of the file.
    ChunkFinder(RIFFFile const& file, std::vector<StreamEntry> const& streams,
                std::vector<Range> const& movies, std::size_t mostChunks, std::vector<Fault>& faults)
        : file_(file), streams_(streams), movies_(movies), mostChunks_(mostChunks), faults_(faults) {}

    /// By super indexes and the indexes that they name; none when they are missing or wrong.
    std::optional<ChunkLists> byOpenDML();

    /// By idx1 at `range`; none when it is missing or wrong.
    std::optional<ChunkLists> byIdx1(std::optional<Range> const& range);

    /// By a walk over all chunks.
    ChunkLists byWalk();

private:
    ChunkLists empty() const { return ChunkLists(streams_.size()); }
    std::optional<std::size_t> streamOf(FourCC id) const;
    void fault(std::uint64_t offset, std::string message, bool isLoss = false);
    void add(std::vector<Chunk>& chunks, Chunk const& chunk);

    bool readSuperIndex(std::size_t stream, std::vector<Chunk>& chunks);
    std::uint64_t readStandardIndex(std::uint64_t offset, std::vector<Chunk>& chunks);
    std::optional<std::uint64_t> idx1Base(const unsigned char* entry) const;
    bool readIdx1(Range const& range, ChunkLists& lists);

    bool isRight(std::size_t stream, Chunk const& chunk) const;
    bool agrees(ChunkLists const& lists) const;
    bool hasStreamData(Range const& range) const;
    bool leavesOut(ChunkLists const& lists) const;
    std::optional<ChunkLists> checked(ChunkLists lists, std::uint64_t offset);

    RIFFFile const& file_;
    std::vector<StreamEntry> const& streams_;
    std::vector<Range> const& movies_;
    std::size_t mostChunks_;
    std::vector<Fault>& faults_;
    std::size_t count_ = 0;
};

} // namespace MXF::Zelm::Essence::AVI
