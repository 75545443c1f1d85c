/// Chunks of a RIFF file, wherever they stand.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/Essence/AVI/StreamHeader.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace MXF::Zelm::Essence::AVI {

/// A stretch of a file.
struct Range {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    std::uint64_t size() const { return end - begin; }
};

struct RIFFChunk {
    static constexpr std::uint64_t headSize = 8, typeSize = 4;

    FourCC id = 0;
    FourCC type = 0; ///< of RIFF and LIST, else 0
    std::uint64_t offset = 0;
    std::uint32_t size = 0; ///< as it is written

    bool isList() const { return id == fourCC("RIFF") || id == fourCC("LIST"); }
    std::uint64_t data() const { return offset + headSize; }

    /// Where the next chunk stands.
    std::uint64_t next() const { return data() + size + size % 2; }

    /// What is in it, as far as `end`; of a list, behind its type. A list of size 0 was not finished and
    /// goes on to the end.
    Range content(std::uint64_t end) const {
        std::uint64_t const stop = isList() && size == 0 ? end : std::min(end, data() + size);
        return {std::min(data() + (isList() ? typeSize : 0), stop), stop};
    }
};

class RIFFFile {
public:
    explicit RIFFFile(Templates::SharedPtr<DataIO::RandomAccessDataSource> source)
        : source_(std::move(source)), size_(source_->seek(~std::uint64_t{0})) {}

    std::uint64_t size() const { return size_; }

    /// Reads up to `size` bytes at `offset` and returns how many.
    std::size_t read(std::uint64_t offset, unsigned char* bytes, std::size_t size) const;

    /// The first bytes of a stretch, `most` at most.
    std::vector<unsigned char> read(Range const& range, std::size_t most) const;

    /// The chunk at `offset`; none when its head does not stand before `end`.
    std::optional<RIFFChunk> chunkAt(std::uint64_t offset, std::uint64_t end) const;

    /// Calls `use(chunk)` for the chunks in a stretch, until it returns false.
    template <class Use>
    void forChunks(Range const& range, Use use) const {
        for (std::uint64_t at = range.begin;;) {
            auto const chunk = chunkAt(at, range.end);
            if (!chunk || !use(*chunk))
                return;
            at = chunk->next();
        }
    }

private:
    Templates::SharedPtr<DataIO::RandomAccessDataSource> source_;
    std::uint64_t size_;
};

} // namespace MXF::Zelm::Essence::AVI
