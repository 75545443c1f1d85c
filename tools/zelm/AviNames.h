/// What streams of AVI files are called.
#pragma once

#include <MXF/Zelm/Essence/AVI/StreamHeader.h>

#include <string>

namespace Zelm {

/// The coding: "PCM", "MPEG-1 layer 3 sound", "sound of format 0x1234"; of pictures and all else four
/// characters, those of them that can be printed, "uncompressed" where there are none.
std::string codeText(MXF::Zelm::Essence::AVI::StreamHeader const& header);

} // namespace Zelm
