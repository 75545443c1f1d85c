/// Opens the essence of a copy: as it stands, in other content packages, or sound wrapped in another way.
#pragma once

#include "ContainerCopy.h"

namespace Zelm {

struct CopySourceOptions {
    bool frame = false, clip = false; ///< how sound is to be wrapped; as it is when neither
    bool leavesOthers = false;        ///< what is no sound alone in its container stays as it is
    bool systemItem = false;          ///< in each content package
    std::string rate = {};            ///< of sound that is cut in edit units, where nothing tells

    /// Lays packages out on this grid, in bytes; as they are when absent.
    std::optional<std::uint32_t> kagSize = std::nullopt;
    std::uint32_t usualGrid = 1; ///< of packages that are laid out anew

    bool trustsSizes = true; ///< as MXFIO::PassThroughSourceOptions
};

/// Whether the copy is sound that can be wrapped in another way.
bool isOneSound(ContainerCopy const& copy);

/// Makes the source of the copy and what tells of it. Its package is changed where tracks are wrapped or
/// numbered otherwise. Throws Exceptions::InvalidValue for what cannot be done, and what reading throws.
void openSource(MXF::Zelm::Metadata::PartitionMetadata const& metadata, ContainerCopy& copy,
                CopySourceOptions const& options);

} // namespace Zelm
