#include "WrapPlan.h"

#include "FileSequence.h"
#include "TimeText.h"
#include "WrapKinds.h"
#include "WrapPresets.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Templates/SafeCast.h>

#include <algorithm>
#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::Wrapping;

namespace {

constexpr const char* separator = ",";

constexpr EditRate usualRate{25, 1};

/// Tracks that cannot go on, in silence or without content, decide how long an item is.
bool isLeader(WrapTrack const& track) {
    return track.kind != 'd' && track.tail == nullptr && track.openEnd == nullptr;
}

/// How long a sound is, in seconds; one that does not tell is taken for the longest.
double secondsOf(WrapTrack const& track) {
    return track.samples ? static_cast<double>(*track.samples) / track.format.samplingRate : 1e18;
}

/// The track that an item ends with: the first leader, else the longest sound, else coded sound, else
/// anything.
WrapTrack* leaderOf(std::vector<WrapTrack*> const& item) {
    for (auto* const track : item)
        if (isLeader(*track))
            return track;
    WrapTrack* longest = nullptr;
    for (auto* const track : item)
        if (track->tail && (longest == nullptr || secondsOf(*track) > secondsOf(*longest)))
            longest = track;
    if (longest != nullptr)
        return longest;
    auto const sound =
        std::find_if(item.begin(), item.end(), [](auto const* track) { return track->kind == 'a'; });
    return sound != item.end() ? *sound : item.front();
}

bool holds(WrapContainer const& container, WrapTrack const* track) {
    return std::find(container.tracks.begin(), container.tracks.end(), track) != container.tracks.end();
}

/// The tracks of a container end together.
void formGroup(WrapContainer const& container, WrapTrack const* leader) {
    if (container.isClip())
        return;
    auto const group = std::make_shared<TrackGroup>();
    for (auto* const track : container.tracks)
        track->tap->group(group, isLeader(*track) || track == leader);
}

/// Sounds that are not beside the leader, but in another container or file, end where it does: at once when
/// its length is known, else when it is told.
void follow(WrapContainer const& container, WrapTrack& leader) {
    bool const isKnown = leader.tail && leader.samples;
    for (auto* const track : container.tracks) {
        if (!track->tail || track->tail == leader.tail)
            continue;
        if (isKnown)
            track->tap->setDuration(
                durationOf(*leader.samples, {static_cast<int>(leader.format.samplingRate), 1}));
        else
            leader.tap->addFollower(track->tap);
    }
}

void goOnInSilence(WrapTrack& track) {
    track.tail->extent(SilentTail::Extent::Endless);
    track.tap->lengthIsOpen();
}

/// What has no silence goes on without content where it stands in the leader's content packages; elsewhere it
/// ends as it does.
void goOnBeside(WrapTrack const& leader, WrapContainer const& container) {
    if (container.isClip() || !holds(container, &leader))
        return;
    for (auto* const track : container.tracks)
        if (track->openEnd && track != &leader)
            track->openEnd->goOn();
}

/// Sounds go on in silence until the leader of the item ends, and no further.
void endTogether(std::vector<WrapTrack*> const& item, WrapItem const& containers) {
    auto* const leader = leaderOf(item);
    for (auto* const track : item)
        if (track->tail && track->tail != leader->tail)
            goOnInSilence(*track);
    for (auto const& container : containers) {
        goOnBeside(*leader, container);
        formGroup(container, leader);
        if (!holds(container, leader))
            follow(container, *leader);
    }
}

/// "clip.mxf" and "v1" give "clip_v1.mxf".
bool isReordered(WrapTrack const* track) { return track->tap->containsTemporalDependencies(); }

std::string nameWithTrack(std::string const& name, std::string const& track) {
    auto const slash = name.find_last_of("/\\");
    auto const dot = name.rfind('.');
    bool const hasSuffix = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
    std::size_t const end = hasSuffix ? dot : name.size();
    return name.substr(0, end) + "_" + track + name.substr(end);
}

} // namespace

WrapPlan::WrapPlan(Layout const& layout, WrapOptions const& options, SharedDictionary dictionary)
    : layout_(layout) {
    Items const items = openInputs(options, std::move(dictionary));
    nameTracks(items);
    arrange(items, options);
    for (auto& track : tracks_)
        track.tap->options({options.md5, options.verify, track.wrapping == Wrapping::Clip});
}

namespace {

/// What readers say of an input names it.
template <class Read>
auto named(InputHead const& head, Read read) {
    try {
        return read();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        throw CannotWrap(head.name + ": " + failure.message());
    }
}

/// Nothing that is for sound was asked for.
void checkNoSound(TrackOptionsOfWrap const& options) {
    std::pair<bool, const char*> const given[] = {{options.channelMap != nullptr, "--map"},
                                                  {options.channels.value_or(0) != 0, "--channels"},
                                                  {options.aes3, "--aes3"}};
    for (auto const& [isGiven, name] : given)
        if (isGiven)
            throw CannotWrap(std::string(name) +
                             ": no input has samples; tracks of MXF files and packets stay "
                             "as they are");
}

} // namespace

struct WrapPlan::Waiting {
    InputHead head;
    InputKind const& kind;
    std::vector<WrapTrack>& tracks;
};

/// What was asked for has something that it belongs to.
void WrapPlan::checkTracks(TrackMaking const& making, WrapOptions const& options) const {
    if (options.tracks.first && making.sequences == 0)
        throw CannotWrap("--first: no input is a sequence of files, such as frame%05d.j2c");
    if (!options.tracks.resources.empty() && making.streams == 0)
        throw CannotWrap("--resource: there is no timed text that resources could belong to");
    if (options.tracks.packets && !making.hasPackets)
        throw CannotWrap("--packets: no input has packets of SMPTE 302M");
    if (options.tracks.program != 0 && !making.hasPrograms)
        throw CannotWrap("--program: no input is a transport stream");
    auto const& map = options.tracks.channelMap;
    if (map && making.channels % map->channelCount() != 0)
        throw CannotWrap("--map names " + std::to_string(map->channelCount()) +
                         " channels, the sounds have " + std::to_string(making.channels));
    if (options.tracks.channels.value_or(0) != 0 && layout_.isPreset("d10"))
        throw CannotWrap("--preset d10: all sound goes into one track of up to 8 channels: no --channels");
    if (making.channels == 0)
        checkNoSound(options.tracks);
}

/// Inputs with a rate of their own are opened first: the others follow it.
WrapPlan::Items WrapPlan::openInputs(WrapOptions const& options, SharedDictionary dictionary) {
    TrackMaking making{layout_, options.tracks, std::move(dictionary)};
    notes_ = making.notes;
    Opened opened(options.inputs.size());
    std::vector<Waiting> waiting;
    for (std::size_t i = 0; i < options.inputs.size(); ++i) {
        if (options.inputs[i] == separator)
            continue;
        auto head = FileSequence::isPattern(options.inputs[i])
                        ? InputHead::ofSequence(options.inputs[i], options.tracks.first)
                        : InputHead(options.inputs[i]);
        making.sequences += head.sequence.empty() ? 0 : 1;
        head.as = options.tracks.as;
        head.pcm = options.tracks.pcm;
        if (head.isFile())
            inputs_.push_back(head.name);
        inputs_.insert(inputs_.end(), head.sequence.begin(), head.sequence.end());
        inputBytes_ += head.fileSize;
        openInput(head, making, opened[i], waiting);
    }
    making.isRateTold = findRate(opened);
    making.rate = rate_;
    making.isAlone = waiting.size() == 1 && std::all_of(opened.begin(), opened.end(),
                                                        [](auto const& tracks) { return tracks.empty(); });
    for (auto const& input : waiting)
        named(input.head, [&] { input.kind.addTracks(input.head, making, input.tracks); });
    timecodeRate_ = making.isByFrames ? rate_ : making.rate;
    rate_ = making.rate;
    checkTracks(making, options);
    if (layout_.isPreset("d10"))
        joinD10Sounds(opened, options.tracks);
    return gather(std::move(opened), options);
}

void WrapPlan::openInput(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks,
                         std::vector<Waiting>& waiting, unsigned depth) const {
    constexpr unsigned deepest = 4;
    auto const& kind = kindOf(head, making);
    if (kind.streams != nullptr && depth == deepest)
        throw CannotWrap(head.name + ": holds files within files within files");
    if (kind.streams != nullptr)
        for (auto const& stream : named(head, [&] { return kind.streams(head, making); }))
            openInput(stream, making, tracks, waiting, depth + 1);
    else if (kind.hasRate)
        named(head, [&] { kind.addTracks(head, making, tracks); });
    else
        waiting.push_back({head, kind, tracks});
}

void WrapPlan::requireWrapping(WrapTrack const& track) const {
    if (layout_.wrapping() == Wrapping::Clip && track.wrapping != Wrapping::Clip)
        throw CannotWrap("--clip: " + track.input + ": " + track.essence + " is wrapped by edit units alone");
}

/// Puts the tracks where they stay, item by item.
WrapPlan::Items WrapPlan::gather(Opened opened, WrapOptions const& options) {
    Items items(1);
    for (std::size_t i = 0; i < opened.size(); ++i) {
        if (options.inputs[i] == separator)
            items.emplace_back();
        for (auto const& track : opened[i])
            requireWrapping(track);
        for (auto& track : opened[i])
            items.back().push_back(&tracks_.emplace_back(std::move(track)));
    }
    if (std::any_of(items.begin(), items.end(), [](auto const& item) { return item.empty(); }))
        throw CannotWrap("there is nothing to wrap before or behind a comma");
    return items;
}

/// False when neither inputs nor options tell it, so that it is the usual one.
bool WrapPlan::findRate(Opened const& opened) {
    std::optional<EditRate> found;
    std::string from;
    for (auto const& tracks : opened)
        for (auto const& track : tracks) {
            auto const rate = track.tap->editRate();
            bool const countsSamples = track.wrapping == Wrapping::Clip && track.kind == 'a';
            if (countsSamples || !rate.isKnown() || (track.kind == 'd' && found))
                continue;
            if (found && *found != rate)
                throw CannotWrap(track.input + ": has " + rateText(rate) + " edit units a second, " + from +
                                 " has " + rateText(*found));
            found = rate;
            from = track.input;
        }
    if (found && layout_.rate() && *found != *layout_.rate())
        throw CannotWrap("--rate: " + from + " has " + rateText(*found) + " edit units a second");
    rate_ = found ? *found : layout_.rate().value_or(usualRate);
    return found || layout_.rate();
}

void WrapPlan::nameTracks(Items const& items) {
    for (auto const& item : items) {
        std::map<char, unsigned> counts;
        for (auto* const track : item)
            track->name = track->kind + std::to_string(++counts[track->kind]);
    }
}

WrapItem WrapPlan::containersOf(std::vector<WrapTrack*> const& item) const {
    auto const& pattern = layout_.pattern();
    WrapItem containers;
    for (auto* const track : item) {
        bool const isAlone = layout_.isOneFilePerTrack() || track->wrapping == Wrapping::Clip;
        bool const isGanged = pattern.packages == 2;
        auto const before = std::find_if(containers.begin(), containers.end(), [&](auto const& container) {
            return !container.isClip() && (!isGanged || container.tracks.front()->source == track->source);
        });
        if (isAlone || before == containers.end())
            containers.push_back({{track}, track->wrapping});
        else
            before->tracks.push_back(track);
    }
    std::stable_sort(containers.begin(), containers.end(), [](auto const& a, auto const& b) {
        return isLeader(*a.tracks.front()) > isLeader(*b.tracks.front());
    });
    return containers;
}

void WrapPlan::arrange(Items const& items, WrapOptions const& options) {
    if (items.size() > 1 && !layout_.isPlaylist() && layout_.pattern().packages != 3)
        throw CannotWrap("inputs that play one after the other make op2a, op2b, op3a or op3b, alternatives "
                         "op1c: --pattern says which");
    if (options.plays.size() > items.size())
        throw CannotWrap("--play: there are more parts than inputs between commas to play");
    WrapFile file{options.output, {}};
    for (auto const& item : items) {
        file.items.push_back(containersOf(item));
        starts_.push_back(startTimecode(layout_, timecodeRate_, item));
        endTogether(item, file.items.back());
        if (layout_.isOneFilePerTrack())
            continue;
        if (file.items.back().size() > 1 && layout_.pattern().packages != 2)
            throw CannotWrap(
                "clip wrapping puts each track into a container of its own, which is op1b, op2b or "
                "op3b: --pattern says which");
    }
    if (!layout_.isOneFilePerTrack())
        files_.push_back(std::move(file));
    else
        for (auto const& container : file.items.front())
            files_.push_back({nameWithTrack(options.output, container.tracks.front()->name), {{container}}});
}

void WrapPlan::checkContainers() const {
    for (auto const& file : files_)
        for (auto const& item : file.items)
            for (auto const& container : item)
                if (auto const& tracks = container.tracks;
                    std::count_if(tracks.begin(), tracks.end(), isReordered) > 1)
                    throw CannotWrap("a container takes one stream with B pictures, others need their own: "
                                     "--pattern op1b");
}

std::uint64_t WrapPlan::bytesTaken() const {
    std::uint64_t sum = 0;
    for (auto const& track : tracks_)
        sum += track.tap->bytes();
    return sum;
}

} // namespace Zelm
