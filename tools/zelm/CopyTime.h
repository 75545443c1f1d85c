/// The time of what is copied: which part of each container a range needs, tracks cut to it, lengths that are
/// known when the essence has ended.
#pragma once

#include "ContainerCopy.h"

namespace Zelm {

/// Finds what of each container is played in the range, and leaves out those of which nothing is. Edit units
/// are those of the leading container; where a material package plays several clips one after another, they
/// count from its start. Returns the time on the material packages. Throws Exceptions::InvalidValue for a
/// range that cannot be.
TimeSpan chooseSpans(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies,
                     RangeChoice const& range);

/// Cuts the packages, whose copies have sources, to that time: what they show is what is in the file.
void cutPackages(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies,
                 TimeSpan const& shown);

/// Of essence and timecode in the packages of the copies and in material packages: the sums are known at the
/// end.
void forgetLengths(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies const& copies);

/// Lengths that were not known, or were more than there is.
void finishLengths(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies);

/// Edit units in the rate of the container that its tracks say there are, those before the zero point
/// included; absent when none says it.
std::optional<std::int64_t> declaredUnits(CopiedEssence const& essence);

/// How many edit units the source of the copy should give.
std::optional<std::int64_t> expectedUnits(ContainerCopy const& copy);

} // namespace Zelm
