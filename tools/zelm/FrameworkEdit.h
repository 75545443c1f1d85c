/// What `zelm edit --add-framework` is given: a kind of descriptive framework (SMPTE 380M) and its
/// properties.
///
///     clip:kind=Moving Pictures,number=A001C003,track=2
///     production:IntegrationIndication=Project
#pragma once

#include "MetadataEditor.h"

#include <MXF/Zelm/KLV/Key.h>

namespace Zelm {

struct FrameworkEdit {
    std::string kind; ///< "clip", "scene", "production"
    MXF::Zelm::KLV::Key key;
    std::optional<std::uint32_t> track; ///< the track of the material package that is described
    std::vector<std::pair<std::string, std::string>> properties; ///< names and values
};

/// A comma ends a value where a name and '=' follow it. Throws Exceptions::InvalidValue that says what is
/// wrong.
FrameworkEdit parseFramework(std::string const& text);

/// Adds the framework to the material package and returns that. Throws Exceptions::InvalidValue, and what the
/// library does.
MXF::Zelm::Metadata::MetadataSet& addFramework(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                                               FrameworkEdit const& edit);

} // namespace Zelm
