#include "MXF/Zelm/Metadata/Structural/Sequence.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

Sequence::Sequence(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : TrackableMetadataSet(classKey(), definition, owner) {}
Sequence::~Sequence() = default;

KLV::Key const& Sequence::classKey() { return StructuralMetadataKeys::sequence(); }

Types::UniversalLabel const* Sequence::dataDefinition() const {
    return get(*this, Properties::dataDefinition);
}
void Sequence::dataDefinition(Types::UniversalLabel const& definition) {
    put(*this, Properties::dataDefinition, definition);
}
Types::Length const* Sequence::duration() const { return get(*this, Properties::duration); }
void Sequence::duration(Types::Length const& duration) { put(*this, Properties::duration, duration); }
void Sequence::resetDuration() { reset(*this, Properties::duration); }
Templates::vector<MetadataSet*> Sequence::componentKLVData() const {
    return get(*this, Properties::componentKLVData);
}
void Sequence::addComponentKLVData(MetadataSet const& data) {
    Structural::add(*this, Properties::componentKLVData, data);
}
bool Sequence::removeComponentKLVData(MetadataSet const& data) {
    return remove(*this, Properties::componentKLVData, data);
}
void Sequence::resetComponentKLVData() { reset(*this, Properties::componentKLVData); }
Templates::vector<MetadataSet*> Sequence::componentUserComments() const {
    return get(*this, Properties::componentUserComments);
}
void Sequence::addComponentUserComment(MetadataSet const& comment) {
    Structural::add(*this, Properties::componentUserComments, comment);
}
bool Sequence::removeComponentUserComment(MetadataSet const& comment) {
    return remove(*this, Properties::componentUserComments, comment);
}
void Sequence::resetComponentUserComments() { reset(*this, Properties::componentUserComments); }
Templates::vector<MetadataSet*> Sequence::componentAttributes() const {
    return get(*this, Properties::componentAttributes);
}
void Sequence::addComponentAttribute(MetadataSet const& attribute) {
    Structural::add(*this, Properties::componentAttributes, attribute);
}
bool Sequence::removeComponentAttribute(MetadataSet const& attribute) {
    return remove(*this, Properties::componentAttributes, attribute);
}
void Sequence::resetComponentAttributes() { reset(*this, Properties::componentAttributes); }
Templates::vector<StructuralComponent*> Sequence::structuralComponents() const {
    return get(*this, Properties::structuralComponents);
}
void Sequence::addStructuralComponent(StructuralComponent const& component) {
    Structural::add(*this, Properties::structuralComponents, component);
}
bool Sequence::removeStructuralComponent(StructuralComponent const& component) {
    return remove(*this, Properties::structuralComponents, component);
}

} // namespace MXF::Zelm::Metadata::Structural
