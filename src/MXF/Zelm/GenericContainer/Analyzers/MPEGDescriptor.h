/// Descriptors of MPEG video, filled from its headers (SMPTE 381M).
#pragma once

#include "MXF/Zelm/Essence/MPEG/PictureHeader.h"
#include "MXF/Zelm/Essence/MPEG/SequenceHeader.h"
#include "MXF/Zelm/GenericContainer/Analyzers/GroupStatistics.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"

namespace MXF::Zelm::GenericContainer {

/// All but label, coding and sample rate.
void describeMPEGPictures(Metadata::Structural::CDCIEssenceDescriptor& descriptor,
                          Essence::MPEG::SequenceHeader const& sequence,
                          Essence::MPEG::PictureHeader const& first);

/// What a sequence header says, and what was found of the groups of pictures.
void describeMPEGSequence(Metadata::Structural::MPEG2VideoDescriptor& descriptor,
                          Essence::MPEG::SequenceHeader const& sequence);
void describeMPEGGroups(Metadata::Structural::MPEG2VideoDescriptor& descriptor,
                        GroupStatistics const& groups);

} // namespace MXF::Zelm::GenericContainer
