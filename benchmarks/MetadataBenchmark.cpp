// Loading header metadata, alone and with listeners, removing it, and loading the standard dictionary.
#include <MXF/Zelm/ByteCoders/BigEndian.h>
#include <MXF/Zelm/DataIO/Memory/MemoryDataSink.h>
#include <MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h>
#include <MXF/Zelm/KLV/Reader.h>
#include <MXF/Zelm/MXFIO/Reader2.h>
#include <MXF/Zelm/Metadata/Listeners/BaseMetadataIndexListener.h>
#include <MXF/Zelm/Metadata/Listeners/MetadataSetRelationshipManager.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using namespace MXF::Zelm;
using namespace KLV::Literals;
using Packs::PartitionPack;

constexpr auto sequenceKey = "060E2B34 02530101 0D010101 01010F00"_key;

/// Three properties of a sequence: local tag, label, bytes of the value.
struct Property {
    std::uint16_t tag;
    KLV::Key label;
    std::uint16_t length;
};
constexpr Property properties[] = {
    {0x3C0A, "060E2B34 01010101 01011502 00000000"_key, 16}, // InstanceID
    {0x0201, "060E2B34 01010102 04070100 00000000"_key, 16}, // DataDefinition
    {0x0202, "060E2B34 01010102 07020201 01030000"_key, 8},  // Duration
};

template <class Integer>
void write(DataIO::DataSink& sink, Integer value) {
    unsigned char bytes[sizeof value];
    ByteCoders::codeInteger(value, bytes);
    sink.write(bytes, sizeof bytes);
}

/// A set with an instance UID of its own.
void writeSet(DataIO::DataSink& sink, std::uint64_t number) {
    sink.write(sequenceKey.rawBuffer(), KLV::Key::size());
    write(sink, std::uint32_t{0x83000000 + 3 * 4 + 16 + 16 + 8});
    for (auto const& property : properties) {
        write(sink, property.tag);
        write(sink, property.length);
        if (property.length == 16)
            write(sink, std::uint64_t{0x0102030405060708});
        write(sink, number);
    }
}

/// A header partition with that many sets.
std::vector<unsigned char> headerPartition(std::uint64_t sets) {
    DataIO::Memory::MemoryDataSink metadata, whole;
    Packs::PrimerPack primer;
    for (auto const& property : properties)
        primer.add(Types::LocalTag(property.tag), Types::UniversalLabel(property.label));
    primer.serialize(metadata);
    for (std::uint64_t i = 0; i < sets; ++i)
        writeSet(metadata, i);
    PartitionPack pack(Packs::buildPartitionPackKey(PartitionPack::Header, PartitionPack::ClosedComplete), 1,
                       0, 0, Types::UniversalLabel(),
                       std::make_unique<Types::Batch>(Types::Identifiers::UniversalLabel));
    pack.headerByteCount(metadata.serializedSize());
    pack.serialize(whole);
    whole.write(metadata.rawBuffer(), metadata.serializedSize());
    return {whole.rawBuffer(), whole.rawBuffer() + whole.serializedSize()};
}

void loadHeaderMetadata(benchmark::State& state) {
    auto const dictionary = MXF::ZelmDictionary::standard();
    auto const bytes = headerPartition(static_cast<std::uint64_t>(state.range(0)));
    for (auto _ : state) {
        DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
        MXFIO::Reader2 reader(source, dictionary, 65536);
        auto const metadata = reader.headerPartition()->metadata();
        if (!metadata->faults().empty())
            state.SkipWithError(metadata->faults().front().message.c_str());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

BENCHMARK(loadHeaderMetadata)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

constexpr KLV::Key componentsLabel = "060E2B34 01010102 06010104 06090000"_key; // StructuralComponents

/// Sequences of which each refers to the next one.
std::vector<unsigned char> chainOfSets(std::uint64_t sets) {
    DataIO::Memory::MemoryDataSink sink;
    for (std::uint64_t i = 0; i < sets; ++i) {
        sink.write(sequenceKey.rawBuffer(), KLV::Key::size());
        write(sink, std::uint32_t{0x83000000 + 20 + 28});
        write(sink, std::uint32_t{0x3C0A0010});
        write(sink, std::uint64_t{0x0102030405060708});
        write(sink, i);
        write(sink, std::uint32_t{0x10010018});
        write(sink, std::uint64_t{0x0000000100000010}); // one reference of 16 bytes
        write(sink, std::uint64_t{0x0102030405060708});
        write(sink, i + 1);
    }
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

std::unique_ptr<Metadata::PartitionMetadata>
emptyMetadata(Metadata::PartitionDictionary::DictionaryPtr const& dictionary) {
    auto primer = std::make_unique<Packs::PrimerPack>();
    primer->add(Types::LocalTag(0x3C0A), properties[0].label);
    primer->add(Types::LocalTag(0x1001), componentsLabel);
    return std::make_unique<Metadata::PartitionMetadata>(
        std::make_unique<Metadata::PartitionDictionary>(dictionary, std::move(primer)));
}

void loadChain(Metadata::PartitionMetadata& metadata, std::vector<unsigned char> const& bytes) {
    DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    while (!source.endOfStream())
        metadata.load(*reader.nextKLV(skipped, 0));
}

using Manager = Metadata::Listeners::MetadataSetRelationshipManager;

std::shared_ptr<Manager> attachListeners(Metadata::PartitionMetadata& metadata) {
    auto manager = std::make_shared<Manager>(&metadata);
    metadata.addMetadataListener(manager, true);
    metadata.setMetadataIndexListener(std::make_shared<Metadata::Listeners::BaseMetadataIndexListener>());
    return manager;
}

void loadChainOfSets(benchmark::State& state, bool withListeners) {
    auto const dictionary = MXF::ZelmDictionary::standard();
    auto const bytes = chainOfSets(static_cast<std::uint64_t>(state.range(0)));
    for (auto _ : state) {
        auto const metadata = emptyMetadata(dictionary);
        if (withListeners)
            attachListeners(*metadata);
        loadChain(*metadata, bytes);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void removeChainOfSets(benchmark::State& state) {
    auto const dictionary = MXF::ZelmDictionary::standard();
    auto const bytes = chainOfSets(static_cast<std::uint64_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        auto const metadata = emptyMetadata(dictionary);
        auto const manager = attachListeners(*metadata);
        loadChain(*metadata, bytes);
        auto* const first = metadata->find(Types::UUID(bytes.data() + 24));
        state.ResumeTiming();
        if (!manager->cascadeDelete(first) || metadata->size() != 0)
            state.SkipWithError("sets are left");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

BENCHMARK_CAPTURE(loadChainOfSets, alone, false)->Apply(sizes);
BENCHMARK_CAPTURE(loadChainOfSets, withListeners, true)->Apply(sizes);
BENCHMARK(removeChainOfSets)->Apply(sizes);

void loadStandardDictionary(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(MXF::ZelmDictionary::standard());
}

BENCHMARK(loadStandardDictionary)->Unit(benchmark::kMillisecond);

} // namespace
