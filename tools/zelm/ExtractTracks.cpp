#include "ExtractTracks.h"

#include "WaveForm.h"

#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/WaveOrigin.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <tuple>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::ElementKey;
using Shape = EssenceForm::Shape;

namespace {

/// Each takes a buffer and a place among the files that the system lets a program open.
constexpr std::size_t mostTracks = 200;

/// What the file said that the sound came from: its chunks, and its `bext` with the time of edit unit
/// `first`. IDs of audio channels (ITU-R BS.2088) go with all channels that they were for, or not at all.
void takeOrigin(WaveSetup& setup, ExtractTrack const& track) {
    auto const& container = *track.container;
    if (container.package == nullptr || !container.metadata)
        return;
    setup.chunks =
        GenericContainer::originChunks(*container.metadata, *container.package, track.track->trackID);
    for (auto const& chunk : setup.chunks) {
        auto const broadcast =
            chunk.id == "bext"
                ? Essence::Wave::readBroadcastExtension(chunk.content.data(), chunk.content.size())
                : std::nullopt;
        if (!broadcast)
            continue;
        double const seconds = static_cast<double>(std::max<std::int64_t>(track.wanted.of('a').first, 0)) /
                               std::max(track.track->editRate.toDouble(), 1e-6);
        setup.broadcast = *broadcast;
        setup.broadcast.timeReference +=
            static_cast<std::uint64_t>(std::llround(std::min(seconds, 1e9) * setup.format.samplingRate));
    }
    std::erase_if(setup.chunks, [&](auto const& chunk) {
        bool const isForOthers =
            chunk.id == "chna" &&
            (chunk.content.size() < 2 || chunk.content[0] + 256u * chunk.content[1] != setup.format.channels);
        return chunk.id == "bext" || isForOthers;
    });
}

/// A choice as `zelm info` shows it: the eight digits of a track number, or the digits of a track ID.
bool namesTrack(std::string const& choice, std::uint32_t trackID, std::uint32_t trackNumber) {
    constexpr std::size_t numberDigits = 8;
    bool const isNumber = choice.size() == numberDigits;
    std::uint32_t value = 0;
    auto const* const end = choice.data() + choice.size();
    auto const [stop, error] = std::from_chars(choice.data(), end, value, isNumber ? 16 : 10);
    return error == std::errc() && stop == end && value == (isNumber ? trackNumber : trackID);
}

} // namespace

ExtractTracks::ExtractTracks(TrackOptions options, FileInfo const& info, FileListener listener)
    : options_(std::move(options)), info_(info), listener_(std::move(listener)) {}

ExtractTracks::Key ExtractTracks::keyOf(std::uint32_t bodySID, ElementKey element) {
    return {bodySID, element.trackNumber() & 0xFF00FFFFu};
}

std::string ExtractTracks::nextName(char kind) { return kind + std::to_string(++counts_[kind]); }

void ExtractTracks::name(Templates::vector<MXFIO::EssenceContainer> const& containers) {
    for (auto const& container : containers)
        for (auto const& track : container.tracks) {
            ElementKey const element(track.trackNumber);
            if (!names_.contains(keyOf(container.bodySID, element)))
                names_[keyOf(container.bodySID, element)] = nextName(kindOf(&track, element));
        }
}

bool ExtractTracks::isChosen(std::string const& name, MXFIO::EssenceTrack const* track,
                             ElementKey element) const {
    return options_.chosen.empty() ||
           std::any_of(options_.chosen.begin(), options_.chosen.end(), [&](std::string const& choice) {
               return choice == name || choice == name.substr(0, 1) ||
                      namesTrack(choice, track != nullptr ? track->trackID : 0, element.trackNumber());
           });
}

bool ExtractTracks::wants(MXFIO::EssenceContainer const& container) const {
    return container.tracks.empty() ||
           std::any_of(container.tracks.begin(), container.tracks.end(), [&](auto const& track) {
               ElementKey const element(track.trackNumber);
               return isChosen(names_.at(keyOf(container.bodySID, element)), &track, element);
           });
}

/// The name that the metadata's track got, else the next one.
std::string ExtractTracks::nameOf(ExtractTrack const& track) {
    auto const named = names_.find(keyOf(track.bodySID, track.element));
    return named != names_.end() ? named->second : nextName(kindOf(track.track, track.element));
}

void ExtractTracks::meet(MXFIO::EssenceUnit const& unit, MXFIO::EssenceContainer const* container) {
    for (auto const& element : unit.package.elements) {
        Key const key = keyOf(unit.bodySID, element.elementKey());
        if (byKey_.contains(key))
            continue;
        if (byKey_.size() == mostTracks)
            throw Exceptions::InvalidStructure("the essence has more than " + std::to_string(mostTracks) +
                                               " tracks");
        ExtractTrack track;
        track.bodySID = unit.bodySID;
        track.element = element.elementKey();
        track.container = container;
        track.track = container != nullptr ? container->trackByNumber(element.trackNumber()) : nullptr;
        track.name = nameOf(track);
        byKey_[key] = nullptr;
        if (!isChosen(track.name, track.track, track.element))
            continue;
        track.form = essenceForm(track.track, track.element, element.data);
        if (options_.conversion) {
            if (auto const why = options_.conversion->choose(track, element); !why.empty()) {
                refusals_.push_back(track.name + ": " + why);
                continue;
            }
        }
        tracks_.push_back(std::move(track));
        byKey_[key] = &tracks_.back();
    }
}

ExtractTrack* ExtractTracks::find(std::uint32_t bodySID, ElementKey element) {
    auto const found = byKey_.find(keyOf(bodySID, element));
    return found != byKey_.end() ? found->second : nullptr;
}

OutputNames ExtractTracks::namesOf(ExtractTrack const& track) const {
    return {options_.base + "_" + track.name, track.form.suffix, options_.toStandardOutput, options_.output,
            listener_};
}

WaveSetup ExtractTracks::waveSetup(ExtractTrack const& track) const {
    WaveSetup setup{track.form.wave, {}, std::nullopt};
    setup.broadcast = broadcastExtension(info_, *track.container, *track.track, track.wanted.of('a').first,
                                         setup.format.samplingRate);
    takeOrigin(setup, track);
    return setup;
}

bool ExtractTracks::knows(std::uint32_t bodySID, ElementKey element) const {
    return byKey_.contains(keyOf(bodySID, element));
}

void ExtractTracks::plan() {
    std::vector<ExtractTrack*> sounds;
    for (auto& track : tracks_) {
        if (!track.file.empty())
            continue;
        auto names = namesOf(track);
        track.file = names.file();
        if (options_.mix && track.form.isWave()) {
            sounds.push_back(&track);
            continue;
        }
        if (track.form.shape == Shape::Frames && !options_.toStandardOutput)
            track.file = names.base + "_%08d." + names.suffix;
        planned_.push_back({{&track}, std::move(names)});
    }
    planMixes(sounds);
}

void ExtractTracks::planMixes(std::vector<ExtractTrack*> const& sounds) {
    using Format = std::tuple<std::uint32_t, unsigned, unsigned>;
    std::map<Format, std::vector<ExtractTrack*>> groups;
    for (auto* const sound : sounds)
        groups[{sound->form.wave.samplingRate, sound->form.wave.sampleBytes, sound->form.wave.validBits}]
            .push_back(sound);
    for (auto& [format, group] : groups) {
        std::stable_sort(group.begin(), group.end(), [](auto const* a, auto const* b) {
            return std::pair(a->name.size(), a->name) < std::pair(b->name.size(), b->name);
        });
        auto names = namesOf(*group.front());
        names.base = options_.base + "_mix" + (++mixes_ == 1 ? "" : std::to_string(mixes_));
        for (auto* const sound : group)
            sound->file = names.file();
        planned_.push_back({group, std::move(names)});
    }
}

std::vector<std::string> ExtractTracks::existing() const {
    std::vector<std::string> found;
    if (options_.output.force || options_.toStandardOutput)
        return found;
    for (auto const& planned : planned_) {
        auto const& track = *planned.tracks.front();
        bool const isFrames = track.form.shape == Shape::Frames;
        std::string const name =
            isFrames ? planned.names.frame(track.wanted.of(track.kind()).first) : planned.names.file();
        for (auto const& taken : {name, name + ".part"})
            if (DataIO::File::exists(taken))
                found.push_back(taken);
    }
    return found;
}

void ExtractTracks::open(std::optional<std::uint64_t> dataBytes) {
    for (auto const& planned : planned_)
        if (options_.mix && planned.tracks.front()->form.isWave())
            openMix(planned);
        else
            openSingle(planned, dataBytes);
    planned_.clear();
}

void ExtractTracks::openSingle(Planned const& planned, std::optional<std::uint64_t> dataBytes) {
    ExtractTrack& track = *planned.tracks.front();
    if (options_.conversion)
        track.output = options_.conversion->open(track, planned.names);
    if (track.output)
        return;
    if (track.form.isWave()) {
        auto setup = waveSetup(track);
        if (track.form.shape != Shape::EightChannels && track.form.shape != Shape::PacketSamples)
            setup.dataBytes = dataBytes;
        track.output = makeSoundOutput(track.form, makeWaveOutput(planned.names, setup), 0);
    } else if (track.form.shape == Shape::Frames) {
        track.output = makeFramesOutput(planned.names);
    } else {
        track.output = makeStreamOutput(planned.names);
    }
}

void ExtractTracks::openMix(Planned const& planned) {
    auto const& sounds = planned.tracks;
    auto setup = waveSetup(*sounds.front());
    if (sounds.size() > 1)
        setup.chunks.clear();
    std::vector<unsigned> channels;
    unsigned all = 0;
    for (auto const* const sound : sounds) {
        channels.push_back(sound->form.wave.channels);
        all += sound->form.wave.channels;
    }
    if (all * setup.format.sampleBytes > 0xFFFF)
        throw Exceptions::InvalidValue("a Wave file cannot have " + std::to_string(all) + " channels");
    setup.format.channels = static_cast<std::uint16_t>(all);
    if (sounds.size() > 1)
        setup.format.channelMask = 0;
    auto const wave = makeMixOutput(planned.names, setup, channels);
    for (std::size_t i = 0; i < sounds.size(); ++i)
        sounds[i]->output = makeSoundOutput(sounds[i]->form, wave, i);
}

std::vector<std::string> ExtractTracks::unmatched() const {
    std::vector<std::string> names;
    for (auto const& choice : options_.chosen) {
        bool const found = std::any_of(tracks_.begin(), tracks_.end(), [&](ExtractTrack const& track) {
            return choice == track.name || choice == track.name.substr(0, 1) ||
                   namesTrack(choice, track.track != nullptr ? track.track->trackID : 0,
                              track.element.trackNumber());
        });
        if (!found)
            names.push_back(choice);
    }
    return names;
}

} // namespace Zelm
