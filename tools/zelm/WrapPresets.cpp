#include "WrapPresets.h"

#include <MXF/Zelm/GenericContainer/Analyzers/D10Analyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/D10SoundAnalyzer.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::D10Analyzer;
using GenericContainer::D10SoundAnalyzer;
using GenericContainer::MPEG2VideoAnalyzer;

namespace {

D10Analyzer const* d10PictureOf(WrapTrack const& track) {
    return dynamic_cast<D10Analyzer const*>(&track.tap->analyzer());
}

D10Analyzer const& d10Picture(std::vector<std::vector<WrapTrack>> const& opened) {
    for (auto const& tracks : opened)
        for (auto const& track : tracks)
            if (auto const* const picture = d10PictureOf(track))
                return *picture;
    throw CannotWrap(
        "--preset d10: SMPTE 386M asks for D-10 pictures (MPEG-2 4:2:2, intra, 30, 40 or 50 Mb/s)");
}

std::ptrdiff_t countOf(WrapPlan const& plan, char kind) {
    return std::count_if(plan.tracks().begin(), plan.tracks().end(),
                         [&](auto const& track) { return track.kind == kind; });
}

template <class Test>
bool holdsForAll(WrapPlan const& plan, char kind, Test test) {
    return std::all_of(plan.tracks().begin(), plan.tracks().end(),
                       [&](auto const& track) { return track.kind != kind || test(track); });
}

MPEG2VideoAnalyzer const* mpegOf(WrapTrack const& track) {
    return dynamic_cast<MPEG2VideoAnalyzer const*>(&track.tap->analyzer());
}

bool hasOnePicture(WrapPlan const& plan) { return countOf(plan, 'v') == 1; }
bool hasNoFurtherPicture(WrapPlan const& plan) { return countOf(plan, 'v') <= 1; }
bool hasOneSound(WrapPlan const& plan) { return countOf(plan, 'a') <= 1; }
bool hasUpTo16Sounds(WrapPlan const& plan) { return countOf(plan, 'a') <= 16; }
bool hasNoData(WrapPlan const& plan) { return countOf(plan, 'd') == 0; }

bool hasRateOfRdd9(WrapPlan const& plan) {
    static constexpr EditRate rates[] = {{24000, 1001}, {25, 1}, {30000, 1001}, {50, 1}, {60000, 1001}};
    return std::find(std::begin(rates), std::end(rates), plan.rate()) != std::end(rates);
}

/// Tracks of other MXF files tell by their labels (SMPTE 381M: byte 13 is 4).
bool isLongGOP(WrapPlan const& plan) {
    return holdsForAll(plan, 'v', [](WrapTrack const& track) {
        auto const* const video = mpegOf(track);
        return video != nullptr ? !video->isIntraOnly() && d10PictureOf(track) == nullptr
                                : track.tap->universalLabel().rawBuffer()[13] == 4;
    });
}

/// The codes of ISO/IEC 13818-2 for main at main, high 1440 and high, 4:2:2 at main and high level.
bool hasLevelOfRdd9(WrapPlan const& plan) {
    static constexpr std::uint8_t levels[] = {0x48, 0x46, 0x44, 0x85, 0x82};
    return holdsForAll(plan, 'v', [](WrapTrack const& track) {
        auto const* const video = mpegOf(track);
        return video == nullptr ||
               (video->sequence().extension &&
                std::find(std::begin(levels), std::end(levels),
                          video->sequence().extension->profileAndLevel) != std::end(levels));
    });
}

/// Samples by their mapping: of Wave and AES3 (SMPTE 382M), or with D-10 pictures (SMPTE 386M). What tracks
/// of other MXF files hold is not looked at further.
bool hasSoundOfTelevision(WrapPlan const& plan) {
    return holdsForAll(plan, 'a', [](WrapTrack const& track) {
        constexpr unsigned char ofD10 = 0x01, ofSamples = 0x06;
        auto const mapping = track.tap->universalLabel().rawBuffer()[13];
        bool const hasBits = track.format.validBits == 16 || track.format.validBits == 24;
        return (mapping == ofD10 || mapping == ofSamples) &&
               (!track.tail || (track.format.samplingRate == 48000 && hasBits));
    });
}

/// What the documents ask for of the tracks.
struct Rule {
    const char* preset;
    const char* asksFor;
    bool (*holds)(WrapPlan const& plan);
};

constexpr Rule rules[] = {
    {"rdd9", "one picture track", hasOnePicture},
    {"rdd9", "MPEG-2 long GOP", isLongGOP},
    {"rdd9", "the main or 4:2:2 profile of MPEG-2, at main, high 1440 or high level", hasLevelOfRdd9},
    {"rdd9", "23.976, 25, 29.97, 50 or 59.94 pictures a second", hasRateOfRdd9},
    {"rdd9", "at most 16 sound tracks", hasUpTo16Sounds},
    {"rdd9", "sound of 16 or 24 bits at 48000 Hz", hasSoundOfTelevision},
    {"d10", "one picture track", hasOnePicture},
    {"d10", "one sound track of up to 8 channels", hasOneSound},
    {"d10", "sound of 16 or 24 bits at 48000 Hz", hasSoundOfTelevision},
    {"d10", "no further data", hasNoData},
    {"op1a", "one picture track", hasNoFurtherPicture},
    {"as02", "one picture track", hasNoFurtherPicture},
};

/// Pictures in a group of RDD 9.
constexpr std::size_t longestGroupOfRdd9 = 15;

void addStatuses(D10SoundAnalyzer::Input& input, WrapTrack const& track) {
    input.channelStatus.insert(input.channelStatus.end(), track.channelStatus.begin(),
                               track.channelStatus.end());
}

} // namespace

void joinD10Sounds(std::vector<std::vector<WrapTrack>>& opened, TrackOptionsOfWrap const& options) {
    auto const& picture = d10Picture(opened);
    Templates::vector<D10SoundAnalyzer::Input> inputs;
    WrapTrack* first = nullptr;
    unsigned channels = 0;
    for (auto& tracks : opened) {
        for (auto& track : tracks) {
            if (!track.tail)
                continue;
            first = first != nullptr ? first : &track;
            if (!inputs.empty() && inputs.back().samples == track.tail) { // further channels of one input
                addStatuses(inputs.back(), track);
                continue;
            }
            track.tail->extent(SilentTail::Extent::Endless);
            inputs.push_back({track.tail, track.format, track.channelStatus});
            channels += track.format.channels;
        }
        tracks.erase(std::remove_if(tracks.begin(), tracks.end(),
                                    [&](auto const& track) { return track.tail && &track != first; }),
                     tracks.end());
    }
    if (first == nullptr)
        return;
    if (channels > 8)
        throw CannotWrap("--preset d10: SMPTE 386M asks for up to 8 channels of sound, not " +
                         std::to_string(channels));
    first->essence =
        "AES3, " + std::to_string(channels) + (channels == 1 ? " channel" : " channels") + ", 48000 Hz";
    auto const sound = std::make_shared<D10SoundAnalyzer>(inputs, picture.format());
    sound->channelMap(options.channelMap);
    first->tap = std::make_shared<TrackTap>(sound);
}

void checkPreset(Layout const& layout, WrapPlan const& plan) {
    for (auto const& rule : rules)
        if (layout.isPreset(rule.preset) && !rule.holds(plan))
            throw CannotWrap("--preset " + std::string(rule.preset) + ": " + layout.preset()->document +
                             " asks for " + rule.asksFor);
}

void checkGroups(Layout const& layout, WrapTrack const& track) {
    auto const* const video = mpegOf(track);
    if (layout.isPreset("rdd9") && video != nullptr && video->longestGroup() > longestGroupOfRdd9)
        track.tap->fault("RDD 9 asks for groups of at most " + std::to_string(longestGroupOfRdd9) +
                         " pictures, the longest here has " + std::to_string(video->longestGroup()));
}

} // namespace Zelm
