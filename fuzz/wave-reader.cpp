/// Reads Wave files, and cuts their samples into edit units and channels.
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/GenericContainer/Analyzers/PCMAnalyzer.h"
#include "support.h"

using namespace MXF::Zelm;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Fuzz::passingOverBadInput([&] {
        Essence::Wave::WaveReader reader(std::make_shared<DataIO::BufferSliceSource>(data, size));
        auto const analyzers = GenericContainer::makePCMAnalyzers(reader, 2, {.editRate = {30000, 1001}});
        GenericContainer::EditUnit unit;
        std::uint64_t bytes = 0;
        for (std::size_t i = 0; i < analyzers.size() && i < 20; ++i) {
            analyzers[i]->preload();
            while (analyzers[i]->nextEditUnit(unit))
                bytes += unit.data.size();
            analyzers[i]->finalize();
        }
        Fuzz::require(bytes <= size + analyzers.size() * 20);
    });
    Fuzz::passingOverBadInput([&] {
        Essence::Wave::WaveReader reader(std::make_shared<DataIO::BufferSliceSource>(data, size));
        reader.readRest();
        for (auto const& chunk : reader.chunks())
            Fuzz::require(chunk.content.size() <= size);
    });
    return 0;
}
