/// Named texts that definitions carry for clients: "name" holds what people call the thing.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MXF::Zelm::MetaMetadata {

class MXFZELM_EXPORT PropertyMap {
public:
    PropertyMap();
    PropertyMap(PropertyMap const&);
    PropertyMap(PropertyMap&&) noexcept;
    PropertyMap& operator=(PropertyMap const&);
    PropertyMap& operator=(PropertyMap&&) noexcept;
    ~PropertyMap();

    /// Adds a property; one of the same name is replaced.
    void addProperty(std::u16string_view name, std::u16string_view value);

    /// The value of a property. Throws Exceptions::BaseException with "Property not found: " and the name.
    std::u16string const& getProperty(std::u16string_view name) const;

    /// The value of a property, null when there is none. Valid until the map is changed.
    std::u16string const* findProperty(std::u16string_view name) const;

private:
    // A handful of entries: searched in order.
    std::vector<std::pair<std::u16string, std::u16string>> properties_;
};

} // namespace MXF::Zelm::MetaMetadata
