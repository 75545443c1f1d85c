/// Makes values by the identifier of their type.
#pragma once

#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Types/BaseType.h"
#include "MXF/Zelm/Types/Collection.h"

#include <string_view>

namespace MXF::Zelm::Types::Factories {

class MXFZELM_EXPORT BaseTypeFactory : public Platform::Allocated {
public:
    static BaseTypeFactory& instance();

    /// A value of a simple type, all zero or empty. Throws Exceptions::InvalidType for a collection.
    Templates::auto_ptr<SimpleDataType> create(Identifiers::Identifier type) const;

    /// Reads a value of a simple type. Throws also Exceptions::InvalidLength when the value holds too few
    /// bytes.
    Templates::auto_ptr<SimpleDataType> create(Identifiers::Identifier type, KLV::Value& value) const;

    /// Reads the text form of a value of a simple type. Throws also Exceptions::InvalidFormat or another
    /// Exceptions::BaseException when the text is no such value.
    Templates::auto_ptr<SimpleDataType> create(Identifiers::Identifier type, std::u16string_view text) const;

    /// An empty array or batch of `subType`. Throws Exceptions::InvalidType when `type` is no collection.
    Templates::auto_ptr<Collection> createCollection(Identifiers::Identifier type,
                                                     Identifiers::Identifier subType) const;

    /// Reads an array or batch. Throws also as Collection::load does.
    Templates::auto_ptr<Collection>
    createCollection(Identifiers::Identifier type, Identifiers::Identifier subType, KLV::Value& value) const;

    /// Bytes of a value of a simple type in a file; 0 where they vary.
    static std::size_t wireSize(Identifiers::Identifier type);
};

} // namespace MXF::Zelm::Types::Factories
