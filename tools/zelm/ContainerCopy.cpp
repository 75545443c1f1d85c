#include "ContainerCopy.h"

#include "TrackChoice.h"

#include <MXF/Zelm/Metadata/Structural/Sequence.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>
#include <MXF/Zelm/Utils/TimeBase.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
namespace Structural = Metadata::Structural;

UnitRange ContainerCopy::wanted() const {
    if (!span)
        return {0, everyUnit.last};
    auto const place = [&](Seconds const& time) {
        return Utils::secondsToFrames(time, container().editRate()) + essence.origin();
    };
    return {place(span->first), place(span->last)};
}

std::int64_t inRate(std::int64_t units, Templates::Rational<int> const& from,
                    Templates::Rational<int> const& to) {
    return from == to ? units : Utils::secondsToFrames(Utils::framesToSeconds(units, from), to);
}

std::vector<Structural::FileDescriptor*> descriptorsOf(Structural::SourcePackage const& package) {
    std::vector<Structural::FileDescriptor*> found;
    auto* const first = dynamic_cast<Structural::FileDescriptor*>(package.descriptor());
    if (first == nullptr)
        return found;
    found.push_back(first);
    if (auto* const several = dynamic_cast<Structural::MultipleDescriptor*>(first))
        for (auto* const part : several->fileDescriptors())
            found.push_back(part);
    return found;
}

Structural::TimelineTrack* timelineTrack(Structural::GenericPackage const& package, std::uint32_t trackID) {
    for (auto* const candidate : package.tracks())
        if (auto* const track = dynamic_cast<Structural::TimelineTrack*>(candidate);
            track != nullptr && track->trackID() != nullptr && *track->trackID() == trackID)
            return track;
    return nullptr;
}

std::vector<Structural::SourceClip*> clipsOf(Structural::Track const& track) {
    std::vector<Structural::SourceClip*> clips;
    if (track.sequence() != nullptr)
        for (auto* const component : track.sequence()->structuralComponents())
            if (auto* const clip = dynamic_cast<Structural::SourceClip*>(component))
                clips.push_back(clip);
    return clips;
}

ContainerCopy* copyInto(ContainerCopies& copies, Types::UMID32 const* packageUID) {
    auto const found = std::find_if(copies.begin(), copies.end(), [&](ContainerCopy const& copy) {
        return packageUID != nullptr && copy.package->packageUID() != nullptr &&
               *copy.package->packageUID() == *packageUID;
    });
    return found != copies.end() ? &*found : nullptr;
}

ContainerCopy& leadingCopy(ContainerCopies& copies) {
    for (auto& copy : copies)
        if (std::any_of(copy.essence.tracks.begin(), copy.essence.tracks.end(),
                        [](CopiedTrack const& track) { return trackKind(*track.source) == 'v'; }))
            return copy;
    return copies.front();
}

} // namespace Zelm
