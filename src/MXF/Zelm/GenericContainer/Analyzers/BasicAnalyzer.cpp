#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"

#include <limits>

namespace MXF::Zelm::GenericContainer {

namespace {

namespace Structural = Metadata::Structural;

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

Types::UniversalLabel dataDefinitionOf(EssenceAnalyzer const& analyzer) {
    switch (analyzer.essenceAnalyzerType()) {
    case EssenceAnalyzer::SoundAnalyzer:
        return Structural::DataDefinitions::sound;
    case EssenceAnalyzer::DataAnalyzer:
        return Structural::DataDefinitions::data;
    default: // a compound element has a picture track
        return Structural::DataDefinitions::picture;
    }
}

Structural::TimelineTrack* trackOf(Structural::SourcePackage const& package, unsigned int trackID) {
    for (auto* const track : package.tracks())
        if (track->trackID() != nullptr && *track->trackID() == trackID)
            return dynamic_cast<Structural::TimelineTrack*>(track);
    return nullptr;
}

} // namespace

void failDescriptorClass(Structural::FileDescriptor const& present) {
    throw Exceptions::InvalidStructure(u"The track has a descriptor of another class, " + present.name());
}

Structural::FileDescriptor* AnalyzerTrack::descriptorAt(Place const& place) {
    return place.package != nullptr && trackOf(*place.package, place.trackID) != nullptr
               ? Structural::fileDescriptorForTrack(*place.package, place.trackID)
               : nullptr;
}

void AnalyzerTrack::open(Place const& place, EssenceAnalyzer const& analyzer,
                         Structural::FileDescriptor& descriptor) {
    descriptor_ = &descriptor;
    track_ = trackOf(*place.package, place.trackID);
    if (track_ == nullptr) {
        track_ = &Structural::addEssenceTrack(place.metadata, *place.package, descriptor,
                                              {.dataDefinition = dataDefinitionOf(analyzer),
                                               .editRate = analyzer.editRate(),
                                               .trackNumber = place.trackNumber,
                                               .trackID = place.trackID});
        return;
    }
    track_->trackNumber(Types::UInt32(place.trackNumber));
    track_->editRate(Types::Rational(analyzer.editRate()));
}

void AnalyzerTrack::finish(std::uint64_t length) const {
    descriptor_->containerDuration(Types::Length(static_cast<std::int64_t>(length)));
    auto const* const sequence = track_->sequence();
    if (sequence != nullptr && sequence->structuralComponents().size() == 1)
        Structural::setTrackLength(*track_, length);
}

std::uint64_t editUnitsWithin(Templates::Rational<int> const& seconds,
                              Templates::Rational<int> const& editRate) {
    if (seconds.denominator <= 0 || editRate.numerator <= 0 || editRate.denominator <= 0)
        return unlimited;
    if (seconds.numerator <= 0)
        return 0;
    auto const product = [](int a, int b) {
        return static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b);
    };
    std::uint64_t const over = product(seconds.numerator, editRate.numerator);
    std::uint64_t const under = product(seconds.denominator, editRate.denominator);
    return over / under + (over % under != 0 ? 1 : 0);
}

} // namespace MXF::Zelm::GenericContainer
