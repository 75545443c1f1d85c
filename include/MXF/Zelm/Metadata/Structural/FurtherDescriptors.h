/// Descriptors that inherit from a structural class and have none of their own.
#pragma once

#include "MXF/Zelm/MetaMetadata/Dictionary.h"

namespace MXF::Zelm::Metadata::Structural {

/// Does what `initializeMappings` does and registers with MetadataSetFactory, for each descriptor and
/// sub-descriptor of `dictionary` that is not registered, the nearest class that it inherits from, of those
/// that have subclasses. An IAB essence descriptor is then a GenericSoundEssenceDescriptor, an AVC
/// sub-descriptor a SubDescriptor, a station's own picture descriptor a GenericPictureEssenceDescriptor; each
/// keeps its own key and definition. Otherwise they are plain sets, which do not show among the typed ones.
///
/// Call it behind `initialize`, and again for each dictionary with more descriptors.
MXFZELM_EXPORT void registerFurtherDescriptors(MetaMetadata::Dictionary const& dictionary);

} // namespace MXF::Zelm::Metadata::Structural
