/// The keys of the structural sets (SMPTE 377M and the essence mappings), by the name of their class.
#pragma once

#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::Metadata::Structural::StructuralMetadataKeys {

MXFZELM_EXPORT KLV::Key const& preface();
MXFZELM_EXPORT KLV::Key const& identification();
MXFZELM_EXPORT KLV::Key const& contentStorage();
MXFZELM_EXPORT KLV::Key const& essenceContainerData();
MXFZELM_EXPORT KLV::Key const& genericPackage();
MXFZELM_EXPORT KLV::Key const& materialPackage();
MXFZELM_EXPORT KLV::Key const& sourcePackage();
MXFZELM_EXPORT KLV::Key const& track();
MXFZELM_EXPORT KLV::Key const& timelineTrack();
MXFZELM_EXPORT KLV::Key const& eventTrack();
MXFZELM_EXPORT KLV::Key const& staticTrack();
MXFZELM_EXPORT KLV::Key const& sequence();
MXFZELM_EXPORT KLV::Key const& structuralComponent();
MXFZELM_EXPORT KLV::Key const& sourceClip();
MXFZELM_EXPORT KLV::Key const& dmSourceClip();
MXFZELM_EXPORT KLV::Key const& timecodeComponent();
MXFZELM_EXPORT KLV::Key const& dmSegment();

MXFZELM_EXPORT KLV::Key const& genericDescriptor();
MXFZELM_EXPORT KLV::Key const& fileDescriptor();
MXFZELM_EXPORT KLV::Key const& multipleDescriptor();
MXFZELM_EXPORT KLV::Key const& genericPictureEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& cdciEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& mpeg2VideoDescriptor();
MXFZELM_EXPORT KLV::Key const& rgbaEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& genericSoundEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& waveAudioEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& aes3AudioEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& genericDataEssenceDescriptor();
MXFZELM_EXPORT KLV::Key const& ancPacketsDescriptor();
MXFZELM_EXPORT KLV::Key const& vbiDataDescriptor();
MXFZELM_EXPORT KLV::Key const& smpte331MTimeDateItemDescriptor();
MXFZELM_EXPORT KLV::Key const& physicalDescriptor();
MXFZELM_EXPORT KLV::Key const& waveAudioPhysicalDescriptor();

MXFZELM_EXPORT KLV::Key const& subDescriptor();
MXFZELM_EXPORT KLV::Key const& jpeg2000PictureSubDescriptor();
MXFZELM_EXPORT KLV::Key const& locator();
MXFZELM_EXPORT KLV::Key const& networkLocator();
MXFZELM_EXPORT KLV::Key const& textLocator();
MXFZELM_EXPORT KLV::Key const& unknownChunkSet();

} // namespace MXF::Zelm::Metadata::Structural::StructuralMetadataKeys
