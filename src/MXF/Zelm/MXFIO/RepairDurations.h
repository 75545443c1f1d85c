/// Durations in header metadata, put right by how many edit units there are.
#pragma once

#include "MXF/Zelm/MXFIO/EssenceContainer.h"

namespace MXF::Zelm::MXFIO {

/// A container and its edit units, at its own edit rate.
struct ContainerUnits {
    EssenceContainer const* container = nullptr;
    std::int64_t units = 0;
};

/// Which durations are put right.
enum class DurationRule {
    All,            ///< of a file that was cut off: nobody can have known them
    UnknownOrBeyond ///< of a finished one: those that are not known, or longer than the essence
};

/// Sets the durations of the file packages of `containers`, and of all tracks that lead to them; of a track
/// with several components those that go beyond the essence are made shorter. The containers are of
/// `metadata`.
void setDurations(Metadata::PartitionMetadata& metadata,
                  Templates::vector<EssenceContainer> const& containers,
                  Templates::vector<ContainerUnits> const& units, DurationRule rule);

} // namespace MXF::Zelm::MXFIO
