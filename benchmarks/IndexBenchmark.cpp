// Look-ups in an index of ten million edit units, and what it costs in memory.
#include <MXF/Zelm/DataIO/Memory/MemoryDataSink.h>
#include <MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h>
#include <MXF/Zelm/IndexTables/EditUnitLocator.h>
#include <MXF/Zelm/KLV/Reader.h>

#include <benchmark/benchmark.h>

#include <random>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using namespace MXF::Zelm;
using namespace IndexTables;

constexpr std::int64_t editUnits = 10'000'000;

/// Bytes that the program has allocated; 0 where the C library does not tell.
std::size_t allocated() {
#ifdef __GLIBC__
    auto const info = mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}

/// A table whose segments were read from their bytes in a file, each with `perSegment` entries of groups of
/// twelve pictures.
struct LargeIndex {
    explicit LargeIndex(std::int64_t perSegment) {
        std::size_t const before = allocated();
        for (std::int64_t start = 0; start < editUnits; start += perSegment)
            addSegment(start, std::min(perSegment, editUnits - start));
        table.find(0);
        memory = allocated() - before;
    }

    void addSegment(std::int64_t start, std::int64_t count) {
        IndexTableSegment made(4);
        made.indexStartPosition(Types::Position(start));
        made.indexDuration(Types::Length(count));
        made.bodySID(Types::UInt32(1));
        IndexEntryArray entries(0, 0);
        for (std::int64_t i = start; i < start + count; ++i)
            entries.append(IndexEntry(0, static_cast<std::int8_t>(-(i % 12)), i % 12 == 0, i % 12 == 0,
                                      i % 12 != 0, false, static_cast<std::uint64_t>(i) * 50'000));
        made.indexEntryArray(entries);
        DataIO::Memory::MemoryDataSink sink;
        made.serialize(sink);
        bytes += sink.serializedSize();
        DataIO::Memory::MemoryViewDataSource source(sink.rawBuffer(),
                                                    static_cast<std::size_t>(sink.serializedSize()));
        KLV::Reader reader(source);
        std::uint64_t skipped = 0;
        auto const packet = reader.nextKLV(skipped, 0);
        table.add(std::make_unique<IndexTableSegment>(*packet, nullptr), false);
    }

    IndexTable table{2, 1};
    std::uint64_t bytes = 0; // in the file
    std::size_t memory = 0;
};

/// The time is that of one look-up at a random position.
template <class LookUp>
void lookUp(benchmark::State& state, LookUp one) {
    LargeIndex const index(state.range(0));
    std::size_t const before = allocated();
    EditUnitLocator const locator(index.table);
    std::size_t const memory = index.memory + allocated() - before;
    std::mt19937_64 random(1);
    std::vector<std::int64_t> positions(1 << 16);
    for (auto& position : positions)
        position = static_cast<std::int64_t>(random() % editUnits);
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(one(index.table, locator, positions[i++ % positions.size()]));
    state.counters["memory/file"] = static_cast<double>(memory) / static_cast<double>(index.bytes);
}

BENCHMARK_CAPTURE(lookUp, find, [](IndexTable const& table, auto const&, std::int64_t position) {
    return table.find(position);
}) -> Arg(5957) -> Arg(250);
BENCHMARK_CAPTURE(lookUp, locate, [](auto const&, EditUnitLocator const& locator, std::int64_t position) {
    return locator.locate(position);
}) -> Arg(5957) -> Arg(250);
BENCHMARK_CAPTURE(lookUp, decodingRange,
                  [](auto const&, EditUnitLocator const& locator, std::int64_t position) {
                      return locator.decodingRange(position);
                  }) -> Arg(5957);
BENCHMARK_CAPTURE(lookUp, displayPosition,
                  [](auto const&, EditUnitLocator const& locator, std::int64_t position) {
                      return locator.displayPosition(position);
                  }) -> Arg(5957);

} // namespace
