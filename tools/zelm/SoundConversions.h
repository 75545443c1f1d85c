/// What `zelm extract --as` writes instead of what stands in the file.
#pragma once

#include "ExtractTracks.h"

namespace Zelm {

/// Kinds that `makeConversion` knows.
inline const std::vector<std::string> conversionKinds = {"wav",      "pcm",      "302m",    "aes3",
                                                         "anc-json", "vbi-json", "captions"};

/// Of sound: wav, pcm (samples alone, little-endian), 302m (SMPTE 302M packets in a transport stream), aes3
/// (words of SMPTE 331M); of data: anc-json, vbi-json, captions.
std::shared_ptr<TrackConversion> makeConversion(std::string const& kind);

/// Ancillary data as rows of JSON, or the text of captions.
std::shared_ptr<TrackConversion> makeAncillaryConversion(std::string const& kind);

} // namespace Zelm
