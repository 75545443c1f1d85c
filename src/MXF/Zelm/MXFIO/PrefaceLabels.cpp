#include "MXF/Zelm/MXFIO/PrefaceLabels.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using Metadata::PartitionMetadata;
using namespace KLV::Literals;

namespace {

constexpr KLV::Key operationalPatternLabel = "060E2B34.01010105.01020203.00000000"_key;
constexpr KLV::Key essenceContainersLabel = "060E2B34.01010105.01020210.02010000"_key;

/// A property of the Preface as a `T`; null unless there is one Preface that has it.
template <class T>
T const* prefaceValue(PartitionMetadata const& metadata, Types::UniversalLabel const& label) {
    try {
        for (auto const& element : metadata.preface())
            if (equalButForVersion(element->metaElement()->universalLabel(), label))
                return Types::valueCast<T>(element->baseValue());
    } catch (Exceptions::InvalidStructure const&) {
        // Without a Preface packs have nothing to follow.
    }
    return nullptr;
}

std::vector<Types::UniversalLabel> sorted(Types::Batch const& batch) {
    std::vector<Types::UniversalLabel> labels;
    for (std::size_t i = 0; i < batch.count(); ++i)
        labels.push_back(batch.at<Types::UniversalLabel>(i));
    std::sort(labels.begin(), labels.end());
    return labels;
}

/// A batch has no order.
bool sameLabels(Types::Batch const& a, Types::Batch const& b) {
    return a.count() == b.count() && sorted(a) == sorted(b);
}

} // namespace

PrefaceLabels::PrefaceLabels(PartitionMetadata const& before, PartitionMetadata const& after)
    : oldPattern_(prefaceValue<Types::UniversalLabel>(before, operationalPatternLabel)),
      newPattern_(prefaceValue<Types::UniversalLabel>(after, operationalPatternLabel)),
      oldContainers_(prefaceValue<Types::Batch>(before, essenceContainersLabel)),
      newContainers_(prefaceValue<Types::Batch>(after, essenceContainersLabel)) {}

bool PrefaceLabels::patternFollows(Packs::PartitionPack const& pack) const {
    return oldPattern_ != nullptr && newPattern_ != nullptr && !oldPattern_->equals(*newPattern_) &&
           pack.operationalPattern().equals(*oldPattern_);
}

bool PrefaceLabels::containersFollow(Packs::PartitionPack const& pack) const {
    return oldContainers_ != nullptr && newContainers_ != nullptr &&
           oldContainers_->subType() == Types::Identifiers::UniversalLabel &&
           newContainers_->subType() == Types::Identifiers::UniversalLabel &&
           !sameLabels(*oldContainers_, *newContainers_) &&
           sameLabels(pack.essenceContainers(), *oldContainers_);
}

bool PrefaceLabels::concern(Packs::PartitionPack const& pack) const {
    return patternFollows(pack) || containersFollow(pack);
}

void PrefaceLabels::apply(Packs::PartitionPack const& pack, PackHead& head) const {
    if (patternFollows(pack))
        head.operationalPattern(*newPattern_);
    if (containersFollow(pack))
        head.essenceContainers(*newContainers_);
}

} // namespace MXF::Zelm::MXFIO
