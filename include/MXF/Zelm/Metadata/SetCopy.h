/// Copies sets from the header metadata of one file into that of another.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"

namespace MXF::Zelm::Metadata {

/// Copies a set and all that it refers to strongly, dark sets included, with what their classes do not know:
/// such properties stand under tags of the new primer. Instance UIDs stay unless the new metadata has them
/// already; weak references stay as they are. A property whose tag the old primer does not know keeps the tag
/// when that is free, and is left out otherwise.
///
/// `from` holds `set` and was read from a file, or has the local tags of all its labels. Returns the copy,
/// which belongs to `to`; null when it could only be kept as a dark set. Throws what
/// PartitionDictionary::findOrGenerate and PartitionMetadata::load throw.
MXFZELM_EXPORT MetadataSet* copyWithReferenced(MetadataSet const& set, PartitionMetadata const& from,
                                               PartitionMetadata& to);

} // namespace MXF::Zelm::Metadata
