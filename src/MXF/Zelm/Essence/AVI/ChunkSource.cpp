#include "MXF/Zelm/Essence/AVI/Reader.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::AVI {

namespace {

constexpr std::uint32_t largestPiece = 1u << 20;

} // namespace

ChunkSource::ChunkSource(Templates::SharedPtr<DataIO::RandomAccessDataSource> source,
                         std::vector<Chunk> chunks)
    : source_(std::move(source)), chunks_(std::move(chunks)) {}

ChunkSource::~ChunkSource() = default;

void ChunkSource::seek(std::size_t position) {
    takePending();
    next_ = std::min(position, chunks_.size());
    rest_ = {};
}

bool ChunkSource::nothingLeft() const {
    auto const isEmpty = [](Chunk const& chunk) { return chunk.size == 0; };
    return rest_.size == 0 &&
           std::all_of(chunks_.begin() + static_cast<std::ptrdiff_t>(next_), chunks_.end(), isEmpty);
}

bool ChunkSource::produce(DataIO::Chain& chain) {
    if (rest_.size == 0) {
        if (next_ == chunks_.size())
            return false;
        rest_ = chunks_[next_++];
    }
    readPiece(chain);
    return true;
}

void ChunkSource::readPiece(DataIO::Chain& chain) {
    std::uint32_t const size = std::min(rest_.size, largestPiece);
    if (size == 0)
        return;
    auto block = blocks_.block(size);
    source_->seek(rest_.offset);
    if (std::uint64_t const count = source_->read(block->bytes(), size); count < size)
        throw Exceptions::at(
            rest_.offset, Exceptions::InvalidLength("A chunk has " + std::to_string(rest_.size) +
                                                    " bytes more, " + std::to_string(count) + " are left"));
    chain.append(DataIO::Slice(std::move(block), 0, size));
    rest_.offset += size;
    rest_.size -= size;
}

bool ChunkSource::nextChunk(DataIO::Chain& chunk) {
    chunk = takePending();
    if (chunk.empty() && rest_.size == 0) {
        if (next_ == chunks_.size())
            return false;
        rest_ = chunks_[next_++];
    }
    std::uint64_t const before = chunk.size();
    while (rest_.size != 0)
        readPiece(chunk);
    passed(chunk.size() - before);
    return true;
}

} // namespace MXF::Zelm::Essence::AVI
