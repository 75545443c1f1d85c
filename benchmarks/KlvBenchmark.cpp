// Keys and the walk over packets in memory: what runs once for every packet of a file.
#include <MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h>
#include <MXF/Zelm/KLV/Reader.h>
#include <MXF/Zelm/Packs/PartitionPack.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using namespace MXF::Zelm;
using namespace KLV::Literals;

/// Keys as they follow one another in a file.
const KLV::Key keys[] = {
    "060E2B34 02050101 0D010301 04010100"_key, "060E2B34 02430101 0D010301 04010201"_key,
    "060E2B34 01010102 03010210 01000000"_key, "060E2B34 01020101 0D010301 15010500"_key,
    "060E2B34 02530101 0D010101 01011100"_key, "060E2B34 02530101 0D010201 01100100"_key,
    "060E2B34 02050101 0D010201 01030400"_key, "060E2B34 01020101 0D010301 16010300"_key,
};

/// One predicate over all keys; the time is that of one key.
template <class Predicate>
void overKeys(benchmark::State& state, Predicate predicate) {
    for (auto _ : state)
        for (auto const& key : keys) {
            auto const* one = &key;
            benchmark::DoNotOptimize(one);
            benchmark::DoNotOptimize(predicate(*one));
        }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(std::size(keys)));
}

BENCHMARK_CAPTURE(overKeys, equal, [](KLV::Key const& key) { return key == keys[3]; });
BENCHMARK_CAPTURE(overKeys, less, [](KLV::Key const& key) { return key < keys[3]; });
BENCHMARK_CAPTURE(overKeys, isFillItem, KLV::isFillItem);
BENCHMARK_CAPTURE(overKeys, isEssence, KLV::isEssence);
BENCHMARK_CAPTURE(overKeys, isMetadataSet, KLV::isMetadataSet);
BENCHMARK_CAPTURE(overKeys, isPartitionPack, Packs::isPartitionPack);

/// Packets with values of a given length, values passed over.
void walkInMemory(benchmark::State& state) {
    constexpr std::size_t packets = 1000;
    auto const length = static_cast<std::size_t>(state.range(0));
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i < packets; ++i) {
        auto const* const key = keys[i % std::size(keys)].rawBuffer();
        bytes.insert(bytes.end(), key, key + KLV::Key::size());
        bytes.insert(bytes.end(), {0x83, 0, static_cast<unsigned char>(length >> 8),
                                   static_cast<unsigned char>(length & 0xFF)});
        bytes.resize(bytes.size() + length);
    }
    for (auto _ : state) {
        DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
        KLV::Reader reader(source);
        std::uint64_t skipped = 0;
        while (!source.endOfStream())
            reader.nextKLV(skipped, 0)->value().discard();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(packets));
}

BENCHMARK(walkInMemory)->Arg(50)->Arg(5000);

} // namespace
