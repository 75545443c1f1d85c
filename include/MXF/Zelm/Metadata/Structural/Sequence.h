/// The content of a track (SMPTE 377M, Sequence set).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

class StructuralComponent;

/// Puts components one behind the other. It is no component itself here, unlike in SMPTE 377M, and so has
/// their properties of its own.
class MXFZELM_EXPORT Sequence : public TrackableMetadataSet {
public:
    Sequence(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~Sequence() override;

    static KLV::Key const& classKey();

    /// What kind of essence or data the track holds; all components repeat it.
    Types::UniversalLabel const* dataDefinition() const;
    void dataDefinition(Types::UniversalLabel const& definition);

    /// The sum of the components' durations, in edit units of the track; -1 while it is not known.
    Types::Length const* duration() const;
    void duration(Types::Length const& duration);
    void resetDuration();

    /// Private KLV data (sets of the class KLVData), in their order. Optional.
    Templates::vector<MetadataSet*> componentKLVData() const;
    void addComponentKLVData(MetadataSet const& data);
    bool removeComponentKLVData(MetadataSet const& data);
    void resetComponentKLVData();

    /// Comments of users (sets of the class TaggedValue), in their order. Optional.
    Templates::vector<MetadataSet*> componentUserComments() const;
    void addComponentUserComment(MetadataSet const& comment);
    bool removeComponentUserComment(MetadataSet const& comment);
    void resetComponentUserComments();

    /// Attributes of applications (sets of the class TaggedValue), in their order. Optional.
    Templates::vector<MetadataSet*> componentAttributes() const;
    void addComponentAttribute(MetadataSet const& attribute);
    bool removeComponentAttribute(MetadataSet const& attribute);
    void resetComponentAttributes();

    /// In their order. Components of classes that have no C++ class, such as fillers, are left out;
    /// `MetadataSet::referencedSets` gives all.
    Templates::vector<StructuralComponent*> structuralComponents() const;
    void addStructuralComponent(StructuralComponent const& component);
    bool removeStructuralComponent(StructuralComponent const& component);
};

} // namespace MXF::Zelm::Metadata::Structural
