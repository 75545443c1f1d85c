#include "Frameworks.h"

#include "SetValues.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Metadata/Structural/Sequence.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Metadata/Structural/Track.h>

#include <unordered_set>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;
namespace Structural = Metadata::Structural;

namespace {

using SetsSeen = std::unordered_set<MetadataSet const*>;

std::vector<std::uint32_t> numbers(Types::Batch const* batch) {
    std::vector<std::uint32_t> found;
    if (batch != nullptr && batch->subType() == Types::Identifiers::UInt32)
        for (std::size_t i = 0; i < batch->count(); ++i)
            found.push_back(batch->at<Types::UInt32>(i).value());
    return found;
}

/// The sets that `set` owns.
std::vector<MetadataSet const*> children(MetadataSet const& set) {
    std::vector<MetadataSet const*> found;
    for (auto const& element : set) {
        auto const* const holder = dynamic_cast<Metadata::ReferenceHolder const*>(element.get());
        if (holder != nullptr && holder->isStrong())
            for (auto const* const child : set.referencedSets(*element->universalLabel()))
                found.push_back(child);
    }
    return found;
}

/// Marks a set and all that it owns.
void markBelow(MetadataSet const& top, SetsSeen& seen) {
    std::vector<MetadataSet const*> open{&top};
    while (!open.empty()) {
        auto const* const set = open.back();
        open.pop_back();
        if (!seen.insert(set).second)
            continue;
        auto const below = children(*set);
        open.insert(open.end(), below.begin(), below.end());
    }
}

/// Finds the places of all frameworks, package by package.
class Finder {
public:
    Finder(std::vector<FrameworkPlace>& places, SetsSeen& reached) : places_(places), reached_(reached) {}

    void takePackage(Structural::GenericPackage const& package) {
        for (auto const* const track : package.tracks())
            if (auto const* const sequence = track->sequence())
                takeSequence(package, *track, *sequence);
    }

private:
    void takeSequence(Structural::GenericPackage const& package, Structural::Track const& track,
                      Structural::Sequence const& sequence) {
        FrameworkPlace place;
        place.package = &package;
        place.track = &track;
        auto const* const events = dynamic_cast<Structural::EventTrack const*>(&track);
        if (auto const* const timeline = dynamic_cast<Structural::TimelineTrack const*>(&track)) {
            place.editRate = rational(timeline->editRate());
            place.position = 0;
        } else if (events != nullptr) {
            place.editRate = rational(events->eventEditRate());
        }
        // Fillers, in which nothing is said, have no class of their own.
        for (auto const* const component :
             sequence.referencedSets(Structural::Properties::structuralComponents.label)) {
            if (auto const* const segment = dynamic_cast<Structural::DMSegment const*>(component)) {
                if (events != nullptr)
                    place.position = position(segment->eventStartPosition());
                takeSegment(*segment, place);
            }
            if (events == nullptr)
                advance(place.position,
                        known(component->value<Types::Length>(Structural::Properties::duration.label)));
        }
    }

    void takeSegment(Structural::DMSegment const& segment, FrameworkPlace place) {
        place.segment = &segment;
        place.framework = segment.dmFramework();
        place.duration = known(segment.duration());
        place.describedTracks = numbers(segment.trackIDs());
        if (place.framework != nullptr)
            markBelow(*place.framework, reached_);
        places_.push_back(std::move(place));
    }

    /// Where the next segment of a timeline begins: unknown behind one of unknown or impossible length.
    static void advance(std::optional<std::int64_t>& position, std::optional<std::int64_t> duration) {
        constexpr std::int64_t furthest = std::int64_t{1} << 62;
        if (!position || !duration || *duration < 0 || *duration > furthest - *position)
            position.reset();
        else
            *position += *duration;
    }

    std::vector<FrameworkPlace>& places_;
    SetsSeen& reached_;
};

/// Descriptive sets that were not reached: first those that no other set owns, then what stands in circles.
std::vector<MetadataSet const*> unplacedSets(Metadata::PartitionMetadata const& metadata, SetsSeen reached) {
    std::vector<MetadataSet const*> left;
    SetsSeen owned;
    for (auto const& [key, set] : metadata)
        if (KLV::isDescriptiveMetadataSet(key) && !reached.contains(set)) {
            left.push_back(set);
            for (auto const* const child : children(*set))
                if (child != set)
                    owned.insert(child);
        }
    std::vector<MetadataSet const*> tops;
    for (bool const isOwned : {false, true})
        for (auto const* const set : left)
            if (owned.contains(set) == isOwned && !reached.contains(set)) {
                tops.push_back(set);
                markBelow(*set, reached);
            }
    return tops;
}

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }

} // namespace

FrameworkReport gatherFrameworks(Metadata::PartitionMetadata const& metadata) {
    FrameworkReport report;
    SetsSeen reached;
    Finder finder(report.places, reached);
    std::vector<MetadataSet*> packages;
    try {
        packages = metadata.packages();
    } catch (Exceptions::BaseException const&) {
        // Without packages nothing is placed; the sets are listed all the same.
    }
    for (auto const* const set : packages)
        if (auto const* const package = dynamic_cast<Structural::GenericPackage const*>(set))
            finder.takePackage(*package);
    report.unplaced = unplacedSets(metadata, std::move(reached));
    return report;
}

std::string words(std::string const& symbol) {
    std::string text;
    for (std::size_t i = 0; i < symbol.size(); ++i) {
        char const c = symbol[i];
        bool const beginsWord = isUpper(c) && i != 0 &&
                                (isLower(symbol[i - 1]) ||
                                 (isUpper(symbol[i - 1]) && i + 1 < symbol.size() && isLower(symbol[i + 1])));
        if (beginsWord)
            text += ' ';
        text += c == '_' ? ' ' : i == 0 && isLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return text;
}

} // namespace Zelm
