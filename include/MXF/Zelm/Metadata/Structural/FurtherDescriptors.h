/// Descriptors that inherit from a structural class and have none of their own.
#pragma once

#include "MXF/Zelm/MetaMetadata/Dictionary.h"

namespace MXF::Zelm::Metadata::Structural {

/// Registers with MetadataSetFactory, for each class of `dictionary` that is not registered and inherits from
/// a descriptor or sub-descriptor, the nearest class with subclasses that it inherits from. An IAB essence descriptor is then
/// a GenericSoundEssenceDescriptor, an AVC sub-descriptor a SubDescriptor, a station's own picture descriptor
/// a GenericPictureEssenceDescriptor; each keeps its own key and definition. Without this they are plain
/// sets, which do not show among the typed ones.
///
/// Call it behind `initialize` and `initializeMappings`, and again for each dictionary with more descriptors.
MXFZELM_EXPORT void registerFurtherDescriptors(MetaMetadata::Dictionary const& dictionary);

} // namespace MXF::Zelm::Metadata::Structural
