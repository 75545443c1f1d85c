/// The properties of descriptors, sub-descriptors and locators (SMPTE 377M and the essence mappings), grouped
/// by the class that brings them in; Properties.h has those of the other sets.
#pragma once

#include "MXF/Zelm/Metadata/Structural/Property.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/J2KTypes.h"
#include "MXF/Zelm/Types/RGBALayout.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata {
class MetadataSet;
}

namespace MXF::Zelm::Metadata::Structural {

class FileDescriptor;
class Locator;
class UnknownChunkSet;

namespace Properties {

using namespace KLV::Literals;

// GenericDescriptor
inline constexpr References<Locator> locators{"060E2B34.01010102.06010104.06030000"_key};
inline constexpr References<MetadataSet> subDescriptors{"060E2B34.01010109.06010104.06100000"_key};

// FileDescriptor
inline constexpr Property<Types::Rational> sampleRate{"060E2B34.01010101.04060101.00000000"_key};
inline constexpr Property<Types::Length> containerDuration{"060E2B34.01010101.04060102.00000000"_key};
inline constexpr Property<Types::UniversalLabel> essenceContainer{"060E2B34.01010102.06010104.01020000"_key};
inline constexpr Property<Types::UniversalLabel> codec{"060E2B34.01010102.06010104.01030000"_key};
inline constexpr Property<Types::UInt32> linkedTrackID{"060E2B34.01010105.06010103.05000000"_key};

// MultipleDescriptor
inline constexpr References<FileDescriptor> fileDescriptors{"060E2B34.01010104.06010104.060B0000"_key};

// GenericPictureEssenceDescriptor
inline constexpr Property<Types::UInt8> frameLayout{"060E2B34.01010101.04010301.04000000"_key};
inline constexpr Property<Types::UInt32> storedWidth{"060E2B34.01010101.04010502.02000000"_key};
inline constexpr Property<Types::UInt32> storedHeight{"060E2B34.01010101.04010502.01000000"_key};
inline constexpr Property<Types::Int32> storedF2Offset{"060E2B34.01010105.04010302.08000000"_key};
inline constexpr Property<Types::UInt32> sampledWidth{"060E2B34.01010101.04010501.08000000"_key};
inline constexpr Property<Types::UInt32> sampledHeight{"060E2B34.01010101.04010501.07000000"_key};
inline constexpr Property<Types::Int32> sampledXOffset{"060E2B34.01010101.04010501.09000000"_key};
inline constexpr Property<Types::Int32> sampledYOffset{"060E2B34.01010101.04010501.0A000000"_key};
inline constexpr Property<Types::UInt32> displayWidth{"060E2B34.01010101.04010501.0C000000"_key};
inline constexpr Property<Types::UInt32> displayHeight{"060E2B34.01010101.04010501.0B000000"_key};
inline constexpr Property<Types::Int32> displayXOffset{"060E2B34.01010101.04010501.0D000000"_key};
inline constexpr Property<Types::Int32> displayYOffset{"060E2B34.01010101.04010501.0E000000"_key};
inline constexpr Property<Types::Int32> displayF2Offset{"060E2B34.01010105.04010302.07000000"_key};
inline constexpr Property<Types::UInt32> activeWidth{"060E2B34.0101010E.04010501.14000000"_key};
inline constexpr Property<Types::UInt32> activeHeight{"060E2B34.0101010E.04010501.13000000"_key};
inline constexpr Property<Types::UInt32> activeXOffset{"060E2B34.0101010E.04010501.15000000"_key};
inline constexpr Property<Types::UInt32> activeYOffset{"060E2B34.0101010E.04010501.16000000"_key};
inline constexpr Property<Types::Rational> aspectRatio{"060E2B34.01010101.04010101.01000000"_key};
inline constexpr Property<Types::UInt8> activeFormatDescriptor{"060E2B34.01010105.04010302.09000000"_key};
inline constexpr Property<Types::Batch> alternativeCenterCuts{"060E2B34.0101010E.04010302.0B000000"_key};
inline constexpr Property<Types::Array> videoLineMap{"060E2B34.01010102.04010302.05000000"_key};
inline constexpr Property<Types::UInt8> fieldDominance{"060E2B34.01010102.04010301.06000000"_key};
inline constexpr Property<Types::SignalStandard> signalStandard{"060E2B34.01010105.04050113.00000000"_key};
inline constexpr Property<Types::UniversalLabel> pictureEssenceCoding{
    "060E2B34.01010102.04010601.00000000"_key};
inline constexpr Property<Types::UniversalLabel> transferCharacteristic{
    "060E2B34.01010102.04010201.01010200"_key};
inline constexpr Property<Types::UniversalLabel> codingEquations{"060E2B34.01010102.04010201.01030100"_key};
inline constexpr Property<Types::UniversalLabel> colorPrimaries{"060E2B34.01010109.04010201.01060100"_key};
inline constexpr Property<Types::UInt8> alphaTransparency{"060E2B34.01010102.05200102.00000000"_key};
inline constexpr Property<Types::UInt32> imageAlignmentOffset{"060E2B34.01010102.04180101.00000000"_key};
inline constexpr Property<Types::UInt32> imageStartOffset{"060E2B34.01010102.04180102.00000000"_key};
inline constexpr Property<Types::UInt32> imageEndOffset{"060E2B34.01010102.04180103.00000000"_key};
inline constexpr Property<Types::DataValue> masteringDisplayPrimaries{
    "060E2B34.0101010E.04200401.01010000"_key};
inline constexpr Property<Types::DataValue> masteringDisplayWhitePointChromaticity{
    "060E2B34.0101010E.04200401.01020000"_key};
inline constexpr Property<Types::UInt32> masteringDisplayMaximumLuminance{
    "060E2B34.0101010E.04200401.01030000"_key};
inline constexpr Property<Types::UInt32> masteringDisplayMinimumLuminance{
    "060E2B34.0101010E.04200401.01040000"_key};

// CDCIEssenceDescriptor
inline constexpr Property<Types::UInt32> componentDepth{"060E2B34.01010102.04010503.0A000000"_key};
inline constexpr Property<Types::UInt32> horizontalSubsampling{"060E2B34.01010101.04010501.05000000"_key};
inline constexpr Property<Types::UInt32> verticalSubsampling{"060E2B34.01010102.04010501.10000000"_key};
inline constexpr Property<Types::UInt8> colorSiting{"060E2B34.01010101.04010501.06000000"_key};
inline constexpr Property<Types::UInt32> blackRefLevel{"060E2B34.01010101.04010503.03000000"_key};
inline constexpr Property<Types::UInt32> whiteRefLevel{"060E2B34.01010101.04010503.04000000"_key};
inline constexpr Property<Types::UInt32> colorRange{"060E2B34.01010102.04010503.05000000"_key};
inline constexpr Property<Types::UInt32> alphaSampleDepth{"060E2B34.01010102.04010503.07000000"_key};
inline constexpr Property<Types::Int16> paddingBits{"060E2B34.01010102.04180104.00000000"_key};
inline constexpr Property<Types::Boolean> reversedByteOrder{"060E2B34.01010105.03010201.0A000000"_key};

// MPEG2VideoDescriptor
inline constexpr Property<Types::Boolean> singleSequence{"060E2B34.01010105.04010602.01020000"_key};
inline constexpr Property<Types::Boolean> constantBFrames{"060E2B34.01010105.04010602.01030000"_key};
inline constexpr Property<Types::UInt8> codedContentType{"060E2B34.01010105.04010602.01040000"_key};
inline constexpr Property<Types::Boolean> lowDelay{"060E2B34.01010105.04010602.01050000"_key};
inline constexpr Property<Types::Boolean> closedGOP{"060E2B34.01010105.04010602.01060000"_key};
inline constexpr Property<Types::Boolean> identicalGOP{"060E2B34.01010105.04010602.01070000"_key};
inline constexpr Property<Types::UInt16> maxGOP{"060E2B34.01010105.04010602.01080000"_key};
inline constexpr Property<Types::UInt16> bPictureCount{"060E2B34.01010105.04010602.01090000"_key};
inline constexpr Property<Types::UInt32> bitRate{"060E2B34.01010105.04010602.010B0000"_key};
inline constexpr Property<Types::UInt8> profileAndLevel{"060E2B34.01010105.04010602.010A0000"_key};

// RGBAEssenceDescriptor
inline constexpr Property<Types::RGBALayout> pixelLayout{"060E2B34.01010102.04010503.06000000"_key};
inline constexpr Property<Types::UInt32> componentMinRef{"060E2B34.01010105.04010503.0C000000"_key};
inline constexpr Property<Types::UInt32> componentMaxRef{"060E2B34.01010105.04010503.0B000000"_key};
inline constexpr Property<Types::UInt32> alphaMinRef{"060E2B34.01010105.04010503.0E000000"_key};
inline constexpr Property<Types::UInt32> alphaMaxRef{"060E2B34.01010105.04010503.0D000000"_key};
inline constexpr Property<Types::Orientation> scanningDirection{"060E2B34.01010105.04010404.01000000"_key};
inline constexpr Property<Types::DataValue> palette{"060E2B34.01010102.04010503.08000000"_key};
inline constexpr Property<Types::RGBALayout> paletteLayout{"060E2B34.01010102.04010503.09000000"_key};

// GenericSoundEssenceDescriptor
inline constexpr Property<Types::Rational> audioSamplingRate{"060E2B34.01010105.04020301.01010000"_key};
inline constexpr Property<Types::Boolean> locked{"060E2B34.01010104.04020301.04000000"_key};
inline constexpr Property<Types::Int8> audioRefLevel{"060E2B34.01010101.04020101.03000000"_key};
inline constexpr Property<Types::UInt8> electrospatialFormulation{"060E2B34.01010101.04020101.01000000"_key};
inline constexpr Property<Types::UInt32> channelCount{"060E2B34.01010105.04020101.04000000"_key};
inline constexpr Property<Types::UInt32> quantizationBits{"060E2B34.01010104.04020303.04000000"_key};
inline constexpr Property<Types::Int8> dialNorm{"060E2B34.01010105.04020701.00000000"_key};
inline constexpr Property<Types::UniversalLabel> soundEssenceCompression{
    "060E2B34.01010102.04020402.00000000"_key};
inline constexpr Property<Types::Int8> referenceAudioAlignmentLevel{
    "060E2B34.0101010E.04020101.07000000"_key};
inline constexpr Property<Types::Rational> referenceImageEditRate{"060E2B34.0101010E.04020101.06000000"_key};

// WAVEAudioEssenceDescriptor
inline constexpr Property<Types::UInt16> blockAlign{"060E2B34.01010105.04020302.01000000"_key};
inline constexpr Property<Types::UInt8> sequenceOffset{"060E2B34.01010105.04020302.02000000"_key};
inline constexpr Property<Types::UInt32> avgBps{"060E2B34.01010105.04020303.05000000"_key};
inline constexpr Property<Types::UniversalLabel> channelAssignment{"060E2B34.01010107.04020101.05000000"_key};
inline constexpr Property<Types::UInt32> peakEnvelopeVersion{"060E2B34.01010108.04020301.06000000"_key};
inline constexpr Property<Types::UInt32> peakEnvelopeFormat{"060E2B34.01010108.04020301.07000000"_key};
inline constexpr Property<Types::UInt32> pointsPerPeakValue{"060E2B34.01010108.04020301.08000000"_key};
inline constexpr Property<Types::UInt32> peakEnvelopeBlockSize{"060E2B34.01010108.04020301.09000000"_key};
inline constexpr Property<Types::UInt32> peakChannels{"060E2B34.01010108.04020301.0A000000"_key};
inline constexpr Property<Types::UInt32> peakFrames{"060E2B34.01010108.04020301.0B000000"_key};
inline constexpr Property<Types::Position> peakOfPeaksPosition{"060E2B34.01010108.04020301.0C000000"_key};
inline constexpr Property<Types::Timestamp> peakEnvelopeTimestamp{"060E2B34.01010108.04020301.0D000000"_key};
inline constexpr Property<Types::DataStream> peakEnvelopeData{"060E2B34.01010108.04020301.0E000000"_key};

// AES3AudioEssenceDescriptor
inline constexpr Property<Types::UInt8> emphasis{"060E2B34.01010105.04020501.06000000"_key};
inline constexpr Property<Types::UInt16> blockStartOffset{"060E2B34.01010105.04020302.03000000"_key};
inline constexpr Property<Types::UInt8> auxBitsMode{"060E2B34.01010105.04020501.01000000"_key};
inline constexpr Property<Types::Array> channelStatusMode{"060E2B34.01010105.04020501.02000000"_key};
inline constexpr Property<Types::Array> fixedChannelStatusData{"060E2B34.01010105.04020501.03000000"_key};
inline constexpr Property<Types::Array> userDataMode{"060E2B34.01010105.04020501.04000000"_key};
inline constexpr Property<Types::Array> fixedUserData{"060E2B34.01010105.04020501.05000000"_key};

// GenericDataEssenceDescriptor
inline constexpr Property<Types::UniversalLabel> dataEssenceCoding{"060E2B34.01010103.04030302.00000000"_key};

// SMPTE331MTimeDateItemDescriptor
inline constexpr Property<Types::Rational> dateTimeRate{"060E2B34.01010105.04040102.01000000"_key};
inline constexpr Property<Types::Boolean> dateTimeDropFrame{"060E2B34.01010105.04040102.02000000"_key};
inline constexpr Property<Types::Boolean> dateTimeEmbedded{"060E2B34.01010105.04040102.03000000"_key};
inline constexpr Property<Types::UniversalLabel> dateTimeKind{"060E2B34.01010105.04040102.04000000"_key};

// UnknownChunkSet
inline constexpr Property<Types::UInt32> chunkID{"060E2B34.01010108.04060802.00000000"_key};
inline constexpr Property<Types::UInt32> chunkLength{"060E2B34.01010108.04060903.00000000"_key};
inline constexpr Property<Types::DataStream> chunkData{"060E2B34.01010108.04070400.00000000"_key};

// WAVEAudioPhysicalDescriptor
inline constexpr Property<Types::UTF16String> bextCodingHistory{"060E2B34.01010105.04020502.01010000"_key};
inline constexpr Property<Types::UInt32> qltyFileSecurityReport{"060E2B34.01010105.04020302.05000000"_key};
inline constexpr Property<Types::UInt32> qltyFileSecurityWave{"060E2B34.01010105.04020302.06000000"_key};
inline constexpr Property<Types::UTF16String> qltyBasicData{"060E2B34.01010105.04020502.02010000"_key};
inline constexpr Property<Types::UTF16String> qltyStartOfModulation{
    "060E2B34.01010105.04020502.03010000"_key};
inline constexpr Property<Types::UTF16String> qltyQualityEvent{"060E2B34.01010105.04020502.04010000"_key};
inline constexpr Property<Types::UTF16String> qltyEndOfModulation{"060E2B34.01010105.04020502.05010000"_key};
inline constexpr Property<Types::UTF16String> qltyQualityParameter{"060E2B34.01010105.04020502.06010000"_key};
inline constexpr Property<Types::UTF16String> qltyOperatorComment{"060E2B34.01010105.04020502.07010000"_key};
inline constexpr Property<Types::UTF16String> qltyCueSheet{"060E2B34.01010105.04020502.08010000"_key};
inline constexpr References<UnknownChunkSet> unknownBWFChunks{"060E2B34.01010108.06010104.060F0000"_key};

// JPEG2000PictureSubDescriptor
inline constexpr Property<Types::UInt16> rsiz{"060E2B34.0101010A.04010603.01000000"_key};
inline constexpr Property<Types::UInt32> xsiz{"060E2B34.0101010A.04010603.02000000"_key};
inline constexpr Property<Types::UInt32> ysiz{"060E2B34.0101010A.04010603.03000000"_key};
inline constexpr Property<Types::UInt32> xOsiz{"060E2B34.0101010A.04010603.04000000"_key};
inline constexpr Property<Types::UInt32> yOsiz{"060E2B34.0101010A.04010603.05000000"_key};
inline constexpr Property<Types::UInt32> xTsiz{"060E2B34.0101010A.04010603.06000000"_key};
inline constexpr Property<Types::UInt32> yTsiz{"060E2B34.0101010A.04010603.07000000"_key};
inline constexpr Property<Types::UInt32> xTOsiz{"060E2B34.0101010A.04010603.08000000"_key};
inline constexpr Property<Types::UInt32> yTOsiz{"060E2B34.0101010A.04010603.09000000"_key};
inline constexpr Property<Types::UInt16> csiz{"060E2B34.0101010A.04010603.0A000000"_key};
inline constexpr Property<Types::Array> pictureComponentSizing{"060E2B34.0101010A.04010603.0B000000"_key};
inline constexpr Property<Types::J2KCodingStyleDefault> codingStyleDefault{
    "060E2B34.0101010A.04010603.0C000000"_key};
inline constexpr Property<Types::J2KQuantisationDefault> quantizationDefault{
    "060E2B34.0101010A.04010603.0D000000"_key};
inline constexpr Property<Types::RGBALayout> j2cLayout{"060E2B34.0101010E.04010603.0E000000"_key};
inline constexpr Property<Types::DataValue> j2kExtendedCapabilities{
    "060E2B34.0101010E.04010603.0F000000"_key};
inline constexpr Property<Types::Array> j2kProfile{"060E2B34.0101010E.04010603.10000000"_key};
inline constexpr Property<Types::Array> j2kCorrespondingProfile{"060E2B34.0101010E.04010603.11000000"_key};

// NetworkLocator
inline constexpr Property<Types::UTF16String> urlString{"060E2B34.01010101.01020101.01000000"_key};

// TextLocator
inline constexpr Property<Types::UTF16String> locatorName{"060E2B34.01010102.01040102.01000000"_key};

} // namespace Properties
} // namespace MXF::Zelm::Metadata::Structural
