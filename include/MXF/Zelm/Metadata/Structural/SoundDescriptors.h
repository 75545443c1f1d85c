/// Descriptors of sound (SMPTE 377M), of Wave and AES3 sound among them (SMPTE 382M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

/// Describes sound; by itself, that of the eight-channel AES3 element (SMPTE 331M).
class MXFZELM_EXPORT GenericSoundEssenceDescriptor : public FileDescriptor {
public:
    GenericSoundEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~GenericSoundEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// Samples of a channel in a second, such as 48000/1; 0/0 is unknown.
    Types::Rational const* audioSamplingRate() const;
    void audioSamplingRate(Types::Rational const& rate);
    void resetAudioSamplingRate();

    /// True when the samples are locked to the pictures.
    Types::Boolean const* locked() const;
    void locked(Types::Boolean const& locked);
    void resetLocked();

    /// dBm that stand for 0 VU. Optional.
    Types::Int8 const* audioRefLevel() const;
    void audioRefLevel(Types::Int8 const& level);
    void resetAudioRefLevel();

    /// What the channels are, as in AES3: 0 default, 1 two channels, 2 single channel, 3 primary and
    /// secondary, 4 stereo, 7 single channel at twice the rate, 8 left and 9 right of stereo at twice the
    /// rate, 15 several channels. Optional.
    Types::UInt8 const* electrospatialFormulation() const;
    void electrospatialFormulation(Types::UInt8 const& formulation);
    void resetElectrospatialFormulation();

    /// Channels of the essence; 0 is unknown.
    Types::UInt32 const* channelCount() const;
    void channelCount(Types::UInt32 const& channels);
    void resetChannelCount();

    /// Bits of a sample, such as 16 or 24; 0 is unknown.
    Types::UInt32 const* quantizationBits() const;
    void quantizationBits(Types::UInt32 const& bits);
    void resetQuantizationBits();

    /// Dialogue level in dB, to bring programmes to the same loudness. Optional.
    Types::Int8 const* dialNorm() const;
    void dialNorm(Types::Int8 const& level);
    void resetDialNorm();

    /// The label of the coding of the sound; absent for uncompressed samples.
    Types::UniversalLabel const* soundEssenceCompression() const;
    void soundEssenceCompression(Types::UniversalLabel const& label);
    void resetSoundEssenceCompression();

    /// Alignment level in dB of full scale. Optional.
    Types::Int8 const* referenceAudioAlignmentLevel() const;
    void referenceAudioAlignmentLevel(Types::Int8 const& level);
    void resetReferenceAudioAlignmentLevel();

    /// Rate of the pictures that the sound belongs to. Optional.
    Types::Rational const* referenceImageEditRate() const;
    void referenceImageEditRate(Types::Rational const& rate);
    void resetReferenceImageEditRate();

protected:
    GenericSoundEssenceDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                                  MetadataSetOwner* owner);
};

/// Describes uncompressed sound as in a Wave file (SMPTE 382M). The peak envelope is that of the `levl` chunk
/// (EBU 3285-3).
class MXFZELM_EXPORT WAVEAudioEssenceDescriptor : public GenericSoundEssenceDescriptor {
public:
    WAVEAudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~WAVEAudioEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// Bytes of one sample of all channels.
    Types::UInt16 const* blockAlign() const;
    void blockAlign(Types::UInt16 const& bytes);

    /// Where in the cadence of five frames (1602, 1601, …) the first one stands, 0 to 4. Optional.
    Types::UInt8 const* sequenceOffset() const;
    void sequenceOffset(Types::UInt8 const& frames);
    void resetSequenceOffset();

    /// Bytes in a second: `audioSamplingRate` times `blockAlign`.
    Types::UInt32 const* avgBps() const;
    void avgBps(Types::UInt32 const& bytes);

    /// The label of the scheme by which channels are assigned. Optional.
    Types::UniversalLabel const* channelAssignment() const;
    void channelAssignment(Types::UniversalLabel const& label);
    void resetChannelAssignment();

    /// Version of the peak envelope. Optional.
    Types::UInt32 const* peakEnvelopeVersion() const;
    void peakEnvelopeVersion(Types::UInt32 const& version);
    void resetPeakEnvelopeVersion();

    /// Size of a peak point: 1 one byte, 2 two bytes. Optional.
    Types::UInt32 const* peakEnvelopeFormat() const;
    void peakEnvelopeFormat(Types::UInt32 const& format);
    void resetPeakEnvelopeFormat();

    /// Peak points of a value: 1 magnitude, 2 positive and negative. Optional.
    Types::UInt32 const* pointsPerPeakValue() const;
    void pointsPerPeakValue(Types::UInt32 const& points);
    void resetPointsPerPeakValue();

    /// Samples that each peak value stands for. Optional.
    Types::UInt32 const* peakEnvelopeBlockSize() const;
    void peakEnvelopeBlockSize(Types::UInt32 const& samples);
    void resetPeakEnvelopeBlockSize();

    /// Channels of the peak envelope. Optional.
    Types::UInt32 const* peakChannels() const;
    void peakChannels(Types::UInt32 const& channels);
    void resetPeakChannels();

    /// Number of peak frames, of one value for each channel. Optional.
    Types::UInt32 const* peakFrames() const;
    void peakFrames(Types::UInt32 const& frames);
    void resetPeakFrames();

    /// The sample with the greatest peak; -1 is unknown. Optional.
    Types::Position const* peakOfPeaksPosition() const;
    void peakOfPeaksPosition(Types::Position const& position);
    void resetPeakOfPeaksPosition();

    /// When the peaks were found. Optional.
    Types::Timestamp const* peakEnvelopeTimestamp() const;
    void peakEnvelopeTimestamp(Types::Timestamp const& time);
    void resetPeakEnvelopeTimestamp();

    /// The peak points. Optional.
    Types::DataStream const* peakEnvelopeData() const;
    void peakEnvelopeData(Types::DataStream const& data);
    void resetPeakEnvelopeData();

protected:
    WAVEAudioEssenceDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                               MetadataSetOwner* owner);
};

/// Describes AES3 sound (SMPTE 382M): what its channel status and user bits were. Emphasis and the mode of
/// auxiliary bits are written as AES3 prints them, first bit first.
class MXFZELM_EXPORT AES3AudioEssenceDescriptor : public WAVEAudioEssenceDescriptor {
public:
    AES3AudioEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~AES3AudioEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// 0 unknown (default), 4 none, 6 50/15 µs, 7 ITU-T J.17. Optional.
    Types::UInt8 const* emphasis() const;
    void emphasis(Types::UInt8 const& emphasis);
    void resetEmphasis();

    /// Where in the block of 192 AES3 frames the first edit unit begins; by default 0. Optional.
    Types::UInt16 const* blockStartOffset() const;
    void blockStartOffset(Types::UInt16 const& frames);
    void resetBlockStartOffset();

    /// What the auxiliary bits hold: 0 undefined (default), 1 main audio, 2 a coordination signal, 3 user
    /// defined. Optional.
    Types::UInt8 const* auxBitsMode() const;
    void auxBitsMode(Types::UInt8 const& mode);
    void resetAuxBitsMode();

    /// Where the channel status of each channel is, a UInt8 each: 0 nowhere (default), 1 minimum, 2 standard,
    /// 3 in `fixedChannelStatusData`, 4 in a stream, 5 in the essence. Optional.
    Types::Array const* channelStatusMode() const;
    void channelStatusMode(Types::Array const& modes);
    void addChannelStatusMode(Types::UInt8 const& mode);
    void resetChannelStatusMode();

    /// Channel status, 24 bytes (UInt8) for each channel in turn; by default the minimum, a first byte of 1.
    /// Optional.
    Types::Array const* fixedChannelStatusData() const;
    void fixedChannelStatusData(Types::Array const& bytes);
    void addFixedChannelStatusData(Types::UInt8 const& byte);
    void resetFixedChannelStatusData();

    /// What the user bits of each channel are, a UInt8 each: 0 undefined (default), 1 192-bit blocks, 2
    /// AES18, 3 user defined, 4 IEC 60958-3, 5 metadata. Optional.
    Types::Array const* userDataMode() const;
    void userDataMode(Types::Array const& modes);
    void addUserDataMode(Types::UInt8 const& mode);
    void resetUserDataMode();

    /// User bits, 24 bytes (UInt8) for each channel in turn; by default zero. Optional.
    Types::Array const* fixedUserData() const;
    void fixedUserData(Types::Array const& bytes);
    void addFixedUserData(Types::UInt8 const& byte);
    void resetFixedUserData();
};

} // namespace MXF::Zelm::Metadata::Structural
