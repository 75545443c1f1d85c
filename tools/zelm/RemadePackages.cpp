#include "RemadePackages.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Multiplexer/SystemItemGenerator.h>
#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::Wrapping;
using GenericContainer::Multiplexer::SystemItemGenerator;
namespace Structural = Metadata::Structural;

namespace {

Structural::SourcePackage* const noPackage = nullptr;

Utils::TimeCode startOf(Structural::GenericPackage const& package) {
    try {
        return Structural::startTimecode(package);
    } catch (Exceptions::InvalidStructure const&) {
        return {};
    }
}

/// Whether a track plays that of a package, and nothing else.
bool plays(Structural::TimelineTrack const& track, Types::UMID32 const& package, std::uint32_t trackID) {
    auto const clips = clipsOf(track);
    return !clips.empty() && std::all_of(clips.begin(), clips.end(), [&](auto const* clip) {
        return clip->sourcePackageID() != nullptr && *clip->sourcePackageID() == package &&
               clip->sourceTrackID() != nullptr && *clip->sourceTrackID() == trackID;
    });
}

void changeRate(Structural::TimelineTrack& track, RemadePackages::Rate const& rate) {
    auto const old = editRateOf(track);
    auto const clips = clipsOf(track);
    for (auto* const clip : clips) {
        if (clip->startPosition() != nullptr)
            clip->startPosition(Types::Position(inRate(clip->startPosition()->value(), old, rate)));
        if (auto const length = lengthOf(*clip); length >= 0 && clips.size() > 1)
            setLength(*clip, inRate(length, old, rate));
    }
    if (track.origin() != nullptr)
        track.origin(Types::Position(inRate(track.origin()->value(), old, rate)));
    track.editRate(Types::Rational(rate));
    track.sequence()->duration(Types::Length(-1));
    setLength(track, -1);
}

/// A material track does not count in finer units than what it plays has.
void coarsenMaterial(Structural::SourcePackage const& package, std::uint32_t trackID,
                     RemadePackages::Rate const& old, RemadePackages::Rate const& rate) {
    auto const* const metadata = dynamic_cast<Metadata::PartitionMetadata const*>(package.owner());
    if (metadata == nullptr || package.packageUID() == nullptr || rate.toDouble() >= old.toDouble())
        return;
    for (auto* const set : metadata->packages())
        if (auto const* const material = dynamic_cast<Structural::MaterialPackage*>(set))
            for (auto* const each : material->tracks())
                if (auto* const track = dynamic_cast<Structural::TimelineTrack*>(each);
                    track != nullptr && track->sequence() != nullptr && editRateOf(*track) == old &&
                    plays(*track, *package.packageUID(), trackID))
                    changeRate(*track, rate);
}

} // namespace

RemadePackages::RemadePackages(ContainerCopy& copy, Rate const& rate, UnitRange const& units)
    : copy_(copy), rate_(rate), units_(units), mux_(noPackage, {}, rate) {}

void RemadePackages::add(CopiedEssence const& essence) {
    auto& reader = essence.input->reader;
    auto const present = MXFIO::EssenceReader(reader, *essence.container).wrapping();
    MXFIO::PassThroughOptions options{.first = units_.first, .end = units_.last};
    if (present == Wrapping::Clip) {
        options.wrapping = Wrapping::Frame;
        options.editRate = rate_;
    } else if (essence.container->editRate() != rate_) {
        throw Exceptions::InvalidValue("the edit units of the containers are not equally long");
    }
    auto const input = std::make_shared<MXFIO::PassThroughReader>(reader, *essence.container, options);
    bool const isFirst = streams_.empty();
    for (auto const& track : essence.tracks) {
        auto analyzer = std::make_shared<MXFIO::PassThroughAnalyzer>(input, track.source->trackNumber);
        auto& count = counts_[analyzer->essenceAnalyzerType()];
        auto const own = GenericContainer::ElementKey(track.source->trackNumber).elementNumber();
        bool const keepsNumber = isFirst && copy_.beside.empty() && own < 128;
        streams_.push_back({std::move(analyzer), track, keepsNumber ? own : count});
        ++count;
        mux_.addAnalyzer(streams_.back().analyzer, false, {0, 1}, streams_.back().number);
    }
}

/// The one that all streams share, else that of several.
Types::UniversalLabel RemadePackages::label() const {
    auto const first = streams_.front().analyzer->universalLabel();
    bool const isShared = std::all_of(streams_.begin(), streams_.end(), [&](auto const& stream) {
        return stream.analyzer->universalLabel() == first;
    });
    return isShared ? first : Types::UniversalLabel(Structural::EssenceContainerLabels::multipleWrappings);
}

Utils::TimeCode RemadePackages::startTimecode(Metadata::PartitionMetadata const& metadata) const {
    auto start = startOf(*copy_.package);
    for (auto const* const set : metadata.packages())
        if (auto const* const package = dynamic_cast<Structural::MaterialPackage const*>(set);
            package != nullptr && !start.isDefined())
            start = startOf(*package);
    auto const before = inRate(copy_.essence.origin(), copy_.container().editRate(), rate_);
    return start.isDefined() ? start + (units_.first - before) : start;
}

void RemadePackages::addSystemItem(Metadata::PartitionMetadata const& metadata) {
    mux_.addAnalyzer(std::make_shared<SystemItemGenerator>(rate_, startTimecode(metadata), label()), false,
                     {0, 1});
}

void RemadePackages::commit(std::uint32_t kagSize) {
    mux_.kagSize(std::max<std::uint32_t>(kagSize, 1));
    copy_.source = mux_.commit();
    copy_.rate = rate_;
    for (auto const& stream : streams_)
        describeRemade(*copy_.package, stream.track.trackID, *stream.analyzer,
                       {counts_[stream.analyzer->essenceAnalyzerType()], stream.number}, rate_);
    for (auto* const descriptor : descriptorsOf(*copy_.package))
        if (dynamic_cast<Structural::MultipleDescriptor*>(descriptor) != nullptr) {
            descriptor->essenceContainer(copy_.source->essenceContainerUL());
            descriptor->sampleRate(Types::Rational(rate_));
        }
    findOrigin(copy_);
    copy_.knowsUnits = [] { return true; };
    copy_.units = [ruling = streams_.front().analyzer] {
        return static_cast<std::int64_t>(ruling->unitsGiven());
    };
}

void describeRemade(Structural::SourcePackage& package, std::uint32_t trackID,
                    GenericContainer::EssenceAnalyzer const& analyzer, ElementPlace place,
                    RemadePackages::Rate const& rate) {
    auto* const track = timelineTrack(package, trackID);
    if (track == nullptr)
        return;
    track->trackNumber(Types::UInt32(Structural::makeTrackNumber(
        analyzer.itemTypeIdentifier(), place.count, analyzer.essenceElementType(), place.number)));
    auto* const descriptor = Structural::fileDescriptorForTrack(package, trackID);
    auto const old = editRateOf(*track);
    if (descriptor != nullptr)
        descriptor->essenceContainer(analyzer.universalLabel());
    if (old == rate)
        return;
    track->editRate(Types::Rational(rate));
    if (track->origin() != nullptr && old.isKnown())
        track->origin(Types::Position(inRate(track->origin()->value(), old, rate)));
    setLength(*track, -1);
    coarsenMaterial(package, trackID, old, rate);
    if (descriptor != nullptr) {
        descriptor->sampleRate(Types::Rational(rate));
        descriptor->containerDuration(Types::Length(-1));
    }
}

void findOrigin(ContainerCopy& copy) {
    auto const* const track = copy.essence.tracks.empty()
                                  ? nullptr
                                  : timelineTrack(*copy.package, copy.essence.tracks.front().trackID);
    copy.origin = track != nullptr && track->origin() != nullptr ? track->origin()->value() : 0;
}

} // namespace Zelm
