/// What differs between two states of a partition's header metadata.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"

#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::MXFIO {

/// One difference. Texts are UTF-8.
struct MetadataChange {
    enum class Kind {
        PropertyChanged,
        PropertyAdded,
        PropertyRemoved,
        SetAdded,
        SetRemoved,
        DarkSetChanged, ///< a dark set whose value was replaced, or one that is there only before or after
    };

    Kind kind = Kind::PropertyChanged;
    KLV::Key setKey;
    std::string setName;                        ///< the name of the set's class
    std::optional<Types::UUID> instanceUID;     ///< absent for a dark set
    std::optional<Types::UniversalLabel> label; ///< of the property; absent for a set, or an unknown label
    std::string propertyName;                   ///< empty for a set
    std::string oldValue;                       ///< BaseType::toString; empty where there was none
    std::string newValue;                       ///< the same; empty where there is none any more
};

/// The differences from `before` to `after`: set by set (by instance UID) in the order of `before`, then the
/// sets that are new. Values are the same when they have the same bytes; the order of sets and elements,
/// local tags and fill do not count. Neither may be one that is being changed meanwhile.
MXFZELM_EXPORT std::vector<MetadataChange> compareMetadata(Metadata::PartitionMetadata const& before,
                                                           Metadata::PartitionMetadata const& after);

} // namespace MXF::Zelm::MXFIO
