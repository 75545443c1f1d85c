/// Time in which a track plays or says nothing.
#pragma once

#include <MXF/Zelm/Metadata/PartitionMetadata.h>
#include <MXF/Zelm/Metadata/Structural/Properties.h>
#include <MXF/Zelm/Types/Integers.h>

namespace Zelm {

/// A Filler of so many edit units (SMPTE 377M), for a sequence of what `definition` names.
inline MXF::Zelm::Metadata::MetadataSet& createFiller(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                                                      MXF::Zelm::Types::UniversalLabel const& definition,
                                                      std::int64_t units) {
    using namespace MXF::Zelm;
    using namespace KLV::Literals;
    namespace Properties = Metadata::Structural::Properties;
    constexpr KLV::Key key = "060E2B34.02530101.0D010101.01010900"_key;
    auto& filler = metadata.createMetadataSet(key);
    filler.value(Properties::dataDefinition.label, definition);
    filler.value(Properties::duration.label, Types::Length(units));
    return filler;
}

} // namespace Zelm
