/// The timecode track of a file package, kept in step with the timecode of the essence.
#pragma once

#include "MXF/Zelm/GenericContainer/MetadataBuilder.h"
#include "MXF/Zelm/Utils/TimeCode.h"

namespace MXF::Zelm::Metadata::Structural {
class Sequence;
class TimecodeComponent;
} // namespace MXF::Zelm::Metadata::Structural

namespace MXF::Zelm::GenericContainer {

/// A component runs as long as timecode counts on; where it jumps, another one begins. Refers to the sets of
/// the package, which outlive it.
class TimecodeTrack {
public:
    /// Components of a track at most, as many as references fit in an item. A jump behind the last one is
    /// passed over.
    static constexpr std::size_t mostComponents = 4095;

    /// A timecode track that the package has already is taken over when it has no components, or a single one
    /// of timecode, and is left alone otherwise.
    TimecodeTrack(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage& package,
                  Templates::Rational<int> const& editRate);

    /// The timecode of content package `number`, which is not below that of the call before. Undefined ones
    /// are taken to be the predicted ones.
    void checkTimeCode(std::int64_t number, Utils::TimeCode const& timecode);

    /// Sets durations: there were `duration` content packages.
    void finish(std::int64_t duration);

private:
    void createTimecodeTrack();
    void adoptTimecodeTrack(Metadata::Structural::Sequence& sequence);
    void addTimecodeComponent(std::int64_t number, Utils::TimeCode const& timecode);
    void updateTimecodeComponent(Utils::TimeCode const& timecode);
    void updateTimecodeSequenceDuration(std::int64_t duration);
    void storeTimecodePrediction(std::int64_t number, Utils::TimeCode const& timecode);
    std::int64_t framesIn(Utils::TimeBase const& base, std::int64_t packages) const;
    Utils::TimeCode prediction(std::int64_t number) const;
    bool constantTimecode(std::int64_t number, Utils::TimeCode const& timecode) const;

    Metadata::PartitionMetadata* metadata_;
    Metadata::Structural::SourcePackage* package_;
    Templates::Rational<int> editRate_;
    std::int64_t roundedRate_;

    Metadata::Structural::Sequence* sequence_ = nullptr; // null until there is a track
    Metadata::Structural::TimecodeComponent* component_ = nullptr;
    std::size_t components_ = 0;
    std::int64_t start_ = 0;   // the package with which the component begins
    Utils::TimeCode timecode_; // its timecode
    bool isLeftAlone_ = false;
};

} // namespace MXF::Zelm::GenericContainer
