#include "support/StandardMetadata.h"

#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/ZelmDictionary/Dictionary.h"

namespace MXF::Zelm::Test {

std::unique_ptr<Metadata::PartitionMetadata> standardMetadata() {
    static auto const dictionary = ZelmDictionary::standard();
    Metadata::Structural::initialize();
    Metadata::Structural::initializeMappings();
    return std::make_unique<Metadata::PartitionMetadata>(
        std::make_unique<Metadata::PartitionDictionary>(dictionary, std::make_unique<Packs::PrimerPack>()));
}

} // namespace MXF::Zelm::Test
