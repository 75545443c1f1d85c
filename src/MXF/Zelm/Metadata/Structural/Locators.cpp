#include "MXF/Zelm/Metadata/Structural/Locators.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorProperties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

Locator::Locator(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                 MetadataSetOwner* owner)
    : TrackableMetadataSet(key, definition, owner) {}
Locator::~Locator() = default;

NetworkLocator::NetworkLocator(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : Locator(classKey(), definition, owner) {}
NetworkLocator::~NetworkLocator() = default;

KLV::Key const& NetworkLocator::classKey() { return StructuralMetadataKeys::networkLocator(); }

Types::UTF16String const* NetworkLocator::urlString() const { return get(*this, Properties::urlString); }
void NetworkLocator::urlString(Types::UTF16String const& url) { put(*this, Properties::urlString, url); }

TextLocator::TextLocator(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : Locator(classKey(), definition, owner) {}
TextLocator::~TextLocator() = default;

KLV::Key const& TextLocator::classKey() { return StructuralMetadataKeys::textLocator(); }

Types::UTF16String const* TextLocator::locatorName() const { return get(*this, Properties::locatorName); }
void TextLocator::locatorName(Types::UTF16String const& name) { put(*this, Properties::locatorName, name); }

} // namespace MXF::Zelm::Metadata::Structural
