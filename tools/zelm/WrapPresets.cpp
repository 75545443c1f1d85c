#include "WrapPresets.h"

#include "TimeText.h"

#include <MXF/Zelm/GenericContainer/Analyzers/D10Analyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/D10SoundAnalyzer.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::D10Analyzer;
using GenericContainer::D10SoundAnalyzer;

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

class PresetCheck {
public:
    PresetCheck(LayoutPreset const& preset, WrapPlan const& plan) : preset_(preset), plan_(plan) {}

    void checkRdd9() const {
        require(count('v') == 1, "one picture track");
        static constexpr EditRate rates[] = {{24000, 1001}, {25, 1}, {30000, 1001}, {50, 1}, {60000, 1001}};
        require(std::find(std::begin(rates), std::end(rates), plan_.rate()) != std::end(rates),
                "23.976, 25, 29.97, 50 or 59.94 pictures a second, not " + rateText(plan_.rate()));
        for (auto const& track : plan_.tracks())
            if (track.kind == 'v')
                require(d10PictureOf(track) == nullptr, "MPEG-2 long GOP, not D-10");
        checkSounds(16);
    }

    void checkD10() const {
        require(count('v') == 1, "one picture track");
        require(count('a') <= 1, "one sound track of up to 8 channels");
        require(count('d') == 0, "no further data");
    }

    void checkPlain() const { require(count('v') <= 1, "one picture track"); }

private:
    void require(bool holds, std::string const& what) const {
        if (!holds)
            throw CannotWrap("--preset " + std::string(preset_.name) + ": " + preset_.document +
                             " asks for " + what);
    }

    std::ptrdiff_t count(char kind) const {
        return std::count_if(plan_.tracks().begin(), plan_.tracks().end(),
                             [&](auto const& track) { return track.kind == kind; });
    }

    void checkSounds(std::ptrdiff_t most) const {
        require(count('a') <= most, "at most " + std::to_string(most) + " sound tracks");
        for (auto const& track : plan_.tracks())
            if (track.tail)
                require(track.format.samplingRate == 48000 &&
                            (track.format.validBits == 16 || track.format.validBits == 24),
                        "sound of 16 or 24 bits at 48000 Hz");
    }

    LayoutPreset const& preset_;
    WrapPlan const& plan_;
};

} // namespace

void joinD10Sounds(std::vector<std::vector<WrapTrack>>& opened) {
    auto const& picture = d10Picture(opened);
    Templates::vector<D10SoundAnalyzer::Input> inputs;
    WrapTrack* first = nullptr;
    unsigned channels = 0;
    for (auto& tracks : opened) {
        for (auto& track : tracks) {
            if (!track.tail)
                continue;
            track.tail->extent(SilentTail::Extent::Endless);
            inputs.push_back({track.tail, track.format});
            channels += track.format.channels;
            first = first != nullptr ? first : &track;
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
    first->essence = "AES3, " + std::to_string(channels) + " channels, 48000 Hz";
    first->tap = std::make_shared<TrackTap>(std::make_shared<D10SoundAnalyzer>(inputs, picture.format()));
}

void checkPreset(Layout const& layout, WrapPlan const& plan) {
    if (layout.preset() == nullptr)
        return;
    PresetCheck const check(*layout.preset(), plan);
    if (layout.isPreset("rdd9"))
        check.checkRdd9();
    else if (layout.isPreset("d10"))
        check.checkD10();
    else if (layout.isPreset("op1a"))
        check.checkPlain();
}

} // namespace Zelm
