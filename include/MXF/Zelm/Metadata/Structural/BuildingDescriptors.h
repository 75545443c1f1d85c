/// Building descriptors of the common kinds, with all that their classes require. What else a host knows of
/// the essence it sets through the accessors. The functions throw as those of Building.h.
#pragma once

#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"

namespace MXF::Zelm::Metadata::Structural {

/// A picture in luma and colour differences. Defaults are those of 4:2:2 with 8 bits, wrapped by frames.
struct PictureOptions {
    Types::UniversalLabel essenceContainer; ///< the wrapping
    Types::UniversalLabel coding;           ///< as pictureEssenceCoding
    Templates::Rational<int> frameRate;
    std::uint32_t width;  ///< stored, in pixels
    std::uint32_t height; ///< stored, in lines; of one field where the fields are separate
    Templates::Rational<int> aspectRatio{16, 9};
    GenericPictureEssenceDescriptor::FrameLayout frameLayout = GenericPictureEssenceDescriptor::fullFrame;
    std::int32_t firstLine[2] = {0, 0}; ///< as videoLineMap; 0 is not known, for field 2 also none
    std::uint32_t componentDepth = 8;
    std::uint32_t horizontalSubsampling = 2;
    std::uint32_t verticalSubsampling = 1;
};

/// Fills a descriptor with the options.
MXFZELM_EXPORT void describePicture(CDCIEssenceDescriptor& descriptor, PictureOptions const& options);

/// A new picture descriptor: a CDCIEssenceDescriptor, or a class that inherits from it.
template <class Descriptor>
Descriptor& createPictureDescriptor(PartitionMetadata& metadata, PictureOptions const& options) {
    auto& descriptor = create<Descriptor>(metadata);
    describePicture(descriptor, options);
    return descriptor;
}

/// Uncompressed sound (SMPTE 382M).
struct SoundOptions {
    Types::UniversalLabel essenceContainer; ///< the wrapping
    Templates::Rational<int> editRate;      ///< of the container: the frame rate, or the rate of clips
    std::uint32_t channels = 1;
    std::uint32_t bits = 24;
    Templates::Rational<int> samplingRate{48000, 1};
    bool locked = true; ///< to the pictures
};

/// Fills a descriptor with the options; block size and bytes a second follow from them. Throws
/// Exceptions::InvalidValue when these do not fit in their properties or the sampling rate has no value.
MXFZELM_EXPORT void describeSound(WAVEAudioEssenceDescriptor& descriptor, SoundOptions const& options);

/// A new sound descriptor: a WAVEAudioEssenceDescriptor, or an AES3AudioEssenceDescriptor.
template <class Descriptor>
Descriptor& createSoundDescriptor(PartitionMetadata& metadata, SoundOptions const& options) {
    auto& descriptor = create<Descriptor>(metadata);
    describeSound(descriptor, options);
    return descriptor;
}

} // namespace MXF::Zelm::Metadata::Structural
