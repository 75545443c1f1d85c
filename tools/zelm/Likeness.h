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

} // namespace Zelm
