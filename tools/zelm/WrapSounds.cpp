#include "WrapSounds.h"

#include "UnitRange.h"

#include <MXF/Zelm/DataIO/BoundedSliceSource.h>
#include <MXF/Zelm/Essence/Converters/ChannelSplitter.h>
#include <MXF/Zelm/Essence/Wave/WaveReader.h>
#include <MXF/Zelm/GenericContainer/Analyzers/PCMAnalyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/WaveOrigin.h>

#include <algorithm>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::Wave::WaveFormat;
using Essence::Wave::WaveReader;
using GenericContainer::PCMAnalyzer;
using GenericContainer::PCMOptions;
using GenericContainer::Wrapping;

namespace {

/// Of an edit unit, which is made in memory: no sound comes near this, what a broken file claims may.
constexpr std::uint64_t mostUnitBytes = std::uint64_t{64} << 20;

/// A sound, opened.
struct OpenSound {
    Templates::SharedPtr<DataIO::SliceSource> samples;
    WaveFormat format;
    std::optional<std::uint64_t> count; ///< whole instants
};

using Origin = std::shared_ptr<GenericContainer::WaveOrigin const>;

OpenSound openWave(InputHead const& head, TrackMaking const& making) {
    WaveReader const reader(head.open(making));
    return {reader.samples(), reader.format(), reader.sampleCount()};
}

OpenSound openSamples(InputHead const& head, TrackMaking const& making) {
    if (head.pcm.channels == 0)
        throw CannotWrap(head.name + ": --pcm says what the samples are like");
    OpenSound sound{head.open(making), head.pcm, std::nullopt};
    if (head.isFile())
        sound.count = head.fileSize / head.pcm.blockAlign();
    return sound;
}

/// Makes the tracks of one sound.
class SoundTracks {
public:
    SoundTracks(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks,
                Origin origin = nullptr)
        : head_(head), making_(making), tracks_(tracks), origin_(std::move(origin)) {}

    template <class Open>
    void add(Open open) {
        OpenSound const sound = wholeInstants(open(head_, making_));
        std::shared_ptr<SilentTail> tail = withTail(sound);
        unsigned const all = sound.format.channels;
        std::optional<Essence::Converters::ChannelSplitter> splitter;
        unsigned each = 0;
        for (unsigned first = 0; first < all; first += each) {
            each = channelsFrom(first, all);
            if (first != 0 && making_.wantsOwnSources()) {
                tail = withTail(wholeInstants(open(head_, making_)));
                splitter.reset();
            }
            Templates::SharedPtr<DataIO::SliceSource> source = tail;
            if (each < all) {
                if (!splitter)
                    splitter.emplace(tail, all, sound.format.sampleBytes);
                source = splitter->range(first, each);
            }
            addTrack(sound, tail, source, {first, each});
            making_.channels += each;
        }
    }

private:
    struct Channels {
        unsigned first, count;
    };

    /// An instant that is torn at the end is left out, so that all tracks of the input end alike.
    static OpenSound wholeInstants(OpenSound sound) {
        if (sound.count)
            sound.samples = std::make_shared<DataIO::BoundedSliceSource>(
                sound.samples, *sound.count * sound.format.blockAlign());
        return sound;
    }

    /// Channels of the track that begins with channel `first` of `all`: as many as each track is to have,
    /// else those of a group of the map, else all.
    unsigned channelsFrom(unsigned first, unsigned all) const {
        unsigned const wanted = making_.channelsPerTrack();
        auto const& map = making_.options.channelMap;
        if (wanted != 0 || making_.options.channels || !map)
            return std::min(wanted == 0 ? all : wanted, all - first);
        unsigned count = 1;
        while (first + count < all && !map->beginsGroup(making_.channels + count))
            ++count;
        return count;
    }

    std::shared_ptr<SilentTail> withTail(OpenSound const& sound) {
        ++making_.sources;
        std::optional<Utils::SampleCadence> cadence;
        if (making_.soundWrapping() == Wrapping::Frame)
            cadence.emplace(sound.format.samplingRate, making_.rate);
        if (cadence && cadence->mostSamples() > mostUnitBytes / sound.format.blockAlign())
            throw CannotWrap(head_.name + ": " + std::to_string(sound.format.channels) + " channels at " +
                             std::to_string(sound.format.samplingRate) +
                             " Hz make edit units of more than 64 MiB");
        return std::make_shared<SilentTail>(sound.samples, sound.format, cadence,
                                            SilentTail::Extent::LastUnit);
    }

    void addTrack(OpenSound const& sound, std::shared_ptr<SilentTail> const& tail,
                  Templates::SharedPtr<DataIO::SliceSource> const& source, Channels range) {
        unsigned const channels = range.count;
        PCMOptions options;
        bool const isAES3 = making_.isPreset("rdd9") || making_.options.aes3;
        options.mapping = isAES3 ? PCMOptions::Mapping::AES3 : PCMOptions::Mapping::BroadcastWave;
        options.wrapping = making_.soundWrapping();
        options.editRate = making_.rate;
        options.channelMap = making_.options.channelMap;
        options.firstChannel = making_.channels;
        options.origin = origin_;
        for (std::size_t i = range.first; i < head_.channelStatus.size() && i < range.first + channels; ++i)
            options.channelStatus.push_back(head_.channelStatus[i]);
        options.hasConstantSize = making_.layout.preset() != nullptr &&
                                  making_.layout.preset()->constantSound &&
                                  options.wrapping == Wrapping::Frame;
        if (options.wrapping == Wrapping::Clip)
            options.sampleCount = sound.count; // a pipe takes clips of known length alone
        WaveFormat format = sound.format;
        format.channels = static_cast<std::uint16_t>(channels);
        if (channels != sound.format.channels)
            format.channelMask = 0;
        WrapTrack track;
        track.kind = 'a';
        track.input = head_.name;
        track.essence = "PCM, " + std::to_string(format.validBits) + " bits, " + std::to_string(channels) +
                        (channels == 1 ? " channel, " : " channels, ") + std::to_string(format.samplingRate) +
                        " Hz";
        track.tap = std::make_shared<TrackTap>(std::make_shared<PCMAnalyzer>(source, format, options));
        track.tap->preload();
        track.wrapping = options.wrapping;
        track.source = making_.sources - 1;
        track.tail = tail;
        track.format = sound.format;
        track.channelStatus = options.channelStatus;
        track.samples = sound.count;
        if (track.samples && head_.isFile()) // a recording that was cut off tells of more than there is
            track.samples = std::min(*track.samples, head_.fileSize / sound.format.blockAlign());
        if (origin_)
            track.timecode = origin_->startTimecode(making_.rate);
        tracks_.push_back(std::move(track));
    }

    InputHead const& head_;
    TrackMaking& making_;
    std::vector<WrapTrack>& tracks_;
    Origin origin_; // null for what is no Wave file of its own
};

} // namespace

void addWave(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    Origin origin;
    if (head.isFile()) {
        WaveReader reader(head.open(making));
        GenericContainer::WaveOrigin found(reader);
        for (auto const& chunk : found.leftOut)
            making.notes->insert(head.name + ": chunk " + chunk + " is too large and was left out");
        if (found.broadcast || !found.chunks.empty())
            origin = std::make_shared<GenericContainer::WaveOrigin>(std::move(found));
    }
    SoundTracks(head, making, tracks, std::move(origin)).add(openWave);
}

void addSamples(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    SoundTracks(head, making, tracks).add(openSamples);
}

WaveFormat parsePcm(std::string const& text) {
    auto const first = std::min(text.find(','), text.size());
    auto const second = std::min(text.find(',', first + 1), text.size());
    auto const number = [&](std::size_t from, std::size_t to) {
        return from < text.size() ? parseUnit(std::string_view(text).substr(from, to - from)).value_or(0) : 0;
    };
    auto const bits = number(0, first), channels = number(first + 1, second),
               rate = number(second + 1, text.size());
    bool const isRight = bits >= 8 && bits <= 32 && channels >= 1 && channels <= 128 && rate >= 1 &&
                         rate <= std::numeric_limits<std::int32_t>::max();
    if (!isRight)
        throw CannotWrap("--pcm " + text + ": give bits, channels and rate, as in 24,2,48000");
    WaveFormat format;
    format.channels = static_cast<std::uint16_t>(channels);
    format.samplingRate = static_cast<std::uint32_t>(rate);
    format.sampleBytes = static_cast<std::uint16_t>((bits + 7) / 8);
    format.validBits = static_cast<std::uint16_t>(bits);
    return format;
}

Wrapping TrackMaking::soundWrapping() const {
    return layout.wrapping().value_or(layout.isOneFilePerTrack() ? Wrapping::Clip : Wrapping::Frame);
}

unsigned TrackMaking::channelsPerTrack() const {
    return options.channels.value_or(layout.preset() != nullptr ? layout.preset()->soundChannels : 0);
}

bool TrackMaking::wantsOwnSources() const {
    return layout.isOneFilePerTrack() || soundWrapping() == Wrapping::Clip;
}

} // namespace Zelm
