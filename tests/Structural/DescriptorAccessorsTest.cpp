/// The accessors of the descriptors, sub-descriptors and locators.
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Locators.h"
#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"
#include "support/Accessors.h"

namespace MXF::Zelm::Test {

using namespace Metadata::Structural;

namespace {

std::vector<Accessor> genericRows() {
    using Set = GenericDescriptor;
    return {
        references("locators", &Set::locators, &Set::addLocator, &Set::removeLocator, &Set::resetLocators),
        references("subDescriptors", &Set::subDescriptors, &Set::addSubDescriptor, &Set::removeSubDescriptor,
                   &Set::resetSubDescriptors),
    };
}

std::vector<Accessor> fileRows() {
    using Set = FileDescriptor;
    return {
        value("sampleRate", &Set::sampleRate, &Set::sampleRate),
        value("containerDuration", &Set::containerDuration, &Set::containerDuration,
              &Set::resetContainerDuration),
        value("essenceContainer", &Set::essenceContainer, &Set::essenceContainer,
              &Set::resetEssenceContainer),
        value("codec", &Set::codec, &Set::codec, &Set::resetCodec),
        value("linkedTrackID", &Set::linkedTrackID, &Set::linkedTrackID, &Set::resetLinkedTrackID),
    };
}

std::vector<Accessor> multipleRows() {
    using Set = MultipleDescriptor;
    return {
        references("fileDescriptors", &Set::fileDescriptors, &Set::addFileDescriptor,
                   &Set::removeFileDescriptor),
    };
}

std::vector<Accessor> pictureRows() {
    using Set = GenericPictureEssenceDescriptor;
    return {
        value("frameLayout", &Set::frameLayout, &Set::frameLayout, &Set::resetFrameLayout),
        value("storedWidth", &Set::storedWidth, &Set::storedWidth, &Set::resetStoredWidth),
        value("storedHeight", &Set::storedHeight, &Set::storedHeight, &Set::resetStoredHeight),
        value("storedF2Offset", &Set::storedF2Offset, &Set::storedF2Offset, &Set::resetStoredF2Offset),
        value("sampledWidth", &Set::sampledWidth, &Set::sampledWidth, &Set::resetSampledWidth),
        value("sampledHeight", &Set::sampledHeight, &Set::sampledHeight, &Set::resetSampledHeight),
        value("sampledXOffset", &Set::sampledXOffset, &Set::sampledXOffset, &Set::resetSampledXOffset),
        value("sampledYOffset", &Set::sampledYOffset, &Set::sampledYOffset, &Set::resetSampledYOffset),
        value("displayWidth", &Set::displayWidth, &Set::displayWidth, &Set::resetDisplayWidth),
        value("displayHeight", &Set::displayHeight, &Set::displayHeight, &Set::resetDisplayHeight),
        value("displayXOffset", &Set::displayXOffset, &Set::displayXOffset, &Set::resetDisplayXOffset),
        value("displayYOffset", &Set::displayYOffset, &Set::displayYOffset, &Set::resetDisplayYOffset),
        value("displayF2Offset", &Set::displayF2Offset, &Set::displayF2Offset, &Set::resetDisplayF2Offset),
        value("activeWidth", &Set::activeWidth, &Set::activeWidth, &Set::resetActiveWidth),
        value("activeHeight", &Set::activeHeight, &Set::activeHeight, &Set::resetActiveHeight),
        value("activeXOffset", &Set::activeXOffset, &Set::activeXOffset, &Set::resetActiveXOffset),
        value("activeYOffset", &Set::activeYOffset, &Set::activeYOffset, &Set::resetActiveYOffset),
        value("aspectRatio", &Set::aspectRatio, &Set::aspectRatio, &Set::resetAspectRatio),
        value("activeFormatDescriptor", &Set::activeFormatDescriptor, &Set::activeFormatDescriptor,
              &Set::resetActiveFormatDescriptor),
        values("alternativeCenterCuts", &Set::alternativeCenterCuts, &Set::alternativeCenterCuts,
               &Set::addAlternativeCenterCut, &Set::resetAlternativeCenterCuts),
        values("videoLineMap", &Set::videoLineMap, &Set::videoLineMap, &Set::addVideoLineMap,
               &Set::resetVideoLineMap),
        value("fieldDominance", &Set::fieldDominance, &Set::fieldDominance, &Set::resetFieldDominance),
        value("signalStandard", &Set::signalStandard, &Set::signalStandard, &Set::resetSignalStandard),
        value("pictureEssenceCoding", &Set::pictureEssenceCoding, &Set::pictureEssenceCoding,
              &Set::resetPictureEssenceCoding),
        value("transferCharacteristic", &Set::transferCharacteristic, &Set::transferCharacteristic,
              &Set::resetTransferCharacteristic),
        value("codingEquations", &Set::codingEquations, &Set::codingEquations, &Set::resetCodingEquations),
        value("colorPrimaries", &Set::colorPrimaries, &Set::colorPrimaries, &Set::resetColorPrimaries),
        value("alphaTransparency", &Set::alphaTransparency, &Set::alphaTransparency,
              &Set::resetAlphaTransparency),
        value("imageAlignmentOffset", &Set::imageAlignmentOffset, &Set::imageAlignmentOffset,
              &Set::resetImageAlignmentOffset),
        value("imageStartOffset", &Set::imageStartOffset, &Set::imageStartOffset,
              &Set::resetImageStartOffset),
        value("imageEndOffset", &Set::imageEndOffset, &Set::imageEndOffset, &Set::resetImageEndOffset),
        value("masteringDisplayPrimaries", &Set::masteringDisplayPrimaries, &Set::masteringDisplayPrimaries,
              &Set::resetMasteringDisplayPrimaries),
        value("masteringDisplayWhitePointChromaticity", &Set::masteringDisplayWhitePointChromaticity,
              &Set::masteringDisplayWhitePointChromaticity,
              &Set::resetMasteringDisplayWhitePointChromaticity),
        value("masteringDisplayMaximumLuminance", &Set::masteringDisplayMaximumLuminance,
              &Set::masteringDisplayMaximumLuminance, &Set::resetMasteringDisplayMaximumLuminance),
        value("masteringDisplayMinimumLuminance", &Set::masteringDisplayMinimumLuminance,
              &Set::masteringDisplayMinimumLuminance, &Set::resetMasteringDisplayMinimumLuminance),
    };
}

std::vector<Accessor> cdciRows() {
    using Set = CDCIEssenceDescriptor;
    return {
        value("componentDepth", &Set::componentDepth, &Set::componentDepth, &Set::resetComponentDepth),
        value("horizontalSubsampling", &Set::horizontalSubsampling, &Set::horizontalSubsampling,
              &Set::resetHorizontalSubsampling),
        value("verticalSubsampling", &Set::verticalSubsampling, &Set::verticalSubsampling,
              &Set::resetVerticalSubsampling),
        value("colorSiting", &Set::colorSiting, &Set::colorSiting, &Set::resetColorSiting),
        value("blackRefLevel", &Set::blackRefLevel, &Set::blackRefLevel, &Set::resetBlackRefLevel),
        value("whiteRefLevel", &Set::whiteRefLevel, &Set::whiteRefLevel, &Set::resetWhiteRefLevel),
        value("colorRange", &Set::colorRange, &Set::colorRange, &Set::resetColorRange),
        value("alphaSampleDepth", &Set::alphaSampleDepth, &Set::alphaSampleDepth,
              &Set::resetAlphaSampleDepth),
        value("paddingBits", &Set::paddingBits, &Set::paddingBits, &Set::resetPaddingBits),
        value("reversedByteOrder", &Set::reversedByteOrder, &Set::reversedByteOrder,
              &Set::resetReversedByteOrder),
    };
}

std::vector<Accessor> mpeg2Rows() {
    using Set = MPEG2VideoDescriptor;
    return {
        value("singleSequence", &Set::singleSequence, &Set::singleSequence, &Set::resetSingleSequence),
        value("constantBFrames", &Set::constantBFrames, &Set::constantBFrames, &Set::resetConstantBFrames),
        value("codedContentType", &Set::codedContentType, &Set::codedContentType,
              &Set::resetCodedContentType),
        value("lowDelay", &Set::lowDelay, &Set::lowDelay, &Set::resetLowDelay),
        value("closedGOP", &Set::closedGOP, &Set::closedGOP, &Set::resetClosedGOP),
        value("identicalGOP", &Set::identicalGOP, &Set::identicalGOP, &Set::resetIdenticalGOP),
        value("maxGOP", &Set::maxGOP, &Set::maxGOP, &Set::resetMaxGOP),
        value("bPictureCount", &Set::bPictureCount, &Set::bPictureCount, &Set::resetBPictureCount),
        value("bitRate", &Set::bitRate, &Set::bitRate, &Set::resetBitRate),
        value("profileAndLevel", &Set::profileAndLevel, &Set::profileAndLevel, &Set::resetProfileAndLevel),
    };
}

std::vector<Accessor> rgbaRows() {
    using Set = RGBAEssenceDescriptor;
    return {
        value("pixelLayout", &Set::pixelLayout, &Set::pixelLayout, &Set::resetPixelLayout),
        value("componentMinRef", &Set::componentMinRef, &Set::componentMinRef, &Set::resetComponentMinRef),
        value("componentMaxRef", &Set::componentMaxRef, &Set::componentMaxRef, &Set::resetComponentMaxRef),
        value("alphaMinRef", &Set::alphaMinRef, &Set::alphaMinRef, &Set::resetAlphaMinRef),
        value("alphaMaxRef", &Set::alphaMaxRef, &Set::alphaMaxRef, &Set::resetAlphaMaxRef),
        value("scanningDirection", &Set::scanningDirection, &Set::scanningDirection,
              &Set::resetScanningDirection),
        value("palette", &Set::palette, &Set::palette, &Set::resetPalette),
        value("paletteLayout", &Set::paletteLayout, &Set::paletteLayout, &Set::resetPaletteLayout),
    };
}

std::vector<Accessor> soundRows() {
    using Set = GenericSoundEssenceDescriptor;
    return {
        value("audioSamplingRate", &Set::audioSamplingRate, &Set::audioSamplingRate,
              &Set::resetAudioSamplingRate),
        value("locked", &Set::locked, &Set::locked, &Set::resetLocked),
        value("audioRefLevel", &Set::audioRefLevel, &Set::audioRefLevel, &Set::resetAudioRefLevel),
        value("electrospatialFormulation", &Set::electrospatialFormulation, &Set::electrospatialFormulation,
              &Set::resetElectrospatialFormulation),
        value("channelCount", &Set::channelCount, &Set::channelCount, &Set::resetChannelCount),
        value("quantizationBits", &Set::quantizationBits, &Set::quantizationBits,
              &Set::resetQuantizationBits),
        value("dialNorm", &Set::dialNorm, &Set::dialNorm, &Set::resetDialNorm),
        value("soundEssenceCompression", &Set::soundEssenceCompression, &Set::soundEssenceCompression,
              &Set::resetSoundEssenceCompression),
        value("referenceAudioAlignmentLevel", &Set::referenceAudioAlignmentLevel,
              &Set::referenceAudioAlignmentLevel, &Set::resetReferenceAudioAlignmentLevel),
        value("referenceImageEditRate", &Set::referenceImageEditRate, &Set::referenceImageEditRate,
              &Set::resetReferenceImageEditRate),
    };
}

std::vector<Accessor> waveRows() {
    using Set = WAVEAudioEssenceDescriptor;
    return {
        value("blockAlign", &Set::blockAlign, &Set::blockAlign),
        value("sequenceOffset", &Set::sequenceOffset, &Set::sequenceOffset, &Set::resetSequenceOffset),
        value("avgBps", &Set::avgBps, &Set::avgBps),
        value("channelAssignment", &Set::channelAssignment, &Set::channelAssignment,
              &Set::resetChannelAssignment),
        value("peakEnvelopeVersion", &Set::peakEnvelopeVersion, &Set::peakEnvelopeVersion,
              &Set::resetPeakEnvelopeVersion),
        value("peakEnvelopeFormat", &Set::peakEnvelopeFormat, &Set::peakEnvelopeFormat,
              &Set::resetPeakEnvelopeFormat),
        value("pointsPerPeakValue", &Set::pointsPerPeakValue, &Set::pointsPerPeakValue,
              &Set::resetPointsPerPeakValue),
        value("peakEnvelopeBlockSize", &Set::peakEnvelopeBlockSize, &Set::peakEnvelopeBlockSize,
              &Set::resetPeakEnvelopeBlockSize),
        value("peakChannels", &Set::peakChannels, &Set::peakChannels, &Set::resetPeakChannels),
        value("peakFrames", &Set::peakFrames, &Set::peakFrames, &Set::resetPeakFrames),
        value("peakOfPeaksPosition", &Set::peakOfPeaksPosition, &Set::peakOfPeaksPosition,
              &Set::resetPeakOfPeaksPosition),
        value("peakEnvelopeTimestamp", &Set::peakEnvelopeTimestamp, &Set::peakEnvelopeTimestamp,
              &Set::resetPeakEnvelopeTimestamp),
        value("peakEnvelopeData", &Set::peakEnvelopeData, &Set::peakEnvelopeData,
              &Set::resetPeakEnvelopeData),
    };
}

std::vector<Accessor> aes3Rows() {
    using Set = AES3AudioEssenceDescriptor;
    return {
        value("emphasis", &Set::emphasis, &Set::emphasis, &Set::resetEmphasis),
        value("blockStartOffset", &Set::blockStartOffset, &Set::blockStartOffset,
              &Set::resetBlockStartOffset),
        value("auxBitsMode", &Set::auxBitsMode, &Set::auxBitsMode, &Set::resetAuxBitsMode),
        values("channelStatusMode", &Set::channelStatusMode, &Set::channelStatusMode,
               &Set::addChannelStatusMode, &Set::resetChannelStatusMode),
        values("fixedChannelStatusData", &Set::fixedChannelStatusData, &Set::fixedChannelStatusData,
               &Set::addFixedChannelStatusData, &Set::resetFixedChannelStatusData),
        values("userDataMode", &Set::userDataMode, &Set::userDataMode, &Set::addUserDataMode,
               &Set::resetUserDataMode),
        values("fixedUserData", &Set::fixedUserData, &Set::fixedUserData, &Set::addFixedUserData,
               &Set::resetFixedUserData),
    };
}

std::vector<Accessor> dataRows() {
    using Set = GenericDataEssenceDescriptor;
    return {
        value("dataEssenceCoding", &Set::dataEssenceCoding, &Set::dataEssenceCoding,
              &Set::resetDataEssenceCoding),
    };
}

std::vector<Accessor> timeDateRows() {
    using Set = SMPTE331MTimeDateItemDescriptor;
    return {
        value("dateTimeRate", &Set::dateTimeRate, &Set::dateTimeRate, &Set::resetDateTimeRate),
        value("dateTimeDropFrame", &Set::dateTimeDropFrame, &Set::dateTimeDropFrame,
              &Set::resetDateTimeDropFrame),
        value("dateTimeEmbedded", &Set::dateTimeEmbedded, &Set::dateTimeEmbedded,
              &Set::resetDateTimeEmbedded),
        value("dateTimeKind", &Set::dateTimeKind, &Set::dateTimeKind),
    };
}

std::vector<Accessor> chunkRows() {
    using Set = UnknownChunkSet;
    return {
        value("chunkID", &Set::chunkID, &Set::chunkID),
        value("chunkLength", &Set::chunkLength, &Set::chunkLength),
        value("chunkData", &Set::chunkData, &Set::chunkData),
    };
}

std::vector<Accessor> wavePhysicalRows() {
    using Set = WAVEAudioPhysicalDescriptor;
    return {
        value("bextCodingHistory", &Set::bextCodingHistory, &Set::bextCodingHistory,
              &Set::resetBextCodingHistory),
        value("qltyFileSecurityReport", &Set::qltyFileSecurityReport, &Set::qltyFileSecurityReport,
              &Set::resetQltyFileSecurityReport),
        value("qltyFileSecurityWave", &Set::qltyFileSecurityWave, &Set::qltyFileSecurityWave,
              &Set::resetQltyFileSecurityWave),
        value("qltyBasicData", &Set::qltyBasicData, &Set::qltyBasicData, &Set::resetQltyBasicData),
        value("qltyStartOfModulation", &Set::qltyStartOfModulation, &Set::qltyStartOfModulation,
              &Set::resetQltyStartOfModulation),
        value("qltyQualityEvent", &Set::qltyQualityEvent, &Set::qltyQualityEvent,
              &Set::resetQltyQualityEvent),
        value("qltyEndOfModulation", &Set::qltyEndOfModulation, &Set::qltyEndOfModulation,
              &Set::resetQltyEndOfModulation),
        value("qltyQualityParameter", &Set::qltyQualityParameter, &Set::qltyQualityParameter,
              &Set::resetQltyQualityParameter),
        value("qltyOperatorComment", &Set::qltyOperatorComment, &Set::qltyOperatorComment,
              &Set::resetQltyOperatorComment),
        value("qltyCueSheet", &Set::qltyCueSheet, &Set::qltyCueSheet, &Set::resetQltyCueSheet),
        references("unknownBWFChunks", &Set::unknownBWFChunks, &Set::addUnknownBWFChunk,
                   &Set::removeUnknownBWFChunk, &Set::resetUnknownBWFChunks),
    };
}

std::vector<Accessor> jpeg2000Rows() {
    using Set = JPEG2000PictureSubDescriptor;
    return {
        value("rsiz", &Set::rsiz, &Set::rsiz),
        value("xsiz", &Set::xsiz, &Set::xsiz),
        value("ysiz", &Set::ysiz, &Set::ysiz),
        value("xOsiz", &Set::xOsiz, &Set::xOsiz),
        value("yOsiz", &Set::yOsiz, &Set::yOsiz),
        value("xTsiz", &Set::xTsiz, &Set::xTsiz),
        value("yTsiz", &Set::yTsiz, &Set::yTsiz),
        value("xTOsiz", &Set::xTOsiz, &Set::xTOsiz),
        value("yTOsiz", &Set::yTOsiz, &Set::yTOsiz),
        value("csiz", &Set::csiz, &Set::csiz),
        values("pictureComponentSizing", &Set::pictureComponentSizing, &Set::pictureComponentSizing,
               &Set::addPictureComponentSizing),
        value("codingStyleDefault", &Set::codingStyleDefault, &Set::codingStyleDefault,
              &Set::resetCodingStyleDefault),
        value("quantizationDefault", &Set::quantizationDefault, &Set::quantizationDefault,
              &Set::resetQuantizationDefault),
        value("j2cLayout", &Set::j2cLayout, &Set::j2cLayout, &Set::resetJ2cLayout),
        value("j2kExtendedCapabilities", &Set::j2kExtendedCapabilities, &Set::j2kExtendedCapabilities,
              &Set::resetJ2kExtendedCapabilities),
        values("j2kProfile", &Set::j2kProfile, &Set::j2kProfile, &Set::addJ2kProfile, &Set::resetJ2kProfile),
        values("j2kCorrespondingProfile", &Set::j2kCorrespondingProfile, &Set::j2kCorrespondingProfile,
               &Set::addJ2kCorrespondingProfile, &Set::resetJ2kCorrespondingProfile),
    };
}

std::vector<Accessor> networkLocatorRows() {
    using Set = NetworkLocator;
    return {
        value("urlString", &Set::urlString, &Set::urlString),
    };
}

std::vector<Accessor> textLocatorRows() {
    using Set = TextLocator;
    return {
        value("locatorName", &Set::locatorName, &Set::locatorName),
    };
}

} // namespace

TEST(DescriptorAccessors, ReachThePropertiesOfTheirNames) {
    auto rows = trackableAccessors();
    for (auto const& ofClass :
         {genericRows(), fileRows(), multipleRows(), pictureRows(), cdciRows(), mpeg2Rows(), rgbaRows(),
          soundRows(), waveRows(), aes3Rows(), dataRows(), timeDateRows(), chunkRows(), wavePhysicalRows(),
          jpeg2000Rows(), networkLocatorRows(), textLocatorRows()})
        rows.insert(rows.end(), ofClass.begin(), ofClass.end());
    checkAccessors(
        {
            FileDescriptor::classKey(),
            MultipleDescriptor::classKey(),
            GenericPictureEssenceDescriptor::classKey(),
            CDCIEssenceDescriptor::classKey(),
            MPEG2VideoDescriptor::classKey(),
            RGBAEssenceDescriptor::classKey(),
            GenericSoundEssenceDescriptor::classKey(),
            WAVEAudioEssenceDescriptor::classKey(),
            AES3AudioEssenceDescriptor::classKey(),
            GenericDataEssenceDescriptor::classKey(),
            ANCPacketsDescriptor::classKey(),
            VBIDataDescriptor::classKey(),
            SMPTE331MTimeDateItemDescriptor::classKey(),
            UnknownChunkSet::classKey(),
            WAVEAudioPhysicalDescriptor::classKey(),
            JPEG2000PictureSubDescriptor::classKey(),
            NetworkLocator::classKey(),
            TextLocator::classKey(),
        },
        rows, {});
}

} // namespace MXF::Zelm::Test
