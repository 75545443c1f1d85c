/// Essence tracks as --track names them.
///
///     v1, a2, d1          the first picture, second sound, first data track of the file
///     2                   by ID
///     15010500            by number, as `zelm info` shows it: eight hexadecimal digits, also with 0x before
#pragma once

#include <MXF/Zelm/MXFIO/EssenceContainer.h>

#include <string>
#include <string_view>
#include <vector>

namespace Zelm {

using MXF::Zelm::MXFIO::EssenceContainer;
using MXF::Zelm::MXFIO::FoundTrack;

/// Whether `name` has one of the forms.
bool isTrackName(std::string_view name);

/// 'v' picture, 'a' sound, 'd' anything else: by the number that is in the keys of its elements, else by its
/// descriptor.
char trackKind(MXF::Zelm::MXFIO::EssenceTrack const& track);

/// The tracks that have this name, a container's first: several when more than one container has a track with
/// the ID or number. Pointers into `containers`.
std::vector<FoundTrack> chooseTracks(std::vector<EssenceContainer> const& containers, std::string_view name);

/// The names of all tracks, for messages: "v1, a1, a2"; "none".
std::string trackNames(std::vector<EssenceContainer> const& containers);

} // namespace Zelm
