/// The root of the header metadata (SMPTE 377M, Preface set).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/Zelm/Types/Versions.h"

namespace MXF::Zelm::Metadata::Structural {

class ContentStorage;
class GenericPackage;
class Identification;

/// Header metadata has exactly one.
class MXFZELM_EXPORT Preface : public TrackableMetadataSet {
public:
    Preface(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~Preface() override;

    static KLV::Key const& classKey();

    /// When the file was last changed.
    Types::Timestamp const* lastModifiedDate() const;
    void lastModifiedDate(Types::Timestamp const& date);

    /// The version of SMPTE 377M that the file follows: 1.2, or 1.3 for SMPTE 377-1.
    Types::VersionType const* version() const;
    void version(Types::VersionType const& version);

    /// The version of the object model; 1 where it is given. Optional.
    Types::UInt32 const* objectModelVersion() const;
    void objectModelVersion(Types::UInt32 const& version);
    void resetObjectModelVersion();

    /// The package that an application is to open first; a weak reference. Optional.
    GenericPackage* primaryPackage() const;
    void primaryPackage(GenericPackage const& package);
    void resetPrimaryPackage();

    /// Who wrote and changed the file, the oldest first.
    Templates::vector<Identification*> identifications() const;
    void addIdentification(Identification const& identification);
    bool removeIdentification(Identification const& identification);

    /// The packages and essence of the file.
    ContentStorage* contentStorage() const;
    void contentStorage(ContentStorage const& storage);

    /// How complex the file is, the same as in the partition packs; see OperationalPatterns.h.
    Types::UniversalLabel const* operationalPattern() const;
    void operationalPattern(Types::UniversalLabel const& pattern);

    /// The labels of all essence containers in the file or referred to by it, the same as in the partition
    /// packs.
    Types::Batch const* essenceContainers() const;
    void essenceContainers(Types::Batch const& containers);
    void addEssenceContainer(Types::UniversalLabel const& container);

    /// The labels of all descriptive metadata schemes in use; empty when there are none.
    Types::Batch const* dmSchemes() const;
    void dmSchemes(Types::Batch const& schemes);
    void addDMScheme(Types::UniversalLabel const& scheme);

    /// Whether the file ends in a random index pack (SMPTE 377-1). Optional.
    Types::Boolean const* isRIPPresent() const;
    void isRIPPresent(Types::Boolean const& isPresent);
    void resetIsRIPPresent();

    /// The labels of specifications that the file follows beside its operational pattern (SMPTE 377-1).
    /// Optional.
    Types::Batch const* conformsToSpecifications() const;
    void conformsToSpecifications(Types::Batch const& specifications);
    void addConformsToSpecification(Types::UniversalLabel const& specification);
    void resetConformsToSpecifications();
};

} // namespace MXF::Zelm::Metadata::Structural
