// What multiplexing costs beyond the bytes of the essence: many tiny edit units.
#include <MXF/Zelm/GenericContainer/Multiplexer/Mux.h>
#include <MXF/Zelm/GenericContainer/Multiplexer/SystemItemGenerator.h>

#include <benchmark/benchmark.h>

namespace {

using namespace MXF::Zelm;
using namespace GenericContainer;

/// Edit units that all refer to the same bytes, in long groups of pictures where they are reordered.
template <class Kind>
class Tiny : public Kind {
public:
    Tiny(std::int64_t count, std::size_t size, bool isReordered)
        : left_(count),
          isReordered_(isReordered),
          bytes_(DataIO::Slice::adopt(std::vector<unsigned char>(size, 0xAA))) {}

    Templates::Rational<int> editRate() const override { return {25, 1}; }
    void editRate(Templates::Rational<int> const& /*rate*/) override {}
    std::uint64_t maximumToSkip() const override { return 0; }
    void maximumToSkip(std::uint64_t /*bytes*/) override {}
    bool preload() override { return true; }
    bool setMetadata(Metadata::PartitionMetadata& /*metadata*/,
                     Metadata::Structural::SourcePackage* /*package*/, unsigned /*trackNumber*/,
                     unsigned /*trackID*/) override {
        return true;
    }
    bool nextEditUnit(EditUnit& unit) override {
        if (left_-- == 0)
            return false;
        unit.data.append(bytes_);
        unit.duration = {1, 25};
        std::int32_t const inGroup = given_ % 12;
        unit.index.keyFrameOffset = -inGroup;
        if (isReordered_)
            unit.index.temporalOffset = inGroup == 0 || inGroup == 11 ? 0 : inGroup % 2 == 1 ? 1 : -1;
        ++given_;
        return true;
    }
    bool finalize() override { return true; }
    Types::UniversalLabel universalLabel() const override { return {}; }
    bool isCBE() const override { return false; }
    void boundedEditUnitSize(int /*bytes*/) override {}
    unsigned boundedEditUnitSize() const override { return 0; }
    bool containsTemporalDependencies() const override { return isReordered_; }
    Utils::TimeCode currentTimeCode() const override { return {}; }
    unsigned char itemTypeIdentifier() const override { return isReordered_ ? 0x15 : 0x16; }
    unsigned char essenceElementType() const override { return 0x05; }
    unsigned requiredKAGSize() const override { return 1; }
    bool done() const override { return left_ <= 0; }

private:
    std::int64_t left_;
    std::int32_t given_ = 0;
    bool isReordered_;
    DataIO::Slice bytes_;
};

/// All packages of a multiplexer and its index, as a writer would pull them. The time an edit unit is that of
/// a package.
void pull(benchmark::State& state, bool isFull) {
    auto const count = state.range(0);
    for (auto _ : state) {
        Multiplexer::Mux mux(static_cast<Metadata::Structural::SourcePackage*>(nullptr), {}, {25, 1});
        mux.addAnalyzer(std::make_shared<Tiny<PictureAnalyzer>>(count, 100, true), false, {0, 1});
        if (isFull) {
            mux.kagSize(512);
            mux.addAnalyzer(std::make_shared<Multiplexer::SystemItemGenerator>(
                                Templates::Rational<int>{25, 1}, Utils::TimeCode(Utils::TimeBase(25), 0),
                                Types::UniversalLabel()),
                            true, {0, 1});
            for (int i = 0; i < 2; ++i)
                mux.addAnalyzer(std::make_shared<Tiny<SoundAnalyzer>>(count, 50, false), false, {0, 1});
        }
        auto const source = mux.commit();
        DataIO::Chain package;
        bool mayStart = false;
        Source::FutureUpdaterPtr updater;
        Templates::Rational<std::int64_t> position;
        std::uint64_t bytes = 0;
        while (source->next(package, mayStart, updater, position))
            bytes += package.size();
        source->finalize();
        for (auto const& segment : source->takeIndexSegments())
            bytes += segment->serializedSize();
        benchmark::DoNotOptimize(bytes);
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["time/unit"] =
        benchmark::Counter(static_cast<double>(state.iterations() * count),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK_CAPTURE(pull, picture, false)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pull, systemPictureTwoSounds, true)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond);

} // namespace
