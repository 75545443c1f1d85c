#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/Locators.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

GenericDescriptor::GenericDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                                     MetadataSetOwner* owner)
    : TrackableMetadataSet(key, definition, owner) {}
GenericDescriptor::~GenericDescriptor() = default;

Templates::vector<Locator*> GenericDescriptor::locators() const { return get(*this, Properties::locators); }
void GenericDescriptor::addLocator(Locator const& locator) {
    Structural::add(*this, Properties::locators, locator);
}
bool GenericDescriptor::removeLocator(Locator const& locator) {
    return remove(*this, Properties::locators, locator);
}
void GenericDescriptor::resetLocators() { reset(*this, Properties::locators); }
Templates::vector<MetadataSet*> GenericDescriptor::subDescriptors() const {
    return get(*this, Properties::subDescriptors);
}
void GenericDescriptor::addSubDescriptor(MetadataSet const& subDescriptor) {
    Structural::add(*this, Properties::subDescriptors, subDescriptor);
}
bool GenericDescriptor::removeSubDescriptor(MetadataSet const& subDescriptor) {
    return remove(*this, Properties::subDescriptors, subDescriptor);
}
void GenericDescriptor::resetSubDescriptors() { reset(*this, Properties::subDescriptors); }

FileDescriptor::FileDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : FileDescriptor(classKey(), definition, owner) {}
FileDescriptor::FileDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                               MetadataSetOwner* owner)
    : GenericDescriptor(key, definition, owner) {}
FileDescriptor::~FileDescriptor() = default;

KLV::Key const& FileDescriptor::classKey() { return StructuralMetadataKeys::fileDescriptor(); }

Types::Rational const* FileDescriptor::sampleRate() const { return get(*this, Properties::sampleRate); }
void FileDescriptor::sampleRate(Types::Rational const& rate) { put(*this, Properties::sampleRate, rate); }
Types::Length const* FileDescriptor::containerDuration() const {
    return get(*this, Properties::containerDuration);
}
void FileDescriptor::containerDuration(Types::Length const& duration) {
    put(*this, Properties::containerDuration, duration);
}
void FileDescriptor::resetContainerDuration() { reset(*this, Properties::containerDuration); }
Types::UniversalLabel const* FileDescriptor::essenceContainer() const {
    return get(*this, Properties::essenceContainer);
}
void FileDescriptor::essenceContainer(Types::UniversalLabel const& label) {
    put(*this, Properties::essenceContainer, label);
}
void FileDescriptor::resetEssenceContainer() { reset(*this, Properties::essenceContainer); }
Types::UniversalLabel const* FileDescriptor::codec() const { return get(*this, Properties::codec); }
void FileDescriptor::codec(Types::UniversalLabel const& label) { put(*this, Properties::codec, label); }
void FileDescriptor::resetCodec() { reset(*this, Properties::codec); }
Types::UInt32 const* FileDescriptor::linkedTrackID() const { return get(*this, Properties::linkedTrackID); }
void FileDescriptor::linkedTrackID(Types::UInt32 const& id) { put(*this, Properties::linkedTrackID, id); }
void FileDescriptor::resetLinkedTrackID() { reset(*this, Properties::linkedTrackID); }

MultipleDescriptor::MultipleDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                       MetadataSetOwner* owner)
    : FileDescriptor(classKey(), definition, owner) {}
MultipleDescriptor::~MultipleDescriptor() = default;

KLV::Key const& MultipleDescriptor::classKey() { return StructuralMetadataKeys::multipleDescriptor(); }

Templates::vector<FileDescriptor*> MultipleDescriptor::fileDescriptors() const {
    return get(*this, Properties::fileDescriptors);
}
void MultipleDescriptor::addFileDescriptor(FileDescriptor const& descriptor) {
    Structural::add(*this, Properties::fileDescriptors, descriptor);
}
bool MultipleDescriptor::removeFileDescriptor(FileDescriptor const& descriptor) {
    return remove(*this, Properties::fileDescriptors, descriptor);
}

} // namespace MXF::Zelm::Metadata::Structural
