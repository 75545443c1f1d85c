/// What the file holds (SMPTE 377M, ContentStorage set).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"

namespace MXF::Zelm::Metadata::Structural {

class EssenceContainerData;
class GenericPackage;

/// Refers to all packages, and to the essence that is in the file.
class MXFZELM_EXPORT ContentStorage : public TrackableMetadataSet {
public:
    ContentStorage(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~ContentStorage() override;

    static KLV::Key const& classKey();

    /// All material and source packages.
    Templates::vector<GenericPackage*> packages() const;
    void addPackage(GenericPackage const& package);
    bool removePackage(GenericPackage const& package);

    /// One set for each essence container in the file. Optional: absent when all essence is elsewhere.
    Templates::vector<EssenceContainerData*> essenceContainerData() const;
    void addEssenceContainerData(EssenceContainerData const& data);
    bool removeEssenceContainerData(EssenceContainerData const& data);
    void resetEssenceContainerData();
};

} // namespace MXF::Zelm::Metadata::Structural
