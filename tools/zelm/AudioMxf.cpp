/// `zelm audio` of MXF files: the essence of the sound tracks goes through meters on the way that it would
/// take into files.
#include "AudioInfo.h"
#include "CarriedStatus.h"
#include "Extraction.h"
#include "SetValues.h"
#include "Text.h"
#include "WaveForm.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/SoundDescriptors.h>
#include <MXF/Zelm/Utils/SampleCadence.h>

#include <algorithm>
#include <bit>
#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::AES3::ChannelStatus;
using Essence::Wave::LevelMeter;
using GenericContainer::Wrapping;
using Shape = EssenceForm::Shape;
namespace Structural = Metadata::Structural;

namespace {

class MeterOutput : public WaveOutput {
public:
    explicit MeterOutput(std::shared_ptr<LevelMeter> meter) : meter_(std::move(meter)) {}

    void add(std::size_t, DataIO::Chain samples) override { meter_->take(samples); }
    void complete() override { meter_->finish(); }
    void abandon(std::vector<std::string>&) override { meter_->finish(); }

private:
    std::shared_ptr<LevelMeter> meter_;
};

std::string countText(std::uint64_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// Watches the sizes of edit units on their way.
class UnitWatch : public TrackOutput {
public:
    UnitWatch(AudioTrack& track, std::unique_ptr<TrackOutput> inner, std::uint32_t instantSize,
              std::optional<Utils::SampleCadence> cadence)
        : track_(track), inner_(std::move(inner)), instantSize_(instantSize), cadence_(std::move(cadence)) {}

    void beginUnit(std::int64_t position) override {
        checkCadence();
        position_ = position;
        bytes_ = 0;
        inner_->beginUnit(position);
    }
    void take(DataIO::Chain const& data) override {
        bytes_ += data.size();
        inner_->take(data);
    }
    void endUnit() override {
        if (bytes_ % instantSize_ != 0)
            note(cut_, firstCut_);
        inner_->endUnit();
    }
    void complete() override {
        tell();
        inner_->complete();
    }
    void abandon(std::vector<std::string>& parts) override {
        tell();
        inner_->abandon(parts);
    }

private:
    /// Of all but the last edit unit, which may have fewer.
    void checkCadence() {
        if (position_ < 0 || !cadence_)
            return;
        std::uint64_t const samples = bytes_ / instantSize_, most = cadence_->mostSamples();
        if (samples > most || samples + (cadence_->isConstant() ? 0 : 1) < most)
            note(uneven_, firstUneven_);
    }
    void note(std::uint64_t& count, std::int64_t& first) const {
        first = count == 0 ? position_ : first;
        ++count;
    }
    void tell() {
        if (cut_ != 0)
            track_.odd.push_back(countText(cut_, "edit unit") +
                                 " of other than whole samples, the first is " + std::to_string(firstCut_));
        if (uneven_ != 0)
            track_.odd.push_back(countText(uneven_, "edit unit") + " of other than " +
                                 std::to_string(cadence_->mostSamples()) +
                                 (cadence_->isConstant() ? "" : " or one less") + " samples, the first is " +
                                 std::to_string(firstUneven_));
    }

    AudioTrack& track_;
    std::unique_ptr<TrackOutput> inner_;
    std::uint32_t instantSize_;
    std::optional<Utils::SampleCadence> cadence_;
    std::int64_t position_ = -1, firstCut_ = 0, firstUneven_ = 0;
    std::uint64_t bytes_ = 0, cut_ = 0, uneven_ = 0;
};

/// Of tracks whose samples cannot be read.
class NoOutput : public TrackOutput {
public:
    void take(DataIO::Chain const&) override {}
    void complete() override {}
    void abandon(std::vector<std::string>&) override {}
};

const char* wrappingText(Wrapping wrapping) {
    return wrapping == Wrapping::Clip ? "clip" : wrapping == Wrapping::Frame ? "frame" : "";
}

/// The instants of a track by its duration.
void takeLength(MXFIO::EssenceTrack const& source, AudioTrack& track) {
    double const rate = source.editRate.isKnown() ? source.editRate.toDouble() : 0;
    if (source.duration < 0 || rate <= 0 || track.format.samplingRate == 0)
        return;
    double const instants = static_cast<double>(source.duration) / rate * track.format.samplingRate;
    if (instants > 9e15)
        return;
    track.instants = static_cast<std::uint64_t>(std::llround(instants));
    track.tolerance = static_cast<std::uint64_t>(std::ceil(track.format.samplingRate / rate)) - 1;
}

void takeStatus(MXFIO::EssenceTrack const& source, Structural::AES3AudioEssenceDescriptor const& aes3,
                AudioTrack& track) {
    auto const* const data = aes3.fixedChannelStatusData();
    if (data == nullptr || data->subType() != Types::Identifiers::UInt8)
        return;
    if (data->count() != track.format.channels * ChannelStatus::blockSize)
        track.odd.push_back("the descriptor has " + countText(data->count(), "byte") +
                            " of channel status for " + countText(track.format.channels, "channel"));
    track.statuses = channelStatuses(source);
    track.statuses.resize(std::min<std::size_t>(track.statuses.size(), track.format.channels));
}

/// What the descriptor says twice.
void compareDescriptor(Structural::WAVEAudioEssenceDescriptor const& wave, AudioTrack& track) {
    std::uint32_t const channels = track.sound.channels.value_or(0), bits = track.sound.bits.value_or(0);
    std::uint64_t const made = std::uint64_t{channels} * ((bits + 7) / 8);
    auto const align = count(wave.blockAlign());
    if (align && *align != made)
        track.odd.push_back("BlockAlign is " + std::to_string(*align) + ", " +
                            countText(channels, "channel") + " of " + std::to_string(bits) + " bits make " +
                            std::to_string(made));
    std::uint64_t const rate = std::uint64_t{track.format.samplingRate} * align.value_or(0);
    if (auto const bytes = count(wave.avgBps()); bytes && align && *bytes != rate)
        track.odd.push_back("AvgBps is " + std::to_string(*bytes) + ", sampling rate and BlockAlign make " +
                            std::to_string(rate));
}

void compareFormulation(Structural::GenericSoundEssenceDescriptor const& sound, AudioTrack& track) {
    constexpr std::uint32_t twoChannels = 1, single = 2, stereo = 4;
    auto const formulation = count(sound.electrospatialFormulation()).value_or(0);
    std::uint32_t const channels = track.sound.channels.value_or(0);
    if ((formulation == single && channels != 1) ||
        ((formulation == stereo || formulation == twoChannels) && channels != 2))
        track.odd.push_back("ElectroSpatialFormulation " + std::to_string(formulation) + " is for " +
                            (formulation == single ? "one channel" : "two channels") + ", there are " +
                            std::to_string(channels));
}

class SoundMeters : public TrackConversion {
public:
    SoundMeters(AudioFile& file, AudioOptions const& options) : file_(file), options_(options) {}

    std::string choose(ExtractTrack& found, GenericContainer::Element const& element) override {
        if (found.kind() != 'a')
            return "is no sound";
        AudioTrack& track = file_.tracks.emplace_back();
        track.name = found.name;
        bool const isPackets = found.form.isPackets();
        if (isPackets)
            found.form.shape = Shape::PacketSamples;
        track.coding = isPackets ? "SMPTE 302M" : found.form.isWave() ? "PCM" : found.form.suffix;
        track.wrapping = found.container != nullptr ? wrappingText(found.container->wrapping()) : "";
        if (found.form.isWave())
            track.format = found.form.wave;
        if (found.track != nullptr)
            takeTrack(*found.track, found.form, track);
        if (auto statuses = carriedStatuses(found.form, element); !statuses.empty())
            track.statuses = std::move(statuses);
        if (found.form.shape == Shape::EightChannels) {
            track.wrapping = "AES3 element";
            takeElement(element, track);
        } else if (found.form.isWave() && !isPackets && track.wrapping == "frame" &&
                   element.length % track.format.blockAlign() != 0) {
            track.odd.push_back("the first element has " + countText(element.length, "byte") +
                                ", which are no whole samples of " +
                                countText(track.format.blockAlign(), "byte"));
        }
        return {};
    }

    std::unique_ptr<TrackOutput> open(ExtractTrack const& found, OutputNames const&) override {
        auto const track = std::find_if(file_.tracks.begin(), file_.tracks.end(),
                                        [&](auto const& each) { return each.name == found.name; });
        if (!found.form.isWave() || track == file_.tracks.end())
            return std::make_unique<NoOutput>();
        track->levels = std::make_shared<LevelMeter>(found.form.wave, options_.meter);
        auto output = makeSoundOutput(found.form, std::make_shared<MeterOutput>(track->levels), 0);
        if (found.form.shape == Shape::EightChannels || found.form.shape == Shape::PacketSamples)
            return output;
        return std::make_unique<UnitWatch>(*track, std::move(output), found.form.wave.blockAlign(),
                                           cadenceOf(found, *track));
    }

private:
    static void takeTrack(MXFIO::EssenceTrack const& source, EssenceForm const& form, AudioTrack& track) {
        if (source.track != nullptr)
            track.id = source.trackID;
        auto const* const sound =
            dynamic_cast<Structural::GenericSoundEssenceDescriptor const*>(source.descriptor);
        if (sound == nullptr)
            return;
        auto const info = gatherDescriptor(*sound);
        track.sound = info.sound.value_or(SoundInfo());
        if (!form.isWave()) {
            track.coding = info.coding && !info.coding->name.empty() ? info.coding->name : track.coding;
            return;
        }
        takeLength(source, track);
        compareFormulation(*sound, track);
        if (auto const* const wave = dynamic_cast<Structural::WAVEAudioEssenceDescriptor const*>(sound))
            compareDescriptor(*wave, track);
        if (auto const* const aes3 = dynamic_cast<Structural::AES3AudioEssenceDescriptor const*>(sound))
            takeStatus(source, *aes3, track);
    }

    /// The flags of the first element.
    static void takeElement(GenericContainer::Element const& element, AudioTrack& track) {
        if (element.data.size() != element.length || element.length < 4)
            return;
        auto const head = element.data.part(0, 4).contiguous();
        // SMPTE 386M declares four channels or eight, of which fewer may be live.
        auto const live = static_cast<unsigned>(std::popcount(unsigned{head.data()[3]}));
        track.live = live;
        if (live > track.sound.channels.value_or(live))
            track.odd.push_back("the first element flags " + countText(live, "channel") +
                                ", the descriptor says " + std::to_string(*track.sound.channels));
    }

    static std::optional<Utils::SampleCadence> cadenceOf(ExtractTrack const& found, AudioTrack const& track) {
        if (track.wrapping != "frame" || found.track == nullptr)
            return std::nullopt;
        try {
            return Utils::SampleCadence(track.format.samplingRate, found.track->editRate);
        } catch (Exceptions::InvalidValue const&) {
            return std::nullopt;
        }
    }

    AudioFile& file_;
    AudioOptions const& options_;
};

/// The tracks of a file package are all there.
void compareTracks(AudioFile& file) {
    std::size_t tracks = 0;
    for (auto const& package : file.mxf.packages)
        for (auto const& track : package.tracks)
            tracks +=
                package.kind == "file" && track.kind == "sound" && track.number.value_or(0) != 0 ? 1u : 0u;
    if (tracks > file.tracks.size())
        file.odd.push_back("the metadata has " + countText(tracks, "sound track") + ", the file holds " +
                           std::to_string(file.tracks.size()));
    for (auto const& track : file.tracks) {
        auto const& first = file.tracks.front();
        if (track.instants && first.instants && track.format.samplingRate == first.format.samplingRate &&
            std::max(*track.instants, *first.instants) - std::min(*track.instants, *first.instants) >
                std::max(track.tolerance, first.tolerance))
            file.odd.push_back(track.name + " and " + first.name + " do not have the same length");
    }
}

} // namespace

void readMxfAudio(AudioFile& file, AudioOptions const& options, SharedDictionary const& dictionary) {
    file.kind = "MXF";
    Input input(file.file, dictionary);
    if (file.size != 0 && input.reader.headerPartition() == nullptr)
        throw Exceptions::InvalidStructure("neither an MXF file (no header partition begins within " +
                                           grouped(searchLimit) +
                                           " bytes) nor a Wave file (RIFF, RF64, BW64) nor an AVI file");
    file.mxf = gatherInfo(input);
    ExtractOptions wanted;
    wanted.tracks.conversion = std::make_shared<SoundMeters>(file, options);
    wanted.tracks.output.force = true; // nothing is written
    wanted.action = "measuring";
    wanted.listOnly = !options.levels;
    Extraction extraction(wanted);
    try {
        extraction.run(input);
    } catch (CannotExtract const& refusal) {
        if (!file.tracks.empty())
            throw;
    }
    for (auto const& text : extraction.result().early)
        file.odd.push_back(text);
    file.faults = extraction.result().faults;
    compareTracks(file);
}

} // namespace Zelm
