#include "FrameContainers.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;

std::vector<FoundTrack> chooseFrames(std::vector<EssenceContainer> const& containers,
                                     std::string const& track) {
    std::vector<FoundTrack> chosen;
    if (!track.empty())
        chosen = chooseTracks(containers, track);
    else
        for (auto const& container : containers)
            chosen.push_back({&container, nullptr});
    if (chosen.empty() && !track.empty())
        throw Exceptions::InvalidValue("there is no essence track " + track +
                                       "; the tracks are: " + trackNames(containers));
    return chosen;
}

MXFIO::EssenceOptions withoutValues(MXFIO::EssenceTrack const* track) {
    MXFIO::EssenceOptions options;
    options.largestElement = 0;
    if (track != nullptr)
        options.trackNumbers.push_back(track->trackNumber);
    return options;
}

std::int64_t declaredUnits(EssenceContainer const& container) {
    std::int64_t most = 0;
    for (auto const& track : container.tracks)
        if (track.editRate == container.editRate())
            most = std::max(most, track.duration);
    return most;
}

FrameSection sectionOf(EssenceContainer const& container, bool isOnly) {
    FrameSection section;
    if (!isOnly)
        section.title = "BodySID " + std::to_string(container.bodySID);
    section.units = declaredUnits(container);
    return section;
}

FileInfo packagesOf(MXFIO::Partition::MetadataPtr const& metadata) {
    FileInfo info;
    if (metadata)
        gatherPackages(*metadata, info);
    return info;
}

} // namespace Zelm
