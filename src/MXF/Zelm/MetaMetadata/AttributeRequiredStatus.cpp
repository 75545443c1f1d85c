#include "MXF/Zelm/MetaMetadata/AttributeRequiredStatus.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Initializer.h"

#include <iterator>

namespace MXF::Zelm::MetaMetadata {

namespace {

/// In the order of the enumeration.
constexpr std::u16string_view names[] = {u"Opt", u"B.Effort", u"D/req", u"E/req", u"Req"};

constinit Platform::Singleton<AttributeRequiredStatus> singleton;

} // namespace

AttributeRequiredStatus& AttributeRequiredStatus::instance() {
    return singleton.get([] { return new AttributeRequiredStatus; }, [] { singleton.reset(); });
}

std::u16string AttributeRequiredStatus::toString(Status status) const {
    if (status >= std::size(names))
        throw Exceptions::BaseException("StatusNotFound: " + std::to_string(status));
    return std::u16string(names[status]);
}

AttributeRequiredStatus::Status AttributeRequiredStatus::fromString(std::u16string_view name) const {
    for (std::size_t i = 0; i < std::size(names); ++i)
        if (names[i] == name)
            return static_cast<Status>(i);
    throw Exceptions::BaseException(u"StatusNotFound: " + std::u16string(name));
}

} // namespace MXF::Zelm::MetaMetadata
