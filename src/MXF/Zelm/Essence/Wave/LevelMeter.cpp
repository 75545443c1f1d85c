#include "MXF/Zelm/Essence/Wave/LevelMeter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <cmath>

namespace MXF::Zelm::Essence::Wave {

namespace {

constexpr double fullScale = 2147483648.0;
constexpr std::uint32_t blocksASecond = 100;

/// Samples whose squares, of 24 bits, fit into one sum of 64 bits.
constexpr std::size_t mostSquares = std::size_t{1} << 17;

/// The sample at `bytes` as the upper bits of 32.
template <unsigned size>
std::int32_t sampleAt(const unsigned char* bytes) {
    if constexpr (size == 1) {
        return static_cast<std::int32_t>(std::uint32_t{bytes[0]} << 24 ^ 0x80000000u);
    } else {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < size; ++i)
            value |= std::uint32_t{bytes[i]} << (8 * (4 - size + i));
        return static_cast<std::int32_t>(value);
    }
}

template <unsigned size>
void measure(const unsigned char* samples, std::size_t stride, std::size_t count, Level& level) {
    while (count != 0) {
        std::size_t const part = std::min(count, mostSquares);
        std::int32_t least = level.least, most = level.most;
        std::uint64_t squares = 0;
        for (std::size_t i = 0; i < part; ++i, samples += stride) {
            std::int32_t const sample = sampleAt<size>(samples);
            std::int64_t const upper = sample >> 8;
            least = std::min(least, sample);
            most = std::max(most, sample);
            squares += static_cast<std::uint64_t>(upper * upper);
        }
        level.least = least;
        level.most = most;
        level.squares += static_cast<double>(squares) / 70368744177664.0; // 2^46
        level.count += part;
        count -= part;
    }
}

std::int32_t sampleOf(const unsigned char* bytes, unsigned size) {
    switch (size) {
    case 1:
        return sampleAt<1>(bytes);
    case 2:
        return sampleAt<2>(bytes);
    case 3:
        return sampleAt<3>(bytes);
    default:
        return sampleAt<4>(bytes);
    }
}

constexpr std::int32_t lowerEnd = std::numeric_limits<std::int32_t>::min();

/// The largest sample of so many bits.
std::int32_t upperEndOf(unsigned bits) {
    bits = std::clamp(bits, 1u, 32u);
    return static_cast<std::int32_t>(0x7FFFFFFFu >> (32 - bits) << (32 - bits));
}

WaveFormat const& checked(WaveFormat const& format) {
    if (format.channels == 0 || format.samplingRate == 0 || format.sampleBytes < 1 || format.sampleBytes > 4)
        throw Exceptions::InvalidValue("There are no levels of " + std::to_string(format.channels) +
                                       " channels of samples of " + std::to_string(format.sampleBytes) +
                                       " bytes at " + std::to_string(format.samplingRate) + " Hz");
    return format;
}

} // namespace

void Level::add(Level const& other) {
    least = std::min(least, other.least);
    most = std::max(most, other.most);
    squares += other.squares;
    count += other.count;
    clipped += other.clipped;
}

double Level::peak() const {
    return count == 0 ? 0 : std::max(-static_cast<double>(least), static_cast<double>(most)) / fullScale;
}

double Level::rms() const { return count == 0 ? 0 : std::sqrt(squares / static_cast<double>(count)); }

double decibels(double magnitude) {
    return magnitude > 0 ? 20 * std::log10(magnitude) : -std::numeric_limits<double>::infinity();
}

LevelMeter::Measure LevelMeter::measureFor(unsigned sampleBytes) {
    constexpr Measure measures[] = {measure<1>, measure<2>, measure<3>, measure<4>};
    return measures[sampleBytes - 1];
}

LevelMeter::LevelMeter(WaveFormat const& format, Options const& options)
    : format_(checked(format)),
      options_(options),
      measure_(measureFor(format.sampleBytes)),
      upperEnd_(upperEndOf(std::min<unsigned>(format.validBits, format.sampleBytes * 8u))),
      blockInstants_(std::max<std::uint32_t>(format.samplingRate / blocksASecond, 1)),
      channels_(format.channels),
      states_(format.channels) {}

LevelMeter::LevelMeter(WaveFormat const& format) : LevelMeter(format, Options()) {}

LevelMeter::~LevelMeter() = default;

void LevelMeter::take(DataIO::Chain const& samples) {
    for (auto const& slice : samples)
        takeBytes(slice.data(), slice.size());
}

void LevelMeter::takeBytes(const unsigned char* bytes, std::size_t size) {
    std::size_t const instant = format_.blockAlign();
    if (!partial_.empty()) {
        std::size_t const missing = std::min(instant - partial_.size(), size);
        partial_.insert(partial_.end(), bytes, bytes + missing);
        bytes += missing;
        size -= missing;
        if (partial_.size() < instant)
            return;
        takeInstants(partial_.data(), 1);
        partial_.clear();
    }
    takeInstants(bytes, size / instant);
    partial_.assign(bytes + size / instant * instant, bytes + size);
}

/// Channel by channel of each block, which the processor's cache holds.
void LevelMeter::takeInstants(const unsigned char* samples, std::size_t count) {
    while (count != 0) {
        auto const part = static_cast<std::size_t>(std::min<std::uint64_t>(count, blockInstants_ - inBlock_));
        for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
            State& state = states_[channel];
            auto const* const first = samples + channel * format_.sampleBytes;
            Level level;
            measure_(first, format_.blockAlign(), part, level);
            if (level.most >= upperEnd_ || level.least == lowerEnd)
                findClipping(first, part, state, level);
            else
                state.clipRun = 0;
            state.block.add(level);
        }
        samples += part * format_.blockAlign();
        count -= part;
        instants_ += part;
        inBlock_ += part;
        if (inBlock_ == blockInstants_)
            endBlock();
    }
}

/// The first samples of a run count once it is long enough.
void LevelMeter::findClipping(const unsigned char* samples, std::size_t count, State& state,
                              Level& level) const {
    for (std::size_t i = 0; i < count; ++i, samples += format_.blockAlign()) {
        std::int32_t const sample = sampleOf(samples, format_.sampleBytes);
        int const side = sample >= upperEnd_ ? 1 : sample == lowerEnd ? -1 : 0;
        state.clipRun = side == 0 ? 0 : side == state.clipSide ? state.clipRun + 1 : 1;
        state.clipSide = side;
        if (state.clipRun >= leastClipped)
            level.clipped += state.clipRun == leastClipped ? leastClipped : 1;
        if (state.clipRun > leastClipped)
            state.clipRun = leastClipped + 1;
    }
}

void LevelMeter::endBlock() {
    std::uint64_t const first = instants_ - inBlock_;
    bool const hasOutline = options_.outlinePoints != 0;
    for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
        State& state = states_[channel];
        channels_[channel].all.add(state.block);
        if (state.block.peak() >= options_.silenceBelow)
            endSilence(state, channels_[channel], first);
        else if (!state.isSilent)
            state.silentFrom = first;
        state.isSilent = state.block.peak() < options_.silenceBelow;
        if (hasOutline && channel < mostOutlines)
            state.point.add(state.block);
        state.block = {};
    }
    inBlock_ = 0;
    if (hasOutline && ++inPoint_ == blocksOfPoint_)
        endPoint();
}

void LevelMeter::endSilence(State& state, Channel& channel, std::uint64_t end) const {
    if (!state.isSilent)
        return;
    std::uint64_t const count = end - state.silentFrom;
    state.isSilent = false;
    if (static_cast<double>(count) < options_.shortestSilence * format_.samplingRate)
        return;
    channel.silent += count;
    if (channel.stretches.size() < mostStretches)
        channel.stretches.push_back({state.silentFrom, count});
}

void LevelMeter::endPoint() {
    for (std::size_t channel = 0; channel < std::min(channels_.size(), mostOutlines); ++channel) {
        channels_[channel].outline.push_back(states_[channel].point);
        states_[channel].point = {};
    }
    inPoint_ = 0;
    if (channels_.front().outline.size() == 2 * options_.outlinePoints)
        halveOutlines();
}

void LevelMeter::halveOutlines() {
    for (auto& channel : channels_) {
        auto& outline = channel.outline;
        for (std::size_t i = 0; i < outline.size() / 2; ++i) {
            Level joined = outline[2 * i];
            joined.add(outline[2 * i + 1]);
            outline[i] = joined;
        }
        outline.resize(outline.size() / 2);
    }
    blocksOfPoint_ *= 2;
}

void LevelMeter::finish() {
    if (inBlock_ != 0)
        endBlock();
    if (inPoint_ != 0)
        endPoint();
    for (std::size_t channel = 0; channel < channels_.size(); ++channel)
        endSilence(states_[channel], channels_[channel], instants_);
}

} // namespace MXF::Zelm::Essence::Wave
