#include "MXF/Zelm/Types/BaseType.h"

#include <cstring>

namespace MXF::Zelm::Types {

BaseType::~BaseType() = default;
SimpleDataType::~SimpleDataType() = default;

bool SimpleDataType::equals(BaseType const& other) const {
    if (identifier() != other.identifier())
        return false;
    auto const& simple = static_cast<SimpleDataType const&>(other);
    return size() == simple.size() &&
           (size() == 0 || std::memcmp(rawBuffer(), simple.rawBuffer(), size()) == 0);
}

} // namespace MXF::Zelm::Types
