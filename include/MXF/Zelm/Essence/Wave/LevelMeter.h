/// How loud the channels of sound are: peaks, mean power, clipping, silence, and the outline of their wave.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/Essence/Wave/WaveFormat.h"

#include <limits>
#include <vector>

namespace MXF::Zelm::Essence::Wave {

/// What a stretch of one channel reaches. Samples of any size count as the upper bits of 32. A value.
struct MXFZELM_EXPORT Level {
    std::int32_t least = std::numeric_limits<std::int32_t>::max();
    std::int32_t most = std::numeric_limits<std::int32_t>::min();

    /// Sum of the squares of samples, full scale being 1.
    double squares = 0;

    /// Samples; the others mean nothing while there are none.
    std::uint64_t count = 0;

    /// Samples among several in a row at the same end of the scale.
    std::uint64_t clipped = 0;

    void add(Level const& other);

    /// The magnitude that is reached, 0 to 1.
    double peak() const;

    /// The root of the mean square, 0 to 1.
    double rms() const;
};

/// 20 log10 of a magnitude; minus infinity for 0.
MXFZELM_EXPORT double decibels(double magnitude);

/// Takes samples and keeps a few figures of them, however many there are.
class MXFZELM_EXPORT LevelMeter : public Platform::Allocated {
public:
    struct Options {
        /// No sample of a silent hundredth of a second reaches this magnitude: by default -60 dBFS.
        double silenceBelow = 0.001;

        /// Shorter silence does not count, in seconds.
        double shortestSilence = 1;

        /// Points of the outline: from as many to twice as many, of equal length; 0 for no outline.
        std::size_t outlinePoints = 0;
    };

    /// Silence from instant `first` on.
    struct Stretch {
        std::uint64_t first = 0;
        std::uint64_t count = 0;

        friend bool operator==(Stretch const&, Stretch const&) = default;
    };

    struct Channel {
        Level all = {};

        /// Instants of silence in all, and the first stretches of it, at most `mostStretches`.
        std::uint64_t silent = 0;
        std::vector<Stretch> stretches = {};

        /// Of the first channels, at most `mostOutlines`.
        std::vector<Level> outline = {};
    };

    static constexpr std::size_t mostStretches = 1000;
    static constexpr std::size_t mostOutlines = 64;

    /// This many samples in a row at full scale are clipped.
    static constexpr unsigned leastClipped = 3;

    /// Throws Exceptions::InvalidValue for a format without channels or rate, and for samples of other than 1
    /// to 4 bytes.
    LevelMeter(WaveFormat const& format, Options const& options);
    explicit LevelMeter(WaveFormat const& format);
    ~LevelMeter();

    /// Takes samples; they may be cut anywhere.
    void take(DataIO::Chain const& samples);

    /// To be called when there are no more. A rest that is no whole instant is left out.
    void finish();

    WaveFormat const& format() const { return format_; }

    /// As far as samples were taken; complete after `finish`.
    std::vector<Channel> const& channels() const { return channels_; }

    /// Whole instants that were taken.
    std::uint64_t instants() const { return instants_; }

    /// Instants of a point of the outline; the last one may have fewer.
    std::uint64_t instantsOfPoint() const { return blockInstants_ * blocksOfPoint_; }

private:
    struct State {
        Level block = {}; // the hundredth of a second under way
        Level point = {}; // of the outline
        std::uint64_t silentFrom = 0;
        bool isSilent = false;
        int clipSide = 0; // 1 at the upper end of the scale, -1 at the lower
        unsigned clipRun = 0;
    };

    using Measure = void (*)(const unsigned char* samples, std::size_t stride, std::size_t count,
                             Level& level);
    static Measure measureFor(unsigned sampleBytes);

    void takeBytes(const unsigned char* bytes, std::size_t size);
    void takeInstants(const unsigned char* samples, std::size_t count);
    void findClipping(const unsigned char* samples, std::size_t count, State& state, Level& level) const;
    void endBlock();
    void endSilence(State& state, Channel& channel, std::uint64_t end) const;
    void endPoint();
    void halveOutlines();

    WaveFormat format_;
    Options options_;
    Measure measure_;
    std::int32_t upperEnd_; // of the scale
    std::uint64_t blockInstants_;
    std::uint64_t blocksOfPoint_ = 1;
    std::uint64_t inBlock_ = 0, inPoint_ = 0; // instants, blocks
    std::uint64_t instants_ = 0;
    std::vector<Channel> channels_;
    std::vector<State> states_;
    std::vector<unsigned char> partial_; // an instant that is not whole yet
};

} // namespace MXF::Zelm::Essence::Wave
