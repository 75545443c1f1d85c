#include "TrackChoice.h"

#include "EssenceForm.h"

#include <charconv>
#include <map>
#include <optional>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::ElementKey;

namespace {

struct TrackName {
    enum Form { ByKind, ByID, ByNumber } form;
    char kind;
    std::uint32_t number;
};

std::optional<std::uint32_t> parse(std::string_view text, int base) {
    std::uint32_t number = 0;
    auto const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::optional<TrackName> parseName(std::string_view name) {
    TrackName::Form form = TrackName::ByID;
    char kind = 0;
    if (name.starts_with("0x") || name.size() == 8) {
        form = TrackName::ByNumber;
        name.remove_prefix(name.starts_with("0x") ? 2 : 0);
    } else if (name.starts_with('v') || name.starts_with('a') || name.starts_with('d')) {
        form = TrackName::ByKind;
        kind = name.front();
        name.remove_prefix(1);
    }
    auto const number = parse(name, form == TrackName::ByNumber ? 16 : 10);
    return number ? std::optional(TrackName{form, kind, *number}) : std::nullopt;
}

/// Calls `take` with each track, and its kind and number of that kind.
template <class Function>
void forEachTrack(std::vector<EssenceContainer> const& containers, Function const& take) {
    std::map<char, std::uint32_t> counts;
    for (auto const& container : containers)
        for (auto const& track : container.tracks) {
            char const kind = trackKind(track);
            take(container, track, kind, ++counts[kind]);
        }
}

} // namespace

bool isTrackName(std::string_view name) { return parseName(name).has_value(); }

char trackKind(MXFIO::EssenceTrack const& track) { return kindOf(&track, ElementKey(track.trackNumber)); }

std::vector<FoundTrack> chooseTracks(std::vector<EssenceContainer> const& containers, std::string_view name) {
    std::vector<FoundTrack> found;
    auto const wanted = parseName(name);
    if (!wanted)
        return found;
    forEachTrack(containers, [&](auto const& container, auto const& track, char kind, std::uint32_t number) {
        bool const isIt = wanted->form == TrackName::ByKind ? kind == wanted->kind && number == wanted->number
                          : wanted->form == TrackName::ByID ? track.trackID == wanted->number
                                                            : track.trackNumber == wanted->number;
        if (isIt && (found.empty() || found.back().container != &container))
            found.push_back({&container, &track});
    });
    return found;
}

std::string trackNames(std::vector<EssenceContainer> const& containers) {
    std::string names;
    forEachTrack(containers, [&](auto const&, auto const&, char kind, std::uint32_t number) {
        names += (names.empty() ? "" : ", ") + std::string(1, kind) + std::to_string(number);
    });
    return names.empty() ? "none" : names;
}

} // namespace Zelm
