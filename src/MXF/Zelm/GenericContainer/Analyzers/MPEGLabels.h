/// The labels of MPEG video (SMPTE 381M, RP 224).
#pragma once

#include "MXF/Zelm/Essence/MPEG/SequenceHeader.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::GenericContainer {

/// Elementary streams of the first video stream, wrapped by frames or as a clip.
Types::UniversalLabel mpegLabel(Wrapping wrapping);

/// The picture coding, by profile, level and whether all pictures are intra. A profile or level without a
/// label gets that of the smallest one that includes it.
Types::UniversalLabel mpegCodingLabel(Essence::MPEG::SequenceHeader const& sequence, bool isIntraOnly);

} // namespace MXF::Zelm::GenericContainer
