/// What analyzers have in common, so that one is a small class:
///
///     class Subtitles : public BasicAnalyzer<DataAnalyzer> {
///         universalLabel, itemTypeIdentifier, essenceElementType      what it is in the container
///         describe                                                    its descriptor
///         hasMore, read                                               its edit units
///     };
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"

#include <string>

namespace MXF::Zelm::GenericContainer {

/// Throws Exceptions::InvalidStructure: a track has a descriptor of another class than its analyzer makes.
[[noreturn]] MXFZELM_EXPORT void failDescriptorClass(Metadata::Structural::FileDescriptor const& present);

/// The descriptor that `present` points at, a new one for null. For `describe`. Throws
/// Exceptions::InvalidStructure when it is of another class.
template <class Descriptor>
Descriptor& presentOrNew(Metadata::PartitionMetadata& metadata,
                         Metadata::Structural::FileDescriptor* present) {
    if (present == nullptr)
        return Metadata::Structural::create<Descriptor>(metadata);
    auto* const typed = dynamic_cast<Descriptor*>(present);
    if (typed == nullptr)
        failDescriptorClass(*present);
    return *typed;
}

/// The track of an analyzer in the header metadata. The sets belong to the metadata, which must live until
/// `finish`.
class MXFZELM_EXPORT AnalyzerTrack : public Platform::Allocated {
public:
    struct Place {
        Metadata::PartitionMetadata& metadata;
        Metadata::Structural::SourcePackage* package; ///< null when there is none
        unsigned int trackNumber;
        unsigned int trackID;
    };

    /// The descriptor of the track that `place` names; null when there is none yet.
    static Metadata::Structural::FileDescriptor* descriptorAt(Place const& place);

    /// Makes the track, or brings the one that is there up to date. `descriptor` needs label and sample rate.
    void open(Place const& place, EssenceAnalyzer const& analyzer,
              Metadata::Structural::FileDescriptor& descriptor);

    /// Sets the lengths of track and descriptor, in edit units of both.
    void finish(std::uint64_t length) const;

    /// Null before `open`.
    Metadata::Structural::FileDescriptor* descriptor() const { return descriptor_; }

private:
    Metadata::Structural::TimelineTrack* track_ = nullptr;
    Metadata::Structural::FileDescriptor* descriptor_ = nullptr;
};

/// Edit units that begin within a time, at most; the greatest number when the time is not known.
MXFZELM_EXPORT std::uint64_t editUnitsWithin(Templates::Rational<int> const& seconds,
                                             Templates::Rational<int> const& editRate);

/// `Kind` is PictureAnalyzer, SoundAnalyzer, DataAnalyzer or CompoundAnalyzer. Essence of variable size
/// without temporal dependencies, at the rate that was set, until an override says otherwise. The track and
/// its descriptor, the time limit and the count of edit units are seen to.
template <class Kind>
class BasicAnalyzer : public Kind {
public:
    static constexpr std::uint64_t defaultToSkip = std::uint64_t{1} << 20;

    Templates::Rational<int> editRate() const override { return editRate_; }
    void editRate(Templates::Rational<int> const& rate) override { editRate_ = rate; }
    std::uint64_t maximumToSkip() const override { return maximumToSkip_; }
    void maximumToSkip(std::uint64_t bytes) override { maximumToSkip_ = bytes; }
    bool preload() override { return true; }

    bool setMetadata(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage* package,
                     unsigned int trackNumber, unsigned int trackID) override {
        AnalyzerTrack::Place const place{metadata, package, trackNumber, trackID};
        if (package == nullptr)
            return false;
        auto& descriptor = describe(metadata, AnalyzerTrack::descriptorAt(place));
        this->customizeDescriptor(descriptor);
        track_.open(place, *this, descriptor);
        return true;
    }

    bool nextEditUnit(EditUnit& unit) override {
        unit.clear();
        if (done())
            return false;
        std::uint64_t const units = read(unit);
        given_ += units;
        if (units != 0 && !unit.duration.isKnown())
            unit.duration = {std::int64_t{editRate().denominator} * static_cast<std::int64_t>(units),
                             editRate().numerator};
        return units != 0;
    }

    /// False when the essence is not whole; `fault` then says why.
    bool finalize() override {
        if (auto* const descriptor = track_.descriptor()) {
            complete(*descriptor);
            this->customizeDescriptor(*descriptor);
            track_.finish(given_);
        }
        return fault().empty();
    }

    bool isCBE() const override { return false; }
    void boundedEditUnitSize(int bytes) override { boundedSize_ = bytes; }
    unsigned int boundedEditUnitSize() const override {
        return boundedSize_ > 0 ? static_cast<unsigned int>(boundedSize_) : 0;
    }
    bool containsTemporalDependencies() const override { return false; }
    Utils::TimeCode currentTimeCode() const override { return {}; }
    unsigned int requiredKAGSize() const override { return 1; }
    bool done() const override { return given_ >= limit() || !hasMore(); }

    /// Edit units given so far.
    std::uint64_t unitsGiven() const { return given_; }

    /// What is amiss with the essence, such as an end amid a picture; empty when nothing is.
    virtual std::string fault() const { return {}; }

protected:
    /// Fills the descriptor, a new one or the one of an earlier call, with label and sample rate at least.
    virtual Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                           Metadata::Structural::FileDescriptor* present) = 0;

    /// Adds what is known only at the end.
    virtual void complete(Metadata::Structural::FileDescriptor& /*descriptor*/) {}

    /// Whether `read` will give an edit unit.
    virtual bool hasMore() const = 0;

    /// Fills an edit unit, which is clear. Returns how many it holds: 1, more where the essence allows to
    /// hand out several at once, 0 at the end.
    virtual std::uint64_t read(EditUnit& unit) = 0;

    /// Edit units that the time limit allows.
    std::uint64_t limit() const { return editUnitsWithin(this->getDuration(), editRate()); }

private:
    Templates::Rational<int> editRate_ = {};
    std::uint64_t maximumToSkip_ = defaultToSkip;
    int boundedSize_ = 0;
    std::uint64_t given_ = 0;
    AnalyzerTrack track_;
};

} // namespace MXF::Zelm::GenericContainer
