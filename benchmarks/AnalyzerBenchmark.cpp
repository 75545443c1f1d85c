// Essence cut into edit units: MPEG-2 video, and sound split by channels.
#include <MXF/Zelm/DataIO/BufferSliceSource.h>
#include <MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/PCMAnalyzer.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace MXF::Zelm;

using Bytes = std::vector<unsigned char>;

void append(Bytes& bytes, std::initializer_list<unsigned char> more) { bytes.insert(bytes.end(), more); }

/// `frames` pictures of 1920 x 1080 with 68 slices and about `size` bytes each, a group of 12 in the order
/// I P B B P B B …
Bytes video(std::size_t frames, std::size_t size) {
    Bytes bytes;
    std::mt19937 random(1);
    for (std::size_t i = 0; i < frames; ++i) {
        std::size_t const place = i % 12;
        unsigned char const type = place == 0 ? 1 : place % 3 == 1 ? 2 : 3;
        if (place == 0) {
            append(bytes, {0, 0, 1, 0xB3, 0x78, 0x04, 0x38, 0x33, 0xFF, 0xFF, 0xE0, 0x18});
            append(bytes, {0, 0, 1, 0xB5, 0x14, 0x42, 0x00, 0x01, 0x00, 0x00, 0, 0, 1, 0xB8, 0, 8, 0, 0x40});
        }
        append(bytes, {0, 0, 1, 0, 0, static_cast<unsigned char>(type << 3 | 7), 0xFF, 0xF8});
        append(bytes, {0, 0, 1, 0xB5, 0x8F, 0xFF, 0xF3, 0x98, 0});
        for (unsigned char row = 1; row <= 68; ++row) {
            append(bytes, {0, 0, 1, row});
            for (std::size_t k = 0; k < size / 68; ++k)
                bytes.push_back(static_cast<unsigned char>(1 + random() % 255));
        }
    }
    return bytes;
}

/// `times` times the same bytes, in slices of 1 MiB as a file gives them.
std::shared_ptr<DataIO::SliceSource> repeatedly(Bytes const& bytes, int times) {
    constexpr std::size_t piece = std::size_t{1} << 20;
    DataIO::Chain chain;
    for (int i = 0; i < times; ++i)
        for (std::size_t at = 0; at < bytes.size(); at += piece)
            chain.append(DataIO::Slice::viewOf(bytes.data() + at, std::min(piece, bytes.size() - at)));
    return std::make_shared<DataIO::BufferSliceSource>(std::move(chain));
}

/// Argument: bytes of a picture.
void cutVideo(benchmark::State& state) {
    constexpr int times = 16;
    auto const bytes = video(48, static_cast<std::size_t>(state.range(0)));
    std::int64_t units = 0;
    for (auto _ : state) {
        GenericContainer::MPEG2VideoAnalyzer analyzer(repeatedly(bytes, times));
        analyzer.preload();
        for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit); ++units)
            benchmark::DoNotOptimize(unit.data.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()) * times);
    state.SetItemsProcessed(units);
}

BENCHMARK(cutVideo)->Arg(4000)->Arg(40000)->Arg(250000)->Unit(benchmark::kMillisecond);

/// Eight channels of 24 bits; arguments: channels of a track.
void splitSound(benchmark::State& state) {
    constexpr int times = 8;
    Bytes const bytes(std::size_t{24} * 48000 * 5, 0x5A);
    auto const perTrack = static_cast<unsigned>(state.range(0));
    for (auto _ : state) {
        auto const analyzers = GenericContainer::makePCMAnalyzers(
            repeatedly(bytes, times), {8, 48000, 3, 24, 0}, perTrack, {.editRate = {25, 1}});
        for (auto const& analyzer : analyzers)
            analyzer->preload();
        for (GenericContainer::EditUnit unit; !analyzers.back()->done();)
            for (auto const& analyzer : analyzers)
                benchmark::DoNotOptimize(analyzer->nextEditUnit(unit));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()) * times);
}

BENCHMARK(splitSound)->Arg(1)->Arg(2)->Arg(8)->Unit(benchmark::kMillisecond);

} // namespace
