#include "MXF/Zelm/GenericContainer/MetadataBuilder.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"

#include <algorithm>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace Metadata::Structural;

/// A number of edit units, counted at another rate.
std::int64_t converted(std::int64_t duration, Templates::Rational<int> const& from,
                       Templates::Rational<int> const& to) {
    return from == to ? duration : Utils::secondsToFrames(Utils::framesToSeconds(duration, from), to);
}

bool hasValue(Templates::Rational<int> const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

void setDuration(TimelineTrack& track, std::int64_t duration, Templates::Rational<int> const& editRate) {
    auto const* const sequence = track.sequence();
    auto const* const rate = track.editRate();
    if (rate == nullptr || !hasValue(rate->value()) || sequence == nullptr ||
        sequence->structuralComponents().size() != 1)
        return;
    setTrackLength(track, static_cast<std::uint64_t>(converted(duration, editRate, rate->value())));
}

void setDuration(FileDescriptor& descriptor, std::int64_t duration,
                 Templates::Rational<int> const& editRate) {
    auto const* const rate = descriptor.sampleRate();
    if (rate != nullptr && hasValue(rate->value()))
        descriptor.containerDuration(Types::Length(converted(duration, editRate, rate->value())));
}

} // namespace

void MetadataBuilder::create(EssenceAnalyzer& analyzer, unsigned int trackNumber, unsigned int trackID) {
    if (!analyzer.setMetadata(*metadata_, package_, trackNumber, trackID))
        throw Exceptions::InvalidStructure("An analyzer could not describe its essence in the metadata");
    if (auto* const descriptor = fileDescriptorForTrack(*package_, trackID))
        analyzer.customizeDescriptor(*descriptor);
    trackIDs_.push_back(trackID);
}

void MetadataBuilder::finish(std::int64_t duration, Templates::Rational<int> const& editRate) {
    for (auto* const track : package_->tracks()) {
        auto* const timeline = dynamic_cast<TimelineTrack*>(track);
        auto const* const id = track->trackID();
        if (timeline == nullptr || id == nullptr ||
            std::find(trackIDs_.begin(), trackIDs_.end(), id->value()) == trackIDs_.end())
            continue;
        setDuration(*timeline, duration, editRate);
        if (auto* const descriptor = fileDescriptorForTrack(*package_, id->value()))
            setDuration(*descriptor, duration, editRate);
    }
    if (auto* const several = dynamic_cast<MultipleDescriptor*>(package_->descriptor()))
        setDuration(*several, duration, editRate);
}

} // namespace MXF::Zelm::GenericContainer
