#include "AncillaryWalk.h"

#include "MetadataChoice.h"
#include "PartitionSurvey.h"
#include "Progress.h"
#include "Text.h"

#include <MXF/Zelm/GenericContainer/S436M/ANCPacket.h>
#include <MXF/Zelm/MXFIO/EssenceReader.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using namespace GenericContainer::S436M;
using GenericContainer::ElementKey;

namespace {

/// No element of packets comes near this; it may be larger in a broken file.
constexpr std::uint64_t largestElement = std::uint64_t{16} << 20;

struct Interface {
    std::uint32_t height; ///< of the picture
    unsigned lines;       ///< with blanking
};

constexpr Interface interfaces[] = {
    {480, 525}, {486, 525},   {512, 525},   {576, 625},   {608, 625},
    {720, 750}, {1080, 1125}, {1088, 1125}, {2160, 2250}, {4320, 4500},
};

std::optional<std::uint32_t> pictureHeight(DescriptorInfo const& descriptor) {
    if (descriptor.picture)
        return descriptor.picture->storedHeight;
    for (auto const& each : descriptor.descriptors)
        if (each.picture)
            return each.picture->storedHeight;
    return std::nullopt;
}

/// Lines of the interface that the pictures of the file go with.
unsigned linesOf(FileInfo const& info) {
    for (auto const& package : info.packages)
        if (auto const height = package.descriptor ? pictureHeight(*package.descriptor) : std::nullopt)
            for (auto const& row : interfaces)
                if (row.height == *height)
                    return row.lines;
    return mostLines;
}

std::optional<ElementKind> kindOfNumber(std::uint32_t number) {
    for (auto const& [kind, fixed] :
         {std::pair(ElementKind::VBI, vbiTrackNumber), {ElementKind::ANC, ancTrackNumber}})
        if (ElementKey(number).itemType() == ElementKey::Data &&
            ElementKey(number).elementType() == ElementKey(fixed).elementType())
            return kind;
    return std::nullopt;
}

/// By the label, whatever its version (byte 7), or by the number.
std::optional<ElementKind> kindOf(MXFIO::EssenceTrack const& track) {
    auto const* const label = track.descriptor != nullptr ? track.descriptor->essenceContainer() : nullptr;
    for (auto const& [kind, container] :
         {std::pair(ElementKind::VBI, vbiContainer), {ElementKind::ANC, ancContainer}})
        if (label != nullptr &&
            std::equal(container.rawBuffer() + 8, container.rawBuffer() + 14, label->rawBuffer() + 8))
            return kind;
    return kindOfNumber(track.trackNumber);
}

AncillaryTrack makeTrack(ElementKind kind, std::uint32_t bodySID, MXFIO::EssenceTrack const& track,
                         FileInfo const& info) {
    AncillaryTrack made{kind,         bodySID,        track.trackNumber,
                        std::nullopt, track.editRate, UnitTimecodes(info, track.editRate, track.origin)};
    if (track.track != nullptr)
        made.id = track.trackID;
    return made;
}

} // namespace

/// An essence container with tracks of packets.
struct AncillaryWalk::Container {
    MXFIO::EssenceContainer container;
    std::vector<AncillaryTrack*> tracks = {};
    UnitRange range = everyUnit;

    AncillaryTrack* find(ElementKey key) const {
        for (auto* const track : tracks)
            if (key.isSameElement(ElementKey(track->number)))
                return track;
        return nullptr;
    }
};

std::optional<std::string> AncillaryTrack::timecodeText(std::int64_t unit) const {
    auto const timecode = timecodes.at(unit);
    return timecode.isDefined() ? std::optional(Platform::toUtf8(timecode.toString())) : std::nullopt;
}

std::optional<std::string> AncillaryTrack::editRateText() const {
    if (editRate.denominator == 0)
        return std::nullopt;
    return std::to_string(editRate.numerator) + "/" + std::to_string(editRate.denominator);
}

AncillaryWalk::AncillaryWalk(Input& input) : input_(input), lines_(mostLines) {
    auto const info = gatherInfo(input);
    lines_ = linesOf(info);
    MXFIO::Partition::MetadataPtr metadata;
    try {
        metadata = chooseFinal(input, true).partition->metadata();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        for (auto const& fault : info.faults) // which holds the same
            faults_.push_back({fault.message, fault.offset.value_or(0)});
    }
    findTracks(info, metadata);
    if (!metadata)
        findBodies(info);
}

AncillaryWalk::~AncillaryWalk() = default;

void AncillaryWalk::findTracks(FileInfo const& info, MXFIO::Partition::MetadataPtr const& metadata) {
    for (auto& container :
         metadata ? MXFIO::essenceContainers(metadata) : Templates::vector<MXFIO::EssenceContainer>()) {
        Container found{container};
        for (auto const& track : container.tracks)
            if (auto const kind = kindOf(track); kind && !found.find(ElementKey(track.trackNumber))) {
                tracks_.push_back(
                    std::make_unique<AncillaryTrack>(makeTrack(*kind, container.bodySID, track, info)));
                found.tracks.push_back(tracks_.back().get());
            }
        if (!found.tracks.empty())
            containers_.push_back(std::move(found));
    }
}

/// Without metadata: every container may have elements with the registered keys.
void AncillaryWalk::findBodies(FileInfo const& info) {
    auto const survey = PartitionSurveyor(input_, false).survey();
    std::set<std::uint32_t> bodySIDs;
    for (auto const& partition : survey.partitions)
        if (partition.pack().bodySID() != 0 && !partition.partition->isGenericStream())
            bodySIDs.insert(partition.pack().bodySID());
    for (auto const bodySID : bodySIDs) {
        Container found{{.bodySID = bodySID}};
        for (auto const number : {vbiTrackNumber, ancTrackNumber}) {
            tracks_.push_back(std::make_unique<AncillaryTrack>(
                makeTrack(*kindOfNumber(number), bodySID, {.trackNumber = number}, info)));
            found.tracks.push_back(tracks_.back().get());
        }
        containers_.push_back(std::move(found));
    }
}

void AncillaryWalk::select(RangeChoice const& range) {
    for (auto& container : containers_)
        container.range = container.tracks.front()->timecodes.units(range);
}

void AncillaryWalk::run(AncillaryUse& use) {
    for (auto const& track : tracks_)
        use.track(*track);
    for (auto const& container : containers_)
        try {
            runContainer(container, use);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            keep(failure);
        }
}

void AncillaryWalk::runContainer(Container const& container, AncillaryUse& use) {
    MXFIO::EssenceOptions options;
    options.largestElement = largestElement;
    for (auto const* const track : container.tracks)
        options.trackNumbers.push_back(track->number);
    MXFIO::EssenceReader essence(input_.reader, container.container, std::move(options));
    essence.seek(std::max<std::int64_t>(container.range.first, 0));
    Progress progress("reading packets", input_.source.size());
    MXFIO::EssenceUnit unit;
    while (essence.position() < container.range.last && essence.next(unit)) {
        progress.at(unit.package.offset);
        for (auto const& element : unit.package.elements)
            if (auto const* const track = container.find(element.elementKey()))
                takeElement(*track, unit.position, element, use);
    }
}

void AncillaryWalk::takeElement(AncillaryTrack const& track, std::int64_t unit,
                                GenericContainer::Element const& element, AncillaryUse& use) const {
    use.element(track, unit);
    if (element.data.size() != element.length)
        return use.fault(
            track, unit,
            {"an element of " + grouped(element.length) + " bytes is passed over", element.offset});
    auto const read = readFrameElement(track.kind, element.data, lines_);
    for (auto const& found : read.packets)
        use.packet({track, unit, element.valueOffset() + found.offset, found,
                    track.isANC() ? readANC(found.stored) : Essence::Ancillary::ReadPacket()});
    if (element.length < 2)
        use.fault(track, unit, {"an element is too short for the number of its packets", element.offset});
    else if (read.packets.size() < read.packetCount)
        use.fault(track, unit, {"an element ends before its last packet", element.offset});
    else if (read.bytesBehind != 0)
        use.fault(track, unit, {"an element has bytes behind its last packet", element.offset});
}

void AncillaryWalk::keep(Exceptions::BaseException const& failure) {
    faults_.push_back({failure.message(), failure.offset().value_or(0)});
}

} // namespace Zelm
