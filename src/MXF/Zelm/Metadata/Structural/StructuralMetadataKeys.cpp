#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural::StructuralMetadataKeys {

namespace {

using namespace KLV::Literals;

constexpr KLV::Key prefaceKey = "060E2B34.02530101.0D010101.01012F00"_key;
constexpr KLV::Key identificationKey = "060E2B34.02530101.0D010101.01013000"_key;
constexpr KLV::Key contentStorageKey = "060E2B34.02530101.0D010101.01011800"_key;
constexpr KLV::Key essenceContainerDataKey = "060E2B34.02530101.0D010101.01012300"_key;
constexpr KLV::Key genericPackageKey = "060E2B34.02530101.0D010101.01013400"_key;
constexpr KLV::Key materialPackageKey = "060E2B34.02530101.0D010101.01013600"_key;
constexpr KLV::Key sourcePackageKey = "060E2B34.02530101.0D010101.01013700"_key;
constexpr KLV::Key trackKey = "060E2B34.02530101.0D010101.01013800"_key;
constexpr KLV::Key timelineTrackKey = "060E2B34.02530101.0D010101.01013B00"_key;
constexpr KLV::Key eventTrackKey = "060E2B34.02530101.0D010101.01013900"_key;
constexpr KLV::Key staticTrackKey = "060E2B34.02530101.0D010101.01013A00"_key;
constexpr KLV::Key sequenceKey = "060E2B34.02530101.0D010101.01010F00"_key;
constexpr KLV::Key structuralComponentKey = "060E2B34.02530101.0D010101.01010200"_key;
constexpr KLV::Key sourceClipKey = "060E2B34.02530101.0D010101.01011100"_key;
constexpr KLV::Key dmSourceClipKey = "060E2B34.02530101.0D010101.01014500"_key;
constexpr KLV::Key timecodeComponentKey = "060E2B34.02530101.0D010101.01011400"_key;
constexpr KLV::Key dmSegmentKey = "060E2B34.02530101.0D010101.01014100"_key;
constexpr KLV::Key genericDescriptorKey = "060E2B34.02530101.0D010101.01012400"_key;
constexpr KLV::Key fileDescriptorKey = "060E2B34.02530101.0D010101.01012500"_key;
constexpr KLV::Key multipleDescriptorKey = "060E2B34.02530101.0D010101.01014400"_key;
constexpr KLV::Key genericPictureEssenceDescriptorKey = "060E2B34.02530101.0D010101.01012700"_key;
constexpr KLV::Key cdciEssenceDescriptorKey = "060E2B34.02530101.0D010101.01012800"_key;
constexpr KLV::Key mpeg2VideoDescriptorKey = "060E2B34.02530101.0D010101.01015100"_key;
constexpr KLV::Key rgbaEssenceDescriptorKey = "060E2B34.02530101.0D010101.01012900"_key;
constexpr KLV::Key genericSoundEssenceDescriptorKey = "060E2B34.02530101.0D010101.01014200"_key;
constexpr KLV::Key waveAudioEssenceDescriptorKey = "060E2B34.02530101.0D010101.01014800"_key;
constexpr KLV::Key aes3AudioEssenceDescriptorKey = "060E2B34.02530101.0D010101.01014700"_key;
constexpr KLV::Key genericDataEssenceDescriptorKey = "060E2B34.02530101.0D010101.01014300"_key;
constexpr KLV::Key ancPacketsDescriptorKey = "060E2B34.02530101.0D010101.01015C00"_key;
constexpr KLV::Key vbiDataDescriptorKey = "060E2B34.02530101.0D010101.01015B00"_key;
constexpr KLV::Key smpte331MTimeDateItemDescriptorKey = "060E2B34.02530101.0D010101.01014600"_key;
constexpr KLV::Key physicalDescriptorKey = "060E2B34.02530101.0D010101.01014900"_key;
constexpr KLV::Key waveAudioPhysicalDescriptorKey = "060E2B34.02530101.0D010101.01015000"_key;
constexpr KLV::Key subDescriptorKey = "060E2B34.02530101.0D010101.01015900"_key;
constexpr KLV::Key jpeg2000PictureSubDescriptorKey = "060E2B34.02530101.0D010101.01015A00"_key;
constexpr KLV::Key locatorKey = "060E2B34.02530101.0D010101.01013100"_key;
constexpr KLV::Key networkLocatorKey = "060E2B34.02530101.0D010101.01013200"_key;
constexpr KLV::Key textLocatorKey = "060E2B34.02530101.0D010101.01013300"_key;
constexpr KLV::Key unknownChunkSetKey = "060E2B34.02530101.0D010101.01014F00"_key;

} // namespace

KLV::Key const& preface() { return prefaceKey; }
KLV::Key const& identification() { return identificationKey; }
KLV::Key const& contentStorage() { return contentStorageKey; }
KLV::Key const& essenceContainerData() { return essenceContainerDataKey; }
KLV::Key const& genericPackage() { return genericPackageKey; }
KLV::Key const& materialPackage() { return materialPackageKey; }
KLV::Key const& sourcePackage() { return sourcePackageKey; }
KLV::Key const& track() { return trackKey; }
KLV::Key const& timelineTrack() { return timelineTrackKey; }
KLV::Key const& eventTrack() { return eventTrackKey; }
KLV::Key const& staticTrack() { return staticTrackKey; }
KLV::Key const& sequence() { return sequenceKey; }
KLV::Key const& structuralComponent() { return structuralComponentKey; }
KLV::Key const& sourceClip() { return sourceClipKey; }
KLV::Key const& dmSourceClip() { return dmSourceClipKey; }
KLV::Key const& timecodeComponent() { return timecodeComponentKey; }
KLV::Key const& dmSegment() { return dmSegmentKey; }
KLV::Key const& genericDescriptor() { return genericDescriptorKey; }
KLV::Key const& fileDescriptor() { return fileDescriptorKey; }
KLV::Key const& multipleDescriptor() { return multipleDescriptorKey; }
KLV::Key const& genericPictureEssenceDescriptor() { return genericPictureEssenceDescriptorKey; }
KLV::Key const& cdciEssenceDescriptor() { return cdciEssenceDescriptorKey; }
KLV::Key const& mpeg2VideoDescriptor() { return mpeg2VideoDescriptorKey; }
KLV::Key const& rgbaEssenceDescriptor() { return rgbaEssenceDescriptorKey; }
KLV::Key const& genericSoundEssenceDescriptor() { return genericSoundEssenceDescriptorKey; }
KLV::Key const& waveAudioEssenceDescriptor() { return waveAudioEssenceDescriptorKey; }
KLV::Key const& aes3AudioEssenceDescriptor() { return aes3AudioEssenceDescriptorKey; }
KLV::Key const& genericDataEssenceDescriptor() { return genericDataEssenceDescriptorKey; }
KLV::Key const& ancPacketsDescriptor() { return ancPacketsDescriptorKey; }
KLV::Key const& vbiDataDescriptor() { return vbiDataDescriptorKey; }
KLV::Key const& smpte331MTimeDateItemDescriptor() { return smpte331MTimeDateItemDescriptorKey; }
KLV::Key const& physicalDescriptor() { return physicalDescriptorKey; }
KLV::Key const& waveAudioPhysicalDescriptor() { return waveAudioPhysicalDescriptorKey; }
KLV::Key const& subDescriptor() { return subDescriptorKey; }
KLV::Key const& jpeg2000PictureSubDescriptor() { return jpeg2000PictureSubDescriptorKey; }
KLV::Key const& locator() { return locatorKey; }
KLV::Key const& networkLocator() { return networkLocatorKey; }
KLV::Key const& textLocator() { return textLocatorKey; }
KLV::Key const& unknownChunkSet() { return unknownChunkSetKey; }

} // namespace MXF::Zelm::Metadata::Structural::StructuralMetadataKeys
