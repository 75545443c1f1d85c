/// Packages that are played one after another (pattern 2a), as a single one (1a).
#pragma once

#include "ContainerCopy.h"

namespace Zelm {

/// Lets the first package go on with the essence of those that are played behind it, and removes them. `name`
/// is that of the file, for messages. Throws Exceptions::InvalidValue, saying why, when the packages cannot
/// be one: they are not played whole, have other essence, or something is said of one of them alone.
void playAsOne(MXF::Zelm::Metadata::PartitionMetadata& metadata, ContainerCopies& copies,
               std::string const& name);

} // namespace Zelm
