/// The labels of sound in coded frames.
#pragma once

#include "MXF/Zelm/Essence/CodedSound/FrameHeader.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::GenericContainer {

/// The essence container. `streamId` is that of MPEG audio; AC-3 and AAC have labels of their own.
Types::UniversalLabel codedSoundContainer(Essence::CodedSound::Coding coding, std::uint8_t streamId,
                                          Wrapping wrapping);

Types::UniversalLabel codedSoundCompression(Essence::CodedSound::Coding coding);

} // namespace MXF::Zelm::GenericContainer
