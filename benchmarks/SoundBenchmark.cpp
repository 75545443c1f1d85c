// Sound on its way between formats, in bytes of PCM, beside a copy of as many bytes.
#include <MXF/Zelm/DataIO/BufferSliceSource.h>
#include <MXF/Zelm/Essence/AES3/S302M/Source.h>
#include <MXF/Zelm/Essence/Converters/AES3Source.h>
#include <MXF/Zelm/Essence/Converters/ChannelMerger.h>
#include <MXF/Zelm/Essence/Converters/ChannelSplitter.h>
#include <MXF/Zelm/Essence/Converters/FrameSources.h>
#include <MXF/Zelm/Essence/Converters/PCMConverter.h>
#include <MXF/Zelm/Essence/Converters/PCMToAES3.h>
#include <MXF/Zelm/Essence/Wave/LevelMeter.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

namespace {

using namespace MXF::Zelm;
using namespace MXF::Zelm::Essence;
using namespace MXF::Zelm::Essence::Converters;
using Source = Templates::SharedPtr<DataIO::SliceSource>;

constexpr unsigned channels = 8;
constexpr std::size_t pcmBytes = std::size_t{12} << 20; // whole instants of all formats
constexpr auto big = PCMFormat::ByteOrder::Big;
constexpr auto in24Bits = AES3::S302M::Source::TwentyBits::In24Bits;

Source pcm() {
    static DataIO::Chain const chain = [] {
        std::vector<unsigned char> bytes(pcmBytes);
        std::mt19937 random(1);
        std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<unsigned char>(random()); });
        return DataIO::Chain(DataIO::Slice::copyOf(bytes.data(), bytes.size()));
    }();
    return std::make_shared<DataIO::BufferSliceSource>(chain);
}

std::uint64_t readAll(DataIO::SliceSource& source) {
    std::uint64_t bytes = 0;
    while (!source.endOfStream()) {
        DataIO::Chain piece;
        bytes += source.read(1 << 20, piece);
        benchmark::DoNotOptimize(piece.begin());
    }
    return bytes;
}

/// What `source` gives, to be read again and again.
DataIO::Chain contentOf(Source const& source) {
    DataIO::Chain whole;
    source->read(~0ull, whole);
    return whole.contiguous();
}

void copy(benchmark::State& state) {
    auto const bytes = contentOf(pcm());
    std::vector<unsigned char> to(64 << 10);
    for (auto _ : state)
        for (std::size_t at = 0; at + to.size() <= pcmBytes; at += to.size()) {
            std::memcpy(to.data(), bytes.begin()->data() + at, to.size());
            benchmark::DoNotOptimize(to.data());
        }
    state.SetBytesProcessed(state.iterations() * std::int64_t{pcmBytes});
}

BENCHMARK(copy);

/// Converts PCM.
void convert(benchmark::State& state, std::function<Source(Source)> const& make) {
    for (auto _ : state)
        readAll(*make(pcm()));
    state.SetBytesProcessed(state.iterations() * std::int64_t{pcmBytes});
}

/// Converts what `make` made of PCM back.
void convertBack(benchmark::State& state, std::function<Source(Source)> const& make,
                 std::function<Source(Source)> const& back) {
    auto const made = contentOf(make(pcm()));
    for (auto _ : state)
        if (readAll(*back(std::make_shared<DataIO::BufferSliceSource>(made))) < pcmBytes * 9 / 10)
            state.SkipWithError("too little came back");
    state.SetBytesProcessed(state.iterations() * std::int64_t{pcmBytes});
}

AES3::AES3Info info(unsigned bits) { return {channels, bits, {48000, 1}}; }

Source packets(Source source, unsigned bits, bool withStatus = true) {
    AES3::S302M::PacketWriter writer(info(bits), {25, 1});
    for (unsigned channel = 0; withStatus && channel < channels; ++channel)
        writer.channelStatus(channel, info(bits).channelStatus());
    return std::make_shared<PCMToS302M>(std::move(source), std::move(writer));
}

Source fromPackets(Source source) {
    return std::make_shared<AES3::S302M::Source>(std::move(source), in24Bits);
}

Source elements(Source source, unsigned bits, bool withStatus) {
    AES3::EightChannelWriter writer({channels, bits}, {25, 1});
    if (withStatus)
        writer.channelStatus(info(bits).channelStatus());
    return std::make_shared<PCMToS331M>(std::move(source), std::move(writer));
}

Source fromElements(Source source, unsigned bits) {
    return std::make_shared<S331MToPCM>(std::move(source), PCMFormat{channels, bits});
}

Source inFormat(Source source, PCMFormat const& from, PCMFormat const& to) {
    return std::make_shared<PCMConverter>(std::move(source), from, to);
}

/// Levels of samples of `bytes` bytes.
void measure(benchmark::State& state, std::uint16_t bytes) {
    auto const samples = contentOf(pcm());
    for (auto _ : state) {
        Wave::LevelMeter meter({channels, 48000, bytes, static_cast<std::uint16_t>(8 * bytes)});
        meter.take(samples);
        meter.finish();
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{pcmBytes});
}

BENCHMARK_CAPTURE(measure, levels16, std::uint16_t{2});
BENCHMARK_CAPTURE(measure, levels24, std::uint16_t{3});

BENCHMARK_CAPTURE(convert, to302M16, [](Source source) { return packets(source, 16); });
BENCHMARK_CAPTURE(convert, to302M24, [](Source source) { return packets(source, 24); });
BENCHMARK_CAPTURE(
    convertBack, from302M16, [](Source source) { return packets(source, 16); }, fromPackets);
BENCHMARK_CAPTURE(
    convertBack, from302M24, [](Source source) { return packets(source, 24); }, fromPackets);
BENCHMARK_CAPTURE(convert, to331M16, [](Source source) { return elements(source, 16, false); });
BENCHMARK_CAPTURE(convert, to331M24, [](Source source) { return elements(source, 24, false); });
BENCHMARK_CAPTURE(convert, to331M24WithStatus, [](Source source) { return elements(source, 24, true); });
BENCHMARK_CAPTURE(
    convertBack, from331M16, [](Source source) { return elements(source, 16, false); },
    [](Source source) { return fromElements(source, 16); });
BENCHMARK_CAPTURE(
    convertBack, from331M24, [](Source source) { return elements(source, 24, false); },
    [](Source source) { return fromElements(source, 24); });
BENCHMARK_CAPTURE(convert, toSubframes24, [](Source source) {
    return std::make_shared<PCMToAES3>(source, PCMFormat{channels, 24}, 4u);
});
BENCHMARK_CAPTURE(convert, from24To16, [](Source source) {
    return inFormat(source, {channels, 24}, {channels, 16});
});
BENCHMARK_CAPTURE(convert, from16To24, [](Source source) {
    return inFormat(source, {channels, 16}, {channels, 24});
});
BENCHMARK_CAPTURE(convert, from32To24, [](Source source) {
    return inFormat(source, {channels, 32}, {channels, 24});
});
BENCHMARK_CAPTURE(convert, bigEndian24, [](Source source) {
    return inFormat(source, {channels, 24}, {channels, 24, big});
});
BENCHMARK_CAPTURE(convert, bigEndian16, [](Source source) {
    return inFormat(source, {channels, 16}, {channels, 16, big});
});
BENCHMARK_CAPTURE(convert, swapChannels24, [](Source source) {
    return std::make_shared<PCMConverter>(source, PCMFormat{channels, 24}, PCMFormat{channels, 24},
                                          std::vector<unsigned>{1, 0, 3, 2, 5, 4, 7, 6});
});

void split(benchmark::State& state) {
    for (auto _ : state) {
        ChannelSplitter splitter(pcm(), channels, 3);
        std::vector<Source> outputs;
        for (unsigned channel = 0; channel < channels; ++channel)
            outputs.push_back(splitter.range(channel, 1));
        while (!outputs.front()->endOfStream())
            for (auto const& output : outputs) {
                DataIO::Chain piece;
                output->read(1920 * 3, piece);
                benchmark::DoNotOptimize(piece.begin());
            }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{pcmBytes});
}

BENCHMARK(split);

void merge(benchmark::State& state) {
    auto const mono = contentOf(pcm()).part(0, pcmBytes / channels);
    for (auto _ : state) {
        std::vector<ChannelMerger::Part> parts(channels);
        for (auto& part : parts)
            part = {std::make_shared<DataIO::BufferSliceSource>(mono), {1, 24}};
        ChannelMerger merger(std::move(parts), 24);
        readAll(merger);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{pcmBytes});
}

BENCHMARK(merge);

} // namespace
