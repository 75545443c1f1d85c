#include "MXF/Zelm/Metadata/Structural/Initialize.h"

#include "MXF/Zelm/Metadata/MetadataSetFactory.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Identification.h"
#include "MXF/Zelm/Metadata/Structural/Locators.h"
#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Preface.h"
#include "MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/StructuralComponent.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"

namespace MXF::Zelm::Metadata::Structural {

namespace {

/// Registers the classes in this order.
template <class... Sets>
void registerSets() {
    (MetadataSetFactory::instance().registerMetadataSet<Sets>(), ...);
}

} // namespace

void initialize() {
    registerSets<CDCIEssenceDescriptor, ContentStorage, DMSegment, DMSourceClip, EssenceContainerData,
                 EventTrack, FileDescriptor, GenericDataEssenceDescriptor, GenericPictureEssenceDescriptor,
                 GenericSoundEssenceDescriptor, Identification, MaterialPackage, MultipleDescriptor,
                 NetworkLocator, Preface, RGBAEssenceDescriptor, Sequence, SourceClip, SourcePackage,
                 StaticTrack, TextLocator, TimecodeComponent, TimelineTrack, MPEG2VideoDescriptor,
                 SMPTE331MTimeDateItemDescriptor, WAVEAudioEssenceDescriptor, AES3AudioEssenceDescriptor,
                 WAVEAudioPhysicalDescriptor>();
}

void initializeMappings() {
    registerSets<ANCPacketsDescriptor, VBIDataDescriptor, JPEG2000PictureSubDescriptor, UnknownChunkSet>();
}

} // namespace MXF::Zelm::Metadata::Structural
