#include "MXF/Zelm/MXFIO/RepairDurations.h"

#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

namespace MXF::Zelm::MXFIO {

using namespace Metadata::Structural;

namespace {

using Rate = Templates::Rational<int>;

bool isPositive(Rate const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

/// Units at one rate as whole units at another, absent where that cannot be told.
std::optional<std::int64_t> converted(std::int64_t units, Rate const& from, Rate const& to) {
    if (from == to)
        return units;
    if (!isPositive(from) || !isPositive(to))
        return std::nullopt;
    auto const over = std::int64_t{from.denominator} * to.numerator;
    auto const under = std::int64_t{from.numerator} * to.denominator;
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    // units * over / under, in two parts so that it does not overflow where the result does not.
    if (units / under > most / over / 2 || units % under > most / over)
        return std::nullopt;
    return units / under * over + units % under * over / under;
}

/// Sets durations of one kind of object.
class Setter {
public:
    explicit Setter(DurationRule rule) : rule_(rule) {}

    template <class Object>
    void set(Object&& object, std::int64_t duration) const {
        std::int64_t const old = durationOf(object);
        if (old != duration && (rule_ == DurationRule::All || old < 0 || old > duration))
            object.duration(Types::Length(duration));
    }

    /// The content of a track: one component, or a sequence of them.
    void setTrack(Track const& track, std::int64_t duration) const {
        auto* const segment = track.referencedSet(Properties::sequence.label);
        auto* const sequence = dynamic_cast<Sequence*>(segment);
        if (auto* const component = dynamic_cast<StructuralComponent*>(segment))
            set(*component, duration);
        if (sequence == nullptr)
            return;
        auto const components = sequence->structuralComponents();
        std::int64_t left = duration;
        for (std::size_t i = 0; i < components.size(); ++i) {
            std::int64_t const own = durationOf(*components[i]);
            bool const isLast = i + 1 == components.size();
            std::int64_t const now = isLast || own < 0 || own > left ? left : own;
            set(*components[i], now);
            left -= now;
        }
        set(*sequence, duration);
    }

private:
    template <class Object>
    static std::int64_t durationOf(Object const& object) {
        return object.duration() != nullptr ? object.duration()->value() : -1;
    }

    DurationRule rule_;
};

Rate rateOf(TimelineTrack const& track) {
    return track.editRate() != nullptr ? track.editRate()->value() : Rate{};
}

std::int64_t originOf(TimelineTrack const& track) {
    return track.origin() != nullptr ? std::max<std::int64_t>(track.origin()->value(), 0) : 0;
}

SourceClip const* soleClip(Track const& track) {
    auto* const segment = track.referencedSet(Properties::sequence.label);
    if (auto const* const clip = dynamic_cast<SourceClip const*>(segment))
        return clip;
    auto const* const sequence = dynamic_cast<Sequence const*>(segment);
    auto const components =
        sequence != nullptr ? sequence->structuralComponents() : Templates::vector<StructuralComponent*>();
    return components.size() == 1 ? dynamic_cast<SourceClip const*>(components.front()) : nullptr;
}

/// A length of time: units at a rate.
struct Extent {
    std::int64_t units = 0;
    Rate rate = {};
};

class DurationWork {
public:
    DurationWork(Templates::vector<EssenceContainer> const& containers,
                 Templates::vector<ContainerUnits> const& units, DurationRule rule)
        : containers_(containers), units_(units), setter_(rule) {}

    void run(ContentStorage const& storage) {
        for (auto const& [container, units] : units_)
            if (container->package != nullptr)
                setFilePackage(*container, units);
        for (auto const* const package : storage.packages())
            setOthers(*package);
    }

private:
    void setFilePackage(EssenceContainer const& container, std::int64_t units) {
        for (auto const* const track : container.package->tracks())
            if (auto const* const timeline = dynamic_cast<TimelineTrack const*>(track))
                if (auto const duration = converted(units, container.editRate(), rateOf(*timeline)))
                    setter_.setTrack(*track, std::max<std::int64_t>(*duration - originOf(*timeline), 0));
        setDescriptor(container.package->descriptor(), units, container.editRate());
    }

    void setDescriptor(GenericDescriptor* descriptor, std::int64_t units, Rate const& rate) {
        if (auto const* const multiple = dynamic_cast<MultipleDescriptor const*>(descriptor))
            for (auto* const part : multiple->fileDescriptors())
                setDescriptor(part, units, rate);
        auto* const file = dynamic_cast<FileDescriptor*>(descriptor);
        if (file == nullptr || file->containerDuration() == nullptr || file->sampleRate() == nullptr)
            return;
        if (auto const duration = converted(units, rate, file->sampleRate()->value()))
            setter_.set(ContainerDuration{*file}, *duration);
    }

    /// A descriptor with its duration under the name that the setter knows.
    struct ContainerDuration {
        FileDescriptor& descriptor;
        Types::Length const* duration() const { return descriptor.containerDuration(); }
        void duration(Types::Length const& value) const { descriptor.containerDuration(value); }
    };

    /// Packages whose tracks lead to the essence: the material package. Its timecode and other tracks are as
    /// long as the longest of these.
    void setOthers(GenericPackage const& package) {
        if (isFilePackage(package) || package.packageUID() == nullptr)
            return;
        std::optional<Extent> longest;
        Templates::vector<TimelineTrack const*> others;
        for (auto const* const track : package.tracks()) {
            auto const* const timeline = dynamic_cast<TimelineTrack const*>(track);
            if (timeline == nullptr)
                continue;
            auto const duration = lengthBySource(*timeline);
            if (!duration) {
                others.push_back(timeline);
                continue;
            }
            setter_.setTrack(*track, *duration);
            if (!longest || isLonger({*duration, rateOf(*timeline)}, *longest))
                longest = Extent{*duration, rateOf(*timeline)};
        }
        for (auto const* const track : others)
            if (longest)
                if (auto const duration = converted(longest->units, longest->rate, rateOf(*track)))
                    setter_.setTrack(*track, *duration);
    }

    static bool isLonger(Extent const& a, Extent const& b) {
        auto const seconds = [](Extent const& extent) {
            return isPositive(extent.rate)
                       ? static_cast<double>(extent.units) * extent.rate.denominator / extent.rate.numerator
                       : 0;
        };
        return seconds(a) > seconds(b);
    }

    bool isFilePackage(GenericPackage const& package) const {
        return std::any_of(containers_.begin(), containers_.end(),
                           [&](EssenceContainer const& container) { return container.package == &package; });
    }

    /// How long a track is whose only clip leads to essence with a known length.
    std::optional<std::int64_t> lengthBySource(TimelineTrack const& track) const {
        auto const* const clip = soleClip(track);
        if (clip == nullptr || clip->sourcePackageID() == nullptr || clip->sourceTrackID() == nullptr)
            return std::nullopt;
        auto const source = findTrack(containers_, *clip->sourcePackageID(), clip->sourceTrackID()->value());
        if (!source)
            return std::nullopt;
        for (auto const& [container, units] : units_)
            if (container == source->container) {
                auto const length = converted(units - std::min(units, source->track->origin),
                                              container->editRate(), rateOf(track));
                std::int64_t const start =
                    clip->startPosition() != nullptr ? clip->startPosition()->value() : 0;
                return length && start >= 0 ? std::optional(*length - std::min(*length, start))
                                            : std::nullopt;
            }
        return std::nullopt;
    }

    Templates::vector<EssenceContainer> const& containers_;
    Templates::vector<ContainerUnits> const& units_;
    Setter setter_;
};

} // namespace

void setDurations(Metadata::PartitionMetadata& metadata,
                  Templates::vector<EssenceContainer> const& containers,
                  Templates::vector<ContainerUnits> const& units, DurationRule rule) {
    if (auto const* const storage = dynamic_cast<ContentStorage const*>(&metadata.contentStorage()))
        DurationWork(containers, units, rule).run(*storage);
}

} // namespace MXF::Zelm::MXFIO
