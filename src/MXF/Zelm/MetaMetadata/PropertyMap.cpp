#include "MXF/Zelm/MetaMetadata/PropertyMap.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MetaMetadata {

namespace {
// Most definitions have a name and a type.
constexpr std::size_t usualCount = 2;
} // namespace

PropertyMap::PropertyMap() = default;
PropertyMap::PropertyMap(PropertyMap const&) = default;
PropertyMap::PropertyMap(PropertyMap&&) noexcept = default;
PropertyMap& PropertyMap::operator=(PropertyMap const&) = default;
PropertyMap& PropertyMap::operator=(PropertyMap&&) noexcept = default;
PropertyMap::~PropertyMap() = default;

void PropertyMap::addProperty(std::u16string_view name, std::u16string_view value) {
    auto const found = std::find_if(properties_.begin(), properties_.end(),
                                    [name](auto const& property) { return property.first == name; });
    if (found != properties_.end())
        found->second = value;
    else {
        if (properties_.empty())
            properties_.reserve(usualCount);
        properties_.emplace_back(name, value);
    }
}

std::u16string const& PropertyMap::getProperty(std::u16string_view name) const {
    auto const* const value = findProperty(name);
    if (value == nullptr)
        throw Exceptions::BaseException(u"Property not found: " + std::u16string(name));
    return *value;
}

std::u16string const* PropertyMap::findProperty(std::u16string_view name) const {
    for (auto const& [ownName, value] : properties_)
        if (ownName == name)
            return &value;
    return nullptr;
}

} // namespace MXF::Zelm::MetaMetadata
