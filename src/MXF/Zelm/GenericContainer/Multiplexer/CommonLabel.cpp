#include "MXF/Zelm/GenericContainer/Multiplexer/CommonLabel.h"

#include "MXF/Zelm/Metadata/Structural/Building.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

Types::UniversalLabel commonLabel(Templates::vector<AnalyzerEntry> const& entries) {
    Types::UniversalLabel common;
    for (auto const& entry : entries) {
        if (entry.isSystem())
            continue;
        auto const label = entry.analyzer->universalLabel();
        if (common != Types::UniversalLabel() && common != label)
            return Metadata::Structural::EssenceContainerLabels::multipleWrappings;
        common = label;
    }
    return common;
}

} // namespace MXF::Zelm::GenericContainer::Multiplexer
