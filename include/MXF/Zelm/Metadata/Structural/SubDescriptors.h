/// Sub-descriptors: what one coding adds to a descriptor (SMPTE 377-1), with that of JPEG 2000 (SMPTE 422M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/J2KTypes.h"
#include "MXF/Zelm/Types/RGBALayout.h"

namespace MXF::Zelm::Metadata::Structural {

/// Base of all sub-descriptors that have a class.
class MXFZELM_EXPORT SubDescriptor : public TrackableMetadataSet {
public:
    ~SubDescriptor() override;

protected:
    SubDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                  MetadataSetOwner* owner);
};

/// The main header of the JPEG 2000 codestreams (ISO/IEC 15444-1): the fields of its SIZ marker under their
/// own names, in units of the reference grid, then COD and QCD.
class MXFZELM_EXPORT JPEG2000PictureSubDescriptor : public SubDescriptor {
public:
    JPEG2000PictureSubDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~JPEG2000PictureSubDescriptor() override;

    static KLV::Key const& classKey();

    /// Capabilities that a decoder needs.
    Types::UInt16 const* rsiz() const;
    void rsiz(Types::UInt16 const& capabilities);

    /// Width of the grid.
    Types::UInt32 const* xsiz() const;
    void xsiz(Types::UInt32 const& width);

    /// Height of the grid.
    Types::UInt32 const* ysiz() const;
    void ysiz(Types::UInt32 const& height);

    /// Left edge of the image.
    Types::UInt32 const* xOsiz() const;
    void xOsiz(Types::UInt32 const& offset);

    /// Upper edge of the image.
    Types::UInt32 const* yOsiz() const;
    void yOsiz(Types::UInt32 const& offset);

    /// Width of a tile.
    Types::UInt32 const* xTsiz() const;
    void xTsiz(Types::UInt32 const& width);

    /// Height of a tile.
    Types::UInt32 const* yTsiz() const;
    void yTsiz(Types::UInt32 const& height);

    /// Left edge of the first tile.
    Types::UInt32 const* xTOsiz() const;
    void xTOsiz(Types::UInt32 const& offset);

    /// Upper edge of the first tile.
    Types::UInt32 const* yTOsiz() const;
    void yTOsiz(Types::UInt32 const& offset);

    /// Number of components.
    Types::UInt16 const* csiz() const;
    void csiz(Types::UInt16 const& components);

    /// Depth and sampling of each component: J2KPictureComponent.
    Types::Array const* pictureComponentSizing() const;
    void pictureComponentSizing(Types::Array const& components);
    void addPictureComponentSizing(Types::J2KPictureComponent const& component);

    /// The body of the COD marker. Optional.
    Types::J2KCodingStyleDefault const* codingStyleDefault() const;
    void codingStyleDefault(Types::J2KCodingStyleDefault const& style);
    void resetCodingStyleDefault();

    /// The body of the QCD marker. Optional.
    Types::J2KQuantisationDefault const* quantizationDefault() const;
    void quantizationDefault(Types::J2KQuantisationDefault const& quantisation);
    void resetQuantizationDefault();

    /// The components in their order, as `pixelLayout` has them. Optional.
    Types::RGBALayout const* j2cLayout() const;
    void j2cLayout(Types::RGBALayout const& layout);
    void resetJ2cLayout();

    /// The body of the CAP marker: Pcap (4 bytes), then an array of Ccap (2 bytes each). Goes with bit 14 of
    /// `rsiz`. Optional.
    Types::DataValue const* j2kExtendedCapabilities() const;
    void j2kExtendedCapabilities(Types::DataValue const& capabilities);
    void resetJ2kExtendedCapabilities();

    /// The body of the PRF marker: UInt16 each. Optional.
    Types::Array const* j2kProfile() const;
    void j2kProfile(Types::Array const& profile);
    void addJ2kProfile(Types::UInt16 const& part);
    void resetJ2kProfile();

    /// The body of the CPF marker: UInt16 each. Optional.
    Types::Array const* j2kCorrespondingProfile() const;
    void j2kCorrespondingProfile(Types::Array const& profile);
    void addJ2kCorrespondingProfile(Types::UInt16 const& part);
    void resetJ2kCorrespondingProfile();
};

} // namespace MXF::Zelm::Metadata::Structural
