/// What almost every structural set has: the generation in which it was last changed (SMPTE 377M,
/// InterchangeObject).
#pragma once

#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/UUID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

/// The structural classes are metadata sets with named accessors; the values live in the set's elements.
///
/// Each getter gives null, or no sets, when the property is not there; a reference that leads to no set of
/// the expected class counts as not there. Each setter takes the place of what was there and throws
/// Exceptions::BaseException, leaving it as it was, when the set's class does not declare the property or the
/// value breaks a limit of its definition. A `reset…` removes an optional property.
class MXFZELM_EXPORT TrackableMetadataSet : public MetadataSet {
public:
    ~TrackableMetadataSet() override;

    /// `thisGenerationUID` of the Identification that stands for the last change of the set. Optional.
    Types::UUID const* generationUID() const;
    void generationUID(Types::UUID const& generation);
    void resetGenerationUID();

    /// The class of the set in the object model of AAF; most files leave it out. Optional.
    Types::UniversalLabel const* objectClass() const;
    void objectClass(Types::UniversalLabel const& label);
    void resetObjectClass();

    /// Private extensions of the set (sets of the class ApplicationPlugInObject, SMPTE 377-1). Optional.
    Templates::vector<MetadataSet*> applicationPlugInObjects() const;
    void addApplicationPlugInObject(MetadataSet const& object);
    bool removeApplicationPlugInObject(MetadataSet const& object);
    void resetApplicationPlugInObjects();

protected:
    TrackableMetadataSet(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                         MetadataSetOwner* owner);
};

} // namespace MXF::Zelm::Metadata::Structural
