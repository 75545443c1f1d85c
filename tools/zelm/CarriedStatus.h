/// Channel status that sound carries in its essence.
#pragma once

#include "ExtractTracks.h"

#include <MXF/Zelm/Essence/AES3/ChannelStatus.h>

#include <vector>

namespace Zelm {

/// The channel status of each channel of `form` in the first element of a track: in AES3 elements of eight
/// channels (SMPTE 331M) and packets of SMPTE 302M. None for other sound, where the element was not read as a
/// whole, has no whole block for each channel, or says nothing.
std::vector<MXF::Zelm::Essence::AES3::ChannelStatus>
carriedStatuses(EssenceForm const& form, MXF::Zelm::GenericContainer::Element const& element);

} // namespace Zelm
