/// Tracks of pictures that come one by one, for `zelm wrap`.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

/// JPEG 2000: codestreams and JP2 files, in one file or a sequence of them.
bool isJpeg2000(InputHead const& head, TrackMaking const& making);
void addJpeg2000(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

/// What --scan may say.
std::vector<std::string> scanNames();

} // namespace Zelm
