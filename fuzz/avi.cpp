/// Reads AVI files: their headers, the chunks that an index or a walk finds, and the data of all streams.
#include "MXF/Zelm/Essence/AVI/Reader.h"
#include "support.h"

using namespace MXF::Zelm;
using namespace MXF::Zelm::Essence::AVI;

namespace {

/// More than this of overlapping chunks shows nothing new.
constexpr std::uint64_t mostBytes = 1 << 20;

void readStream(Reader const& reader, std::size_t stream, std::uint64_t fileSize) {
    std::uint64_t bytes = 0;
    for (auto const& chunk : reader.streams()[stream].chunks) {
        Fuzz::require(chunk.offset <= fileSize && chunk.size <= fileSize - chunk.offset);
        bytes += chunk.size;
    }
    auto const source = reader.open(stream);
    std::size_t count = 0;
    for (DataIO::Chain chunk; source->absoluteOffset() < mostBytes && source->nextChunk(chunk); ++count)
        Fuzz::require(chunk.size() == reader.streams()[stream].chunks[count].size);
    Fuzz::require(source->absoluteOffset() >= mostBytes || source->absoluteOffset() == bytes);
    reader.streams()[stream].header.content();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    auto const file = std::make_shared<DataIO::Memory::MemoryViewDataSource>(data, size);
    Fuzz::passingOverBadInput([&] {
        Reader const reader(file, {.mostChunks = 10'000});
        for (std::size_t i = 0; i < reader.streams().size(); ++i)
            readStream(reader, i, size);
    });
    return 0;
}
