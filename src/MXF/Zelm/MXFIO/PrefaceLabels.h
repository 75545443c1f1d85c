/// What partition packs repeat of the Preface: operational pattern and essence containers (SMPTE 377M).
#pragma once

#include "MXF/Zelm/MXFIO/PackHead.h"

namespace MXF::Zelm::MXFIO {

/// Which packs follow the Preface when it is changed from `before` to `after`, and how. Refers to both.
class PrefaceLabels {
public:
    PrefaceLabels(Metadata::PartitionMetadata const& before, Metadata::PartitionMetadata const& after);

    /// Whether a pack says something that the Preface said before and says no longer.
    bool concern(Packs::PartitionPack const& pack) const;

    /// Writes what the Preface says now. Throws as PackHead::essenceContainers does.
    void apply(Packs::PartitionPack const& pack, PackHead& head) const;

private:
    bool patternFollows(Packs::PartitionPack const& pack) const;
    bool containersFollow(Packs::PartitionPack const& pack) const;

    Types::UniversalLabel const* oldPattern_ = nullptr;
    Types::UniversalLabel const* newPattern_ = nullptr;
    Types::Batch const* oldContainers_ = nullptr;
    Types::Batch const* newContainers_ = nullptr;
};

} // namespace MXF::Zelm::MXFIO
