/// Descriptors of essence in general: of any kind, of essence in a container, and of several at once (SMPTE
/// 377M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

class Locator;

/// What is known about the essence of a source package.
class MXFZELM_EXPORT GenericDescriptor : public TrackableMetadataSet {
public:
    ~GenericDescriptor() override;

    /// Where the essence may be found, the first place being tried first; none when it is in this file.
    /// Optional.
    Templates::vector<Locator*> locators() const;
    void addLocator(Locator const& locator);
    bool removeLocator(Locator const& locator);
    void resetLocators();

    /// What one coding or application adds to the descriptor: a JPEG2000PictureSubDescriptor, or a set of
    /// another class, such as a channel label, whose values are reached by name (MetadataSet::findElement).
    /// Optional.
    Templates::vector<MetadataSet*> subDescriptors() const;
    void addSubDescriptor(MetadataSet const& subDescriptor);
    bool removeSubDescriptor(MetadataSet const& subDescriptor);
    void resetSubDescriptors();

protected:
    GenericDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                      MetadataSetOwner* owner);
};

/// Describes essence in an essence container, in this file or another.
class MXFZELM_EXPORT FileDescriptor : public GenericDescriptor {
public:
    FileDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~FileDescriptor() override;

    static KLV::Key const& classKey();

    /// Edit units of the essence container in a second: the picture rate when wrapped by frames, the audio
    /// rate for sound that is wrapped as a clip.
    Types::Rational const* sampleRate() const;
    void sampleRate(Types::Rational const& rate);

    /// Length of the essence in units of `sampleRate`; -1 is unknown. Optional.
    Types::Length const* containerDuration() const;
    void containerDuration(Types::Length const& duration);
    void resetContainerDuration();

    /// The label of the essence container (its wrapping), as in the partition packs.
    Types::UniversalLabel const* essenceContainer() const;
    void essenceContainer(Types::UniversalLabel const& label);
    void resetEssenceContainer();

    /// The label of the codec definition. Optional.
    Types::UniversalLabel const* codec() const;
    void codec(Types::UniversalLabel const& label);
    void resetCodec();

    /// The ID of the track in the same package that this describes; in a MultipleDescriptor each file
    /// descriptor needs one. Optional.
    Types::UInt32 const* linkedTrackID() const;
    void linkedTrackID(Types::UInt32 const& id);
    void resetLinkedTrackID();

protected:
    FileDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                   MetadataSetOwner* owner);
};

/// Describes a source package with several essence tracks. `essenceContainer` is the label that all file
/// descriptors share, else the one for multiple wrappings.
class MXFZELM_EXPORT MultipleDescriptor : public FileDescriptor {
public:
    MultipleDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~MultipleDescriptor() override;

    static KLV::Key const& classKey();

    /// One descriptor for each essence track, in their order.
    Templates::vector<FileDescriptor*> fileDescriptors() const;
    void addFileDescriptor(FileDescriptor const& descriptor);
    bool removeFileDescriptor(FileDescriptor const& descriptor);
};

} // namespace MXF::Zelm::Metadata::Structural
