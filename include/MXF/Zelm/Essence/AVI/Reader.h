/// Reads AVI files: RIFF AVI 1.0, and OpenDML, of any size.
///
///     RIFF 'AVI '
///         LIST 'hdrl'    avih, LIST 'strl' (strh, strf, strn, indx) for each stream
///         LIST 'movi'    chunks 00dc, 01wb … , lists 'rec ' of them, ix00, ix01 …
///         idx1
///     RIFF 'AVIX'        LIST 'movi', and so on
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/AVI/StreamHeader.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <string>
#include <vector>

namespace MXF::Zelm::Essence::AVI {

/// A piece of a stream: a picture, or some sound.
struct Chunk {
    std::uint64_t offset = 0; ///< of its data in the file
    std::uint32_t size = 0;   ///< in bytes
    bool isKey = true;        ///< may be decoded without others

    friend bool operator==(Chunk const&, Chunk const&) = default;
};

/// Something that is wrong in a file and was passed over.
struct Fault {
    std::uint64_t offset = 0;
    std::string message = {};
    bool isLoss = false; ///< data of a stream is missing; else another way to it was found
};

/// The data of a stream, as a source or chunk by chunk. Several of one file may be read in turn.
class MXFZELM_EXPORT ChunkSource : public PieceSource {
public:
    /// `chunks` of `source`.
    ChunkSource(Templates::SharedPtr<DataIO::RandomAccessDataSource> source, std::vector<Chunk> chunks);
    ~ChunkSource() override;

    /// The number of the chunk that is read next; where one was read in part, of the one behind it.
    std::size_t position() const { return next_; }

    /// Goes on with chunk `position`, at most the end. What is left of another one is passed over.
    void seek(std::size_t position);

    /// The rest of the chunk that is read, or the next one, which may be empty; false at the end. Throws
    /// Exceptions::InvalidLength when the file has become shorter.
    bool nextChunk(DataIO::Chain& chunk);

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override;
    void readPiece(DataIO::Chain& chain);

    Templates::SharedPtr<DataIO::RandomAccessDataSource> source_;
    std::vector<Chunk> chunks_;
    DataIO::Memory::MemoryBlockFactory blocks_;
    std::size_t next_ = 0;
    Chunk rest_ = {}; // of the chunk before next_
};

/// What an AVI file holds. An index is used when it agrees with the chunks at some places and leaves none
/// out; otherwise all chunks are found by a walk.
class MXFZELM_EXPORT Reader : public Platform::Allocated {
public:
    enum class IndexKind {
        OpenDML, ///< indx and ix##
        Idx1,
        Walk ///< no index, or none that could be used
    };

    struct Limits {
        /// Chunks in all: each takes 16 bytes of memory.
        std::size_t mostChunks = std::size_t{1} << 24;
    };

    struct Stream {
        StreamHeader header = {};
        std::vector<Chunk> chunks = {};
    };

    /// Reads the headers and finds the chunks. Throws Exceptions::InvalidFormat when it is no AVI file or has
    /// no streams, and InvalidStructure when there are more chunks than allowed.
    explicit Reader(Templates::SharedPtr<DataIO::RandomAccessDataSource> source);
    Reader(Templates::SharedPtr<DataIO::RandomAccessDataSource> source, Limits const& limits);
    ~Reader();

    MainHeader const& mainHeader() const { return mainHeader_; }

    /// At most 100.
    std::vector<Stream> const& streams() const { return streams_; }

    IndexKind indexKind() const { return indexKind_; }

    /// What was wrong.
    std::vector<Fault> const& faults() const { return faults_; }

    /// The data of a stream; it lives on without the reader. Throws Exceptions::InvalidPosition when `stream`
    /// is not below the number of streams.
    Templates::SharedPtr<ChunkSource> open(std::size_t stream) const;

private:
    Templates::SharedPtr<DataIO::RandomAccessDataSource> source_;
    MainHeader mainHeader_;
    std::vector<Stream> streams_;
    IndexKind indexKind_ = IndexKind::Walk;
    std::vector<Fault> faults_;
};

} // namespace MXF::Zelm::Essence::AVI
