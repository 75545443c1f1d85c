#include "AudioInfo.h"

#include "TimeText.h"

#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/Wave/WaveReader.h>

#include <algorithm>
#include <cstring>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::AES3::ChannelStatus;

namespace {

/// Of the loudspeakers of WAVE_FORMAT_EXTENSIBLE, lowest bit first.
constexpr const char* speakers[] = {"L",  "R",  "C",  "LFE", "Lrs", "Rrs", "Lc",  "Rc",  "Cs",
                                    "Ls", "Rs", "Tc", "Tfl", "Tfc", "Tfr", "Tbl", "Tbc", "Tbr"};

std::string speakerOf(std::uint32_t mask, unsigned channel) {
    for (unsigned bit = 0; bit < std::size(speakers); ++bit)
        if ((mask >> bit & 1u) != 0 && channel-- == 0)
            return speakers[bit];
    return {};
}

const char* emphasisText(ChannelStatus const& status) {
    switch (status.audioSignalEmphasis()) {
    case ChannelStatus::NoEmphasis:
        return ", no emphasis";
    case ChannelStatus::Emphasis50_15:
        return ", emphasis 50/15 µs";
    case ChannelStatus::EmphasisJ17:
        return ", emphasis J.17";
    default:
        return "";
    }
}

const char* modeText(ChannelStatus const& status) {
    switch (status.channelMode()) {
    case ChannelStatus::Stereophonic:
        return ", stereophonic";
    case ChannelStatus::SingleChannel:
        return ", single channel";
    case ChannelStatus::TwoChannel:
        return ", two channels";
    case ChannelStatus::PrimarySecondary:
        return ", primary and secondary";
    case ChannelStatus::Multichannel:
        return ", multichannel";
    default:
        return "";
    }
}

bool saysWordLength(ChannelStatus const& status) { return (status.rawBuffer()[2] >> 3 & 7u) != 0; }

/// A label for each channel, each of another one, all of channels that are there.
void compareLabels(AudioTrack& track) {
    std::set<std::uint32_t> labelled;
    std::size_t count = 0, groups = 0;
    for (auto const& label : track.sound.labels) {
        groups += label.kind == "channel" ? 0u : 1u;
        if (label.kind != "channel")
            continue;
        ++count;
        if (!label.channel)
            continue;
        if (*label.channel < 1 || *label.channel > track.format.channels)
            track.odd.push_back("the label " + label.symbol + " is for channel " +
                                std::to_string(*label.channel) + " of " +
                                std::to_string(track.format.channels));
        else if (!labelled.insert(*label.channel).second)
            track.odd.push_back("channel " + std::to_string(*label.channel) + " has several labels");
    }
    if (count != 0 && count != track.format.channels && count != track.live)
        track.odd.push_back("there are " + std::to_string(count) + " channel labels for " +
                            std::to_string(track.format.channels) + " channels");
    if (count == 0 && groups != 0)
        track.odd.push_back("there is a soundfield group without channel labels");
}

void compareStatus(AudioTrack& track) {
    for (std::size_t i = 0; i < track.statuses.size(); ++i) {
        auto const& status = track.statuses[i];
        auto const say = [&](std::string const& text) {
            track.odd.push_back("the channel status of channel " + std::to_string(i + 1) + " " + text);
        };
        auto const rate = status.samplingFrequency();
        if (rate.denominator != 0 && rate != EditRate{static_cast<int>(track.format.samplingRate), 1})
            say("says " + rateText(rate) + " Hz");
        if (status.isProfessional() && saysWordLength(status) && status.sourceWordLength() != 0 &&
            status.sourceWordLength() > track.format.validBits)
            say("says " + std::to_string(status.sourceWordLength()) + " bits");
        if (status.isNotLinear())
            say("says that the samples are no PCM");
        if (!status.hasValidCRC() && status.rawBuffer()[ChannelStatus::blockSize - 1] != 0)
            say("has a wrong CRC");
    }
}

} // namespace

std::string AudioTrack::labelOf(unsigned channel) const {
    for (auto const& label : sound.labels)
        if (label.kind == "channel" && label.channel == channel + 1) {
            std::string const& text = label.symbol.empty() ? label.name : label.symbol;
            return text.rfind("ch", 0) == 0 ? text.substr(2) : text;
        }
    return speakerOf(format.channelMask, channel);
}

std::optional<std::uint64_t> AudioTrack::length() const {
    return levels ? std::optional(levels->instants()) : instants;
}

bool AudioFile::isOdd() const {
    return !odd.empty() ||
           std::any_of(tracks.begin(), tracks.end(), [](auto const& each) { return !each.odd.empty(); });
}

std::string statusText(ChannelStatus const& status) {
    std::string text = status.isProfessional() ? "professional" : "consumer";
    text += status.isNotLinear() ? ", not PCM" : ", PCM";
    if (auto const rate = status.samplingFrequency(); rate.denominator != 0)
        text += ", " + rateText(rate) + " Hz" + (status.lockIndication() ? " not locked" : "");
    if (saysWordLength(status))
        text += ", " + std::to_string(status.sourceWordLength()) + " bits";
    return text + emphasisText(status) + modeText(status);
}

void findOddities(AudioTrack& track) {
    if (track.format.channels == 0)
        return;
    compareLabels(track);
    compareStatus(track);
    auto const isNear = [&](std::uint64_t a, std::uint64_t b) {
        return std::max(a, b) - std::min(a, b) <= track.tolerance;
    };
    if (track.levels && track.instants && !isNear(track.levels->instants(), *track.instants))
        track.odd.push_back("there are " + std::to_string(track.levels->instants()) +
                            " samples of each channel, the file says " + std::to_string(*track.instants));
}

AudioFile readAudio(std::string const& name, AudioOptions const& options,
                    SharedDictionary const& dictionary) {
    AudioFile file;
    file.file = name;
    DataIO::File::FileSliceSource source{std::string_view(name)};
    file.size = source.size();
    DataIO::Chain chain;
    source.read(12, chain);
    auto const start = chain.contiguous();
    if (Essence::Wave::WaveReader::isWave(start.data(), start.size()))
        readWaveAudio(file, options);
    else if (start.size() == 12 && std::memcmp(start.data(), "RIFF", 4) == 0 &&
             std::memcmp(start.data() + 8, "AVI ", 4) == 0)
        readAviAudio(file, options);
    else
        readMxfAudio(file, options, dictionary);
    for (auto& track : file.tracks)
        findOddities(track);
    return file;
}

} // namespace Zelm
