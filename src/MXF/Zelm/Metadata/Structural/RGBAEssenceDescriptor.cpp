#include "MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

RGBAEssenceDescriptor::RGBAEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition,
                                             MetadataSetOwner* owner)
    : GenericPictureEssenceDescriptor(classKey(), definition, owner) {}
RGBAEssenceDescriptor::~RGBAEssenceDescriptor() = default;

KLV::Key const& RGBAEssenceDescriptor::classKey() { return StructuralMetadataKeys::rgbaEssenceDescriptor(); }

Types::RGBALayout const* RGBAEssenceDescriptor::pixelLayout() const {
    return get(*this, Properties::pixelLayout);
}
void RGBAEssenceDescriptor::pixelLayout(Types::RGBALayout const& layout) {
    put(*this, Properties::pixelLayout, layout);
}
void RGBAEssenceDescriptor::resetPixelLayout() { reset(*this, Properties::pixelLayout); }
Types::UInt32 const* RGBAEssenceDescriptor::componentMinRef() const {
    return get(*this, Properties::componentMinRef);
}
void RGBAEssenceDescriptor::componentMinRef(Types::UInt32 const& level) {
    put(*this, Properties::componentMinRef, level);
}
void RGBAEssenceDescriptor::resetComponentMinRef() { reset(*this, Properties::componentMinRef); }
Types::UInt32 const* RGBAEssenceDescriptor::componentMaxRef() const {
    return get(*this, Properties::componentMaxRef);
}
void RGBAEssenceDescriptor::componentMaxRef(Types::UInt32 const& level) {
    put(*this, Properties::componentMaxRef, level);
}
void RGBAEssenceDescriptor::resetComponentMaxRef() { reset(*this, Properties::componentMaxRef); }
Types::UInt32 const* RGBAEssenceDescriptor::alphaMinRef() const {
    return get(*this, Properties::alphaMinRef);
}
void RGBAEssenceDescriptor::alphaMinRef(Types::UInt32 const& level) {
    put(*this, Properties::alphaMinRef, level);
}
void RGBAEssenceDescriptor::resetAlphaMinRef() { reset(*this, Properties::alphaMinRef); }
Types::UInt32 const* RGBAEssenceDescriptor::alphaMaxRef() const {
    return get(*this, Properties::alphaMaxRef);
}
void RGBAEssenceDescriptor::alphaMaxRef(Types::UInt32 const& level) {
    put(*this, Properties::alphaMaxRef, level);
}
void RGBAEssenceDescriptor::resetAlphaMaxRef() { reset(*this, Properties::alphaMaxRef); }
Types::Orientation const* RGBAEssenceDescriptor::scanningDirection() const {
    return get(*this, Properties::scanningDirection);
}
void RGBAEssenceDescriptor::scanningDirection(Types::Orientation const& direction) {
    put(*this, Properties::scanningDirection, direction);
}
void RGBAEssenceDescriptor::resetScanningDirection() { reset(*this, Properties::scanningDirection); }
Types::DataValue const* RGBAEssenceDescriptor::palette() const { return get(*this, Properties::palette); }
void RGBAEssenceDescriptor::palette(Types::DataValue const& palette) {
    put(*this, Properties::palette, palette);
}
void RGBAEssenceDescriptor::resetPalette() { reset(*this, Properties::palette); }
Types::RGBALayout const* RGBAEssenceDescriptor::paletteLayout() const {
    return get(*this, Properties::paletteLayout);
}
void RGBAEssenceDescriptor::paletteLayout(Types::RGBALayout const& layout) {
    put(*this, Properties::paletteLayout, layout);
}
void RGBAEssenceDescriptor::resetPaletteLayout() { reset(*this, Properties::paletteLayout); }

} // namespace MXF::Zelm::Metadata::Structural
