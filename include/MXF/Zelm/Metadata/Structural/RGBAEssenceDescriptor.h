/// Descriptor of pictures in RGB or a palette (SMPTE 377M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/RGBALayout.h"

namespace MXF::Zelm::Metadata::Structural {

/// Describes pictures whose pixels are stored component by component.
class MXFZELM_EXPORT RGBAEssenceDescriptor : public GenericPictureEssenceDescriptor {
public:
    RGBAEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~RGBAEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// The components of a pixel in the order in which they are stored; no components are unknown.
    Types::RGBALayout const* pixelLayout() const;
    void pixelLayout(Types::RGBALayout const& layout);
    void resetPixelLayout();

    /// Value of a component at its least, 64 for 10 bits of narrow range; by default 0. Optional.
    Types::UInt32 const* componentMinRef() const;
    void componentMinRef(Types::UInt32 const& level);
    void resetComponentMinRef();

    /// Value of a component at its greatest, 940 for 10 bits of narrow range; by default 255. Optional.
    Types::UInt32 const* componentMaxRef() const;
    void componentMaxRef(Types::UInt32 const& level);
    void resetComponentMaxRef();

    /// Least value of alpha; by default 0. Optional.
    Types::UInt32 const* alphaMinRef() const;
    void alphaMinRef(Types::UInt32 const& level);
    void resetAlphaMinRef();

    /// Greatest value of alpha; by default 255. Optional.
    Types::UInt32 const* alphaMaxRef() const;
    void alphaMaxRef(Types::UInt32 const& level);
    void resetAlphaMaxRef();

    /// The way in which pixels follow and then lines: 0 right and down (default), 1 left and down, 2 right
    /// and up, 3 left and up; columns first: 4 down and right, 5 down and left, 6 up and right, 7 up and
    /// left. Optional.
    Types::Orientation const* scanningDirection() const;
    void scanningDirection(Types::Orientation const& direction);
    void resetScanningDirection();

    /// The colours that palette indices in `pixelLayout` stand for, in `paletteLayout`. Optional.
    Types::DataValue const* palette() const;
    void palette(Types::DataValue const& palette);
    void resetPalette();

    /// The components of a colour in `palette`. Optional.
    Types::RGBALayout const* paletteLayout() const;
    void paletteLayout(Types::RGBALayout const& layout);
    void resetPaletteLayout();
};

} // namespace MXF::Zelm::Metadata::Structural
