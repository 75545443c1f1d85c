/// The pieces of a sequence (SMPTE 377M): clips of other packages, timecode, descriptive metadata.
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UUID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

/// What all components have.
class MXFZELM_EXPORT StructuralComponent : public TrackableMetadataSet {
public:
    ~StructuralComponent() override;

    /// What kind of essence or data this is about: a label, see DataDefinitions.h.
    Types::UniversalLabel const* dataDefinition() const;
    void dataDefinition(Types::UniversalLabel const& definition);

    /// In edit units of the track; -1 while it is not known.
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

protected:
    StructuralComponent(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                        MetadataSetOwner* owner);
};

/// A piece of a track of another package.
class MXFZELM_EXPORT SourceClip : public StructuralComponent {
public:
    SourceClip(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~SourceClip() override;

    static KLV::Key const& classKey();

    /// Where the piece begins in the other track, in edit units of the track that holds the clip; 0 at the
    /// end of the chain.
    Types::Position const* startPosition() const;
    void startPosition(Types::Position const& position);

    /// The other package; all zero at the end of the chain.
    Types::UMID32 const* sourcePackageID() const;
    void sourcePackageID(Types::UMID32 const& package);

    /// The track in the other package; 0 at the end of the chain.
    Types::UInt32 const* sourceTrackID() const;
    void sourceTrackID(Types::UInt32 const& id);

    /// The channels (UInt32) taken from a track of several channels. Optional: absent for all.
    Types::Array const* channelIDs() const;
    void channelIDs(Types::Array const& channels);
    void addChannelID(Types::UInt32 const& channel);
    void resetChannelIDs();

    /// Tracks of one channel (UInt32) that together make a clip of several. Optional.
    Types::Array const* monoSourceTrackIDs() const;
    void monoSourceTrackIDs(Types::Array const& tracks);
    void addMonoSourceTrackID(Types::UInt32 const& track);
    void resetMonoSourceTrackIDs();

protected:
    SourceClip(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
};

/// A clip of a descriptive track of another package.
class MXFZELM_EXPORT DMSourceClip : public SourceClip {
public:
    DMSourceClip(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~DMSourceClip() override;

    static KLV::Key const& classKey();

    /// The tracks of this package (UInt32) that are described. Optional: absent for all essence tracks.
    Types::Batch const* dmSourceClipTrackIDs() const;
    void dmSourceClipTrackIDs(Types::Batch const& tracks);
    void addDMSourceClipTrackID(Types::UInt32 const& track);
    void resetDMSourceClipTrackIDs();
};

/// Timecode that runs without a jump.
class MXFZELM_EXPORT TimecodeComponent : public StructuralComponent {
public:
    TimecodeComponent(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~TimecodeComponent() override;

    static KLV::Key const& classKey();

    /// The first timecode, in frames since midnight, dropped numbers not counted.
    Types::Position const* startTimecode() const;
    void startTimecode(Types::Position const& frames);

    /// Frames a second, rounded to a whole number: 24, 25, 30, 50 or 60.
    Types::UInt16 const* roundedTimecodeBase() const;
    void roundedTimecodeBase(Types::UInt16 const& base);

    /// Whether timecodes are dropped to keep up with the time of day.
    Types::Boolean const* dropFrame() const;
    void dropFrame(Types::Boolean const& isDropFrame);
};

/// A piece of descriptive metadata: holds one framework of a descriptive scheme.
class MXFZELM_EXPORT DMSegment : public StructuralComponent {
public:
    DMSegment(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~DMSegment() override;

    static KLV::Key const& classKey();

    /// Where the segment begins, in edit units of its track; on event tracks, which require it, and nowhere
    /// else.
    Types::Position const* eventStartPosition() const;
    void eventStartPosition(Types::Position const& position);
    void resetEventStartPosition();

    /// What people call the segment. Optional.
    Types::UTF16String const* eventComment() const;
    void eventComment(Types::UTF16String const& comment);
    void resetEventComment();

    /// A source reference to further annotation. Optional.
    MetadataSet* annotationSource() const;
    void annotationSource(MetadataSet const& source);
    void resetAnnotationSource();

    /// The tracks of the package (UInt32) that are described. Optional: absent for all essence tracks.
    Types::Batch const* trackIDs() const;
    void trackIDs(Types::Batch const& tracks);
    void addTrackID(Types::UInt32 const& track);
    void resetTrackIDs();

    /// The descriptive framework. Optional.
    MetadataSet* dmFramework() const;
    void dmFramework(MetadataSet const& framework);
    void resetDMFramework();

    /// The plug-in that made the metadata (SMPTE 377-1). Optional.
    Types::UUID const* descriptiveMetadataPlugInID() const;
    void descriptiveMetadataPlugInID(Types::UUID const& plugIn);
    void resetDescriptiveMetadataPlugInID();

    /// The scheme of the framework (SMPTE 377-1). Optional.
    Types::UniversalLabel const* descriptiveMetadataScheme() const;
    void descriptiveMetadataScheme(Types::UniversalLabel const& scheme);
    void resetDescriptiveMetadataScheme();

    /// The environment of the application that made the metadata (SMPTE 377-1). Optional.
    Types::UTF16String const* descriptiveMetadataApplicationEnvironmentID() const;
    void descriptiveMetadataApplicationEnvironmentID(Types::UTF16String const& environment);
    void resetDescriptiveMetadataApplicationEnvironmentID();
};

} // namespace MXF::Zelm::Metadata::Structural
