#include "MXF/Zelm/GenericContainer/TimecodeTrack.h"

#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"

namespace MXF::Zelm::GenericContainer {

using namespace Metadata::Structural;

TimecodeTrack::TimecodeTrack(Metadata::PartitionMetadata& metadata, SourcePackage& package,
                             Templates::Rational<int> const& editRate)
    : metadata_(&metadata),
      package_(&package),
      editRate_(editRate),
      roundedRate_(Utils::TimeBase::ofEditRate(editRate, false).framesPerSecond()) {
    if (auto const* const track = getTimecodeTrack(package)) {
        isLeftAlone_ = true;
        if (auto* const sequence = track->sequence())
            adoptTimecodeTrack(*sequence);
    }
}

void TimecodeTrack::adoptTimecodeTrack(Sequence& sequence) {
    auto const components = sequence.structuralComponents();
    if (components.size() > 1)
        return;
    auto* const component =
        components.empty() ? nullptr : dynamic_cast<TimecodeComponent*>(components.front());
    if (!components.empty() && component == nullptr)
        return;
    sequence_ = &sequence;
    component_ = component;
    components_ = components.size();
    isLeftAlone_ = false;
}

void TimecodeTrack::createTimecodeTrack() {
    sequence_ =
        createTimelineTrack(*metadata_, *package_, DataDefinitions::timecode, 0, 0, editRate_).sequence();
    sequence_->duration(Types::Length(-1));
}

void TimecodeTrack::checkTimeCode(std::int64_t number, Utils::TimeCode const& timecode) {
    if (isLeftAlone_ || !timecode.isDefined() || constantTimecode(number, timecode))
        return;
    if (sequence_ == nullptr)
        createTimecodeTrack();
    if (component_ != nullptr && number == start_) {
        updateTimecodeComponent(timecode);
        storeTimecodePrediction(number, timecode);
    } else if (!timecode_.isDefined()) {
        // The packages before had none: they count up to this one.
        auto const first = timecode - framesIn(timecode.base(), number);
        if (component_ == nullptr)
            addTimecodeComponent(0, first);
        else
            updateTimecodeComponent(first);
        storeTimecodePrediction(0, first);
    } else if (components_ < mostComponents) {
        component_->duration(Types::Length(number - start_));
        addTimecodeComponent(number, timecode);
        storeTimecodePrediction(number, timecode);
    }
}

void TimecodeTrack::addTimecodeComponent(std::int64_t number, Utils::TimeCode const& timecode) {
    component_ = &create<TimecodeComponent>(*metadata_);
    component_->dataDefinition(DataDefinitions::timecode);
    component_->duration(Types::Length(-1));
    updateTimecodeComponent(timecode);
    sequence_->addStructuralComponent(*component_);
    start_ = number;
    ++components_;
}

void TimecodeTrack::updateTimecodeComponent(Utils::TimeCode const& timecode) {
    auto const& base = timecode.base();
    component_->startTimecode(Types::Position(timecode.frameCount()));
    component_->roundedTimecodeBase(Types::UInt16(static_cast<std::uint16_t>(base.framesPerSecond())));
    component_->dropFrame(Types::Boolean(base.dropFrame()));
}

void TimecodeTrack::storeTimecodePrediction(std::int64_t number, Utils::TimeCode const& timecode) {
    start_ = number;
    timecode_ = timecode;
}

/// Frames of a timecode base in a number of packages: at 50 packages a second, timecode of base 25 counts
/// every other one.
std::int64_t TimecodeTrack::framesIn(Utils::TimeBase const& base, std::int64_t packages) const {
    std::int64_t const frames = base.framesPerSecond();
    return frames == roundedRate_ ? packages : packages * frames / roundedRate_;
}

Utils::TimeCode TimecodeTrack::prediction(std::int64_t number) const {
    return timecode_ + framesIn(timecode_.base(), number - start_);
}

/// True when timecode counts on, or goes on counting from what the component began with.
bool TimecodeTrack::constantTimecode(std::int64_t number, Utils::TimeCode const& timecode) const {
    return timecode_.isDefined() && prediction(number) == timecode;
}

void TimecodeTrack::finish(std::int64_t duration) {
    if (sequence_ == nullptr || component_ == nullptr)
        return;
    component_->duration(Types::Length(duration - start_));
    updateTimecodeSequenceDuration(duration);
}

void TimecodeTrack::updateTimecodeSequenceDuration(std::int64_t duration) {
    sequence_->duration(Types::Length(duration));
}

} // namespace MXF::Zelm::GenericContainer
