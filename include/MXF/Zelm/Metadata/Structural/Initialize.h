/// Registration of the structural classes with the factory that makes metadata sets.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

namespace MXF::Zelm::Metadata::Structural {

/// Registers the classes of SMPTE 377M and of the mappings that it counts on with
/// `MetadataSetFactory::instance()`, so that sets of their keys are made as these classes from then on. Call
/// it before header metadata is loaded or created, and again after Initializer::shutdown(); another call does
/// no harm, but takes the place of what a host registered under the same keys.
MXFZELM_EXPORT void initialize();

/// Registers the classes of further essence mappings: ANCPacketsDescriptor and VBIDataDescriptor (SMPTE
/// 436M), JPEG2000PictureSubDescriptor (SMPTE 422M), UnknownChunkSet (SMPTE 382M). Without it their sets are
/// plain ones, and a package that such a descriptor describes shows none. As for `initialize`, another call
/// does no harm. FurtherDescriptors.h goes beyond this, by what a dictionary defines.
MXFZELM_EXPORT void initializeMappings();

} // namespace MXF::Zelm::Metadata::Structural
