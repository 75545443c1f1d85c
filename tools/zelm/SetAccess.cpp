#include "SetAccess.h"

#include <MXF/Zelm/Platform/Text.h>

namespace Zelm {

using namespace MXF::Zelm;

Metadata::Element const* findElement(Metadata::MetadataSet const& set, std::u16string_view name) {
    return set.findElement(name);
}

std::vector<Metadata::MetadataSet*> references(Metadata::MetadataSet const& set, std::u16string_view name) {
    auto const* const element = findElement(set, name);
    return element != nullptr ? set.referencedSets(*element->universalLabel())
                              : std::vector<Metadata::MetadataSet*>();
}

std::string text(Metadata::MetadataSet const& set, std::u16string_view name) {
    auto const* const element = findElement(set, name);
    return element != nullptr && element->baseValue() != nullptr
               ? Platform::toUtf8(element->baseValue()->toString())
               : std::string();
}

bool isA(Metadata::MetadataSet const& set, std::u16string_view name,
         MetaMetadata::Dictionary const& dictionary) {
    constexpr int deepestInheritance = 32;
    MetaMetadata::MetaMetadataSet const* definition = set.metaMetadataSet();
    for (int depth = 0; definition != nullptr && depth < deepestInheritance; ++depth) {
        auto const* const own = definition->findProperty(u"name");
        if (own != nullptr && *own == name)
            return true;
        auto const* const parent = definition->findProperty(u"parent");
        auto const parents = parent != nullptr ? dictionary.findMetaMetadataSetProperty(u"name", *parent)
                                               : std::vector<MetaMetadata::MetaMetadataSet const*>();
        definition = parents.empty() ? nullptr : parents.front();
    }
    return false;
}

} // namespace Zelm
