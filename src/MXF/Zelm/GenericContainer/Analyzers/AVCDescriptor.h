/// Descriptors of AVC, filled from its headers (SMPTE 381-3).
#pragma once

#include "MXF/Zelm/Essence/AVC/AccessUnit.h"
#include "MXF/Zelm/GenericContainer/Analyzers/GroupStatistics.h"
#include "MXF/Zelm/GenericContainer/Analyzers/SizeStatistics.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"

namespace MXF::Zelm::Metadata {
class PartitionMetadata;
}

namespace MXF::Zelm::GenericContainer {

/// Of a unit with a slice.
bool isProgressive(Essence::AVC::AccessUnit const& unit);

/// Frames a second; 0/0 when the sequence does not tell, or no Int32 can.
Templates::Rational<int> frameRateOf(Essence::AVC::SequenceParameterSet const& sequence);

/// All but label, coding and sample rate, by the first unit.
void describeAVCPictures(Metadata::Structural::CDCIEssenceDescriptor& descriptor,
                         Essence::AVC::AccessUnit const& first);

/// The sub-descriptor, which is made when the descriptor has none and the metadata's dictionary knows it.
void describeAVCSequence(Metadata::PartitionMetadata& metadata,
                         Metadata::Structural::CDCIEssenceDescriptor& descriptor,
                         Essence::AVC::AccessUnit const& first);

/// What was found of all pictures.
struct AVCStatistics {
    GroupStatistics const& groups;
    SizeStatistics const& sizes;
    Templates::Rational<int> rate;
    bool hasFields, hasFrames; ///< pictures that are not progressive, and coded so
};

/// Goes into the sub-descriptor, if there is one.
void describeAVCGroups(Metadata::Structural::CDCIEssenceDescriptor& descriptor,
                       AVCStatistics const& statistics);

} // namespace MXF::Zelm::GenericContainer
