/// Descriptors of what the essence was before it came into a file (SMPTE 377M, 382M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Strings.h"

namespace MXF::Zelm::Metadata::Structural {

/// Describes the medium of a source package at the far end of a chain of sources.
class MXFZELM_EXPORT PhysicalDescriptor : public GenericDescriptor {
public:
    ~PhysicalDescriptor() override;

protected:
    PhysicalDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                       MetadataSetOwner* owner);
};

/// A RIFF chunk of a Wave file that no property stands for (SMPTE 382M).
class MXFZELM_EXPORT UnknownChunkSet : public TrackableMetadataSet {
public:
    UnknownChunkSet(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~UnknownChunkSet() override;

    static KLV::Key const& classKey();

    /// The four characters of the chunk's name, the first in the highest byte.
    Types::UInt32 const* chunkID() const;
    void chunkID(Types::UInt32 const& id);

    /// Bytes of the chunk's data.
    Types::UInt32 const* chunkLength() const;
    void chunkLength(Types::UInt32 const& bytes);

    /// The chunk's data.
    Types::DataStream const* chunkData() const;
    void chunkData(Types::DataStream const& data);
};

/// The history and the quality report of a Broadcast Wave file (`bext` and `qlty` chunks, EBU 3285 and
/// 3285-2).
class MXFZELM_EXPORT WAVEAudioPhysicalDescriptor : public PhysicalDescriptor {
public:
    WAVEAudioPhysicalDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~WAVEAudioPhysicalDescriptor() override;

    static KLV::Key const& classKey();

    /// The coding history of the `bext` chunk, a line for each process. Optional.
    Types::UTF16String const* bextCodingHistory() const;
    void bextCodingHistory(Types::UTF16String const& history);
    void resetBextCodingHistory();

    /// Checksum of the quality report. Optional.
    Types::UInt32 const* qltyFileSecurityReport() const;
    void qltyFileSecurityReport(Types::UInt32 const& code);
    void resetQltyFileSecurityReport();

    /// Checksum of the sound. Optional.
    Types::UInt32 const* qltyFileSecurityWave() const;
    void qltyFileSecurityWave(Types::UInt32 const& code);
    void resetQltyFileSecurityWave();

    /// Basic data of the capture. Optional.
    Types::UTF16String const* qltyBasicData() const;
    void qltyBasicData(Types::UTF16String const& text);
    void resetQltyBasicData();

    /// Where the recording begins. Optional.
    Types::UTF16String const* qltyStartOfModulation() const;
    void qltyStartOfModulation(Types::UTF16String const& text);
    void resetQltyStartOfModulation();

    /// What was found at some place. Optional.
    Types::UTF16String const* qltyQualityEvent() const;
    void qltyQualityEvent(Types::UTF16String const& text);
    void resetQltyQualityEvent();

    /// Where the recording ends. Optional.
    Types::UTF16String const* qltyEndOfModulation() const;
    void qltyEndOfModulation(Types::UTF16String const& text);
    void resetQltyEndOfModulation();

    /// Measurements of the recording. Optional.
    Types::UTF16String const* qltyQualityParameter() const;
    void qltyQualityParameter(Types::UTF16String const& text);
    void resetQltyQualityParameter();

    /// What the operator remarked. Optional.
    Types::UTF16String const* qltyOperatorComment() const;
    void qltyOperatorComment(Types::UTF16String const& text);
    void resetQltyOperatorComment();

    /// Places in the recording, and what is there. Optional.
    Types::UTF16String const* qltyCueSheet() const;
    void qltyCueSheet(Types::UTF16String const& text);
    void resetQltyCueSheet();

    /// Further chunks of the file, in their order. Optional.
    Templates::vector<UnknownChunkSet*> unknownBWFChunks() const;
    void addUnknownBWFChunk(UnknownChunkSet const& chunk);
    bool removeUnknownBWFChunk(UnknownChunkSet const& chunk);
    void resetUnknownBWFChunks();
};

} // namespace MXF::Zelm::Metadata::Structural
