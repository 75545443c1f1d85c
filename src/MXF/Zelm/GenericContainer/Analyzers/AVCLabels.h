/// The labels of AVC (SMPTE 381-3, RP 2027, RP 224).
#pragma once

#include "MXF/Zelm/Essence/AVC/ParameterSets.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::GenericContainer {

/// Byte streams of the first video stream.
Types::UniversalLabel avcLabel(Wrapping wrapping);

/// What tells the classes of intra streams apart (RP 2027), beside the parameter sets.
struct AVCIntraFacts {
    bool isIntra = false; // all pictures
    bool isProgressive = true;
    Templates::Rational<int> rate = {};
    std::uint64_t pictureSize = 0; // in bytes; 0 when it varies
};

/// The picture coding: of a class when size, rate and bits of all pictures are those of one, else by profile.
/// A profile without a label gets that of high profile, 4:4:4.
Types::UniversalLabel avcCodingLabel(Essence::AVC::SequenceParameterSet const& sequence,
                                     AVCIntraFacts const& facts);

} // namespace MXF::Zelm::GenericContainer
