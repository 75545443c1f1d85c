/// Properties of metadata sets by the names that the dictionary gives them.
#pragma once

#include <MXF/Zelm/MetaMetadata/Dictionary.h>
#include <MXF/Zelm/Metadata/MetadataSet.h>

#include <string>
#include <string_view>

namespace Zelm {

/// The element called `name`, null when the set has none.
MXF::Zelm::Metadata::Element const* findElement(MXF::Zelm::Metadata::MetadataSet const& set,
                                                std::u16string_view name);

/// The value of the element called `name` as a `T`; null when the set has none of that type.
template <class T>
T const* property(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name) {
    return set.value<T>(name);
}

/// The sets that the reference or references called `name` point to; dangling ones are left out.
std::vector<MXF::Zelm::Metadata::MetadataSet*> references(MXF::Zelm::Metadata::MetadataSet const& set,
                                                          std::u16string_view name);

/// The text of the element called `name` in UTF-8; empty when the set has none.
std::string text(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);

/// True when the set's class is called `name`, or inherits from a class that is.
bool isA(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name,
         MXF::Zelm::MetaMetadata::Dictionary const& dictionary);

} // namespace Zelm
