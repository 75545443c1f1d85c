// Essence on its way: chains, slices of a file, sync words.
#include <MXF/Zelm/DataIO/BitSliceReader.h>
#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/DataIO/SyncWordFinder.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace MXF::Zelm::DataIO;
using File::FileDataSink;
using File::FileSliceSource;

std::vector<unsigned char> randomBytes(std::size_t size) {
    std::vector<unsigned char> bytes(size);
    std::mt19937 random(1);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<unsigned char>(random()); });
    return bytes;
}

void processed(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

/// An element as a multiplexer makes it: key and length before `range` slices of essence, a fill item behind.
void buildElement(benchmark::State& state) {
    auto const bytes = randomBytes(4096);
    Slice const head = Slice::copyOf(bytes.data(), 20), fill = Slice::copyOf(bytes.data(), 512);
    std::vector<Slice> essence;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        essence.push_back(Slice::copyOf(bytes.data(), bytes.size()));
    for (auto _ : state) {
        Chain chain;
        for (auto const& slice : essence)
            chain.append(slice);
        chain.prepend(head);
        chain.append(fill);
        benchmark::DoNotOptimize(chain.size());
    }
    state.SetItemsProcessed(state.iterations() * (state.range(0) + 2));
}

BENCHMARK(buildElement)->Arg(1)->Arg(2)->Arg(16)->Arg(256);

void copySmallSlice(benchmark::State& state) {
    unsigned char const bytes[20] = {};
    for (auto _ : state)
        benchmark::DoNotOptimize(Slice::copyOf(bytes, sizeof bytes).data());
}

BENCHMARK(copySmallSlice);

/// A file of 512 MiB, which the system's cache holds from the second reading on.
class BigFile {
public:
    static constexpr std::size_t size = std::size_t{512} << 20;

    BigFile() : name_((std::filesystem::temp_directory_path() / "mxfzelm-benchmark.bin").string()) {
        auto const bytes = randomBytes(1 << 20);
        FileDataSink sink(name_, FileDataSink::Mode::Replace);
        for (std::size_t done = 0; done < size; done += bytes.size())
            sink.write(bytes.data(), bytes.size());
    }
    ~BigFile() { std::filesystem::remove(name_); }
    std::string const& name() const { return name_; }

private:
    std::string name_;
};

BigFile const& bigFile() {
    static BigFile const file;
    return file;
}

/// What a program that copies a file does: reads into one buffer again and again.
void readLoop(benchmark::State& state) {
    std::string const& name = bigFile().name();
    std::vector<char> buffer(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::filebuf file;
        file.pubsetbuf(nullptr, 0); // straight into the caller's buffer
        file.open(name, std::ios::in | std::ios::binary);
        while (file.sgetn(buffer.data(), std::ssize(buffer)) > 0)
            benchmark::DoNotOptimize(buffer.data());
    }
    processed(state, BigFile::size);
}

BENCHMARK(readLoop)->Arg(128 << 10)->Arg(1 << 20)->Unit(benchmark::kMillisecond)->UseRealTime();

void readSlices(benchmark::State& state) {
    std::string const& name = bigFile().name();
    for (auto _ : state) {
        FileSliceSource source(name);
        while (!source.endOfStream()) {
            Chain chain;
            source.read(static_cast<std::uint64_t>(state.range(0)), chain);
            benchmark::DoNotOptimize(chain.begin()->data());
        }
    }
    processed(state, BigFile::size);
}

BENCHMARK(readSlices)->Arg(4 << 10)->Arg(100'000)->Arg(1 << 20)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Content packages of `range` slices of 16 KiB, gathered or slice by slice.
template <class Write>
void writeSlices(benchmark::State& state, Write write) {
    auto const bytes = randomBytes(16 << 10);
    Chain package;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        package.append(Slice::viewOf(bytes.data(), bytes.size()));
    auto const name = (std::filesystem::temp_directory_path() / "mxfzelm-benchmark-out.bin").string();
    for (auto _ : state) {
        FileDataSink sink(name, FileDataSink::Mode::Replace);
        while (sink.absoluteOffset() < (std::uint64_t{128} << 20))
            write(sink, package);
        sink.close();
    }
    std::filesystem::remove(name);
    processed(state, std::size_t{128} << 20);
}

BENCHMARK_CAPTURE(writeSlices, gathered, [](FileDataSink& sink, Chain const& chain) { sink.write(chain); })
    ->Arg(32)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(writeSlices, copied,
                  [](FileDataSink& sink, Chain const& chain) {
                      for (auto const& slice : chain)
                          sink.write(slice.data(), slice.size());
                  })
    ->Arg(32)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

/// Start codes in `bytes`, in slices of 1 MiB.
void findStartCodes(benchmark::State& state, std::vector<unsigned char> const& bytes) {
    for (auto _ : state) {
        SyncWordFinder finder(startCodePrefix);
        std::size_t found = 0;
        for (std::size_t at = 0; at < bytes.size(); at += 1 << 20) {
            finder.push(Slice::viewOf(bytes.data() + at, std::min<std::size_t>(1 << 20, bytes.size() - at)));
            while (finder.next())
                ++found;
        }
        benchmark::DoNotOptimize(found);
    }
    processed(state, bytes.size());
}

/// Coded video: random bytes with a start code every 2000.
void findStartCodesInVideo(benchmark::State& state) {
    auto bytes = randomBytes(32 << 20);
    for (std::size_t at = 0; at + 3 < bytes.size(); at += 2000)
        std::copy_n(startCodePrefix, 3, bytes.data() + at);
    findStartCodes(state, bytes);
}

BENCHMARK(findStartCodesInVideo)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(findStartCodes, zeros, std::vector<unsigned char>(32 << 20))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(findStartCodes, onlyOnes, std::vector<unsigned char>(32 << 20, 1))
    ->Unit(benchmark::kMillisecond);

/// Numbers of `range` bits.
void readBits(benchmark::State& state) {
    Slice const bytes = Slice::adopt(randomBytes(1 << 16));
    auto const width = static_cast<unsigned>(state.range(0));
    std::int64_t count = 0;
    for (auto _ : state)
        for (BitSliceReader reader(bytes); reader.remaining() >= width; ++count)
            benchmark::DoNotOptimize(reader.read(width));
    state.SetItemsProcessed(count);
}

BENCHMARK(readBits)->Arg(1)->Arg(8)->Arg(13)->Arg(57);

} // namespace
