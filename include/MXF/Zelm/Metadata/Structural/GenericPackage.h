/// Packages (SMPTE 377M): the material package is what is played, source packages are what it is made of.
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

class GenericDescriptor;
class Track;

/// What all packages have: an identity, dates and tracks.
class MXFZELM_EXPORT GenericPackage : public TrackableMetadataSet {
public:
    ~GenericPackage() override;

    /// The package's identity, by which source clips of any file refer to it.
    Types::UMID32 const* packageUID() const;
    void packageUID(Types::UMID32 const& uid);

    /// What people call the package. Optional. (The name of its class is `MetadataSet::name()`.)
    Types::UTF16String const* name() const;
    void name(Types::UTF16String const& name);
    void resetName();

    /// In their order.
    Templates::vector<Track*> tracks() const;
    void addTrack(Track const& track);
    bool removeTrack(Track const& track);

    /// When the package was last changed.
    Types::Timestamp const* packageModifiedDate() const;
    void packageModifiedDate(Types::Timestamp const& date);

    /// When the package was made.
    Types::Timestamp const* packageCreationDate() const;
    void packageCreationDate(Types::Timestamp const& date);

    /// Comments of users (sets of the class TaggedValue), in their order. Optional.
    Templates::vector<MetadataSet*> packageUserComments() const;
    void addPackageUserComment(MetadataSet const& comment);
    bool removePackageUserComment(MetadataSet const& comment);
    void resetPackageUserComments();

    /// Private KLV data (sets of the class KLVData), in their order. Optional.
    Templates::vector<MetadataSet*> packageKLVData() const;
    void addPackageKLVData(MetadataSet const& data);
    bool removePackageKLVData(MetadataSet const& data);
    void resetPackageKLVData();

    /// Attributes of applications (sets of the class TaggedValue), in their order. Optional.
    Templates::vector<MetadataSet*> packageAttributes() const;
    void addPackageAttribute(MetadataSet const& attribute);
    bool removePackageAttribute(MetadataSet const& attribute);
    void resetPackageAttributes();

    /// What an application keeps the package for. Optional.
    Types::UniversalLabel const* packageUsage() const;
    void packageUsage(Types::UniversalLabel const& usage);
    void resetPackageUsage();

protected:
    GenericPackage(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                   MetadataSetOwner* owner);
};

/// The output timeline of the file: its clips refer to the tracks of source packages.
class MXFZELM_EXPORT MaterialPackage : public GenericPackage {
public:
    MaterialPackage(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~MaterialPackage() override;

    static KLV::Key const& classKey();
};

/// Essence and where it came from. With a file descriptor it is a file package, whose essence is in this
/// file or another; with a physical descriptor, a tape, film or the like.
class MXFZELM_EXPORT SourcePackage : public GenericPackage {
public:
    SourcePackage(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~SourcePackage() override;

    static KLV::Key const& classKey();

    /// Describes the essence: a MultipleDescriptor when there are several essence tracks. Optional for
    /// decoders.
    GenericDescriptor* descriptor() const;
    void descriptor(GenericDescriptor const& descriptor);
    void resetDescriptor();
};

} // namespace MXF::Zelm::Metadata::Structural
