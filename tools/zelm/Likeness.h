/// Whether the essence of two files is so alike that one may go on where the other ends.
#pragma once

#include <MXF/Zelm/MXFIO/EssenceContainer.h>

#include <string>
#include <vector>

namespace Zelm {

/// Throws Exceptions::InvalidValue, saying which property of which track differs: containers and tracks in
/// their order, labels, rates, keys, and the descriptors but for what is about the single file (durations,
/// bit rates, lengths of groups of pictures, names).
void requireAlike(std::vector<MXF::Zelm::MXFIO::EssenceContainer> const& a, std::string const& nameA,
                  std::vector<MXF::Zelm::MXFIO::EssenceContainer> const& b, std::string const& nameB);

/// Throws Exceptions::InvalidValue unless the essence of more files can go into the packages: a material
/// package that plays several packages one after another, or those of other files, is no single one.
void requireOneAfterAnother(MXF::Zelm::Metadata::PartitionMetadata const& metadata, std::string const& name);

} // namespace Zelm
