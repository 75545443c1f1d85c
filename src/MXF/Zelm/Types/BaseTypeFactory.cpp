#include "MXF/Zelm/Types/BaseTypeFactory.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/J2KTypes.h"
#include "MXF/Zelm/Types/LocalTag.h"
#include "MXF/Zelm/Types/RGBALayout.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/References.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/Zelm/Types/Versions.h"

#include <array>
#include <string>

namespace MXF::Zelm::Types::Factories {

namespace {

using SimplePtr = Templates::auto_ptr<SimpleDataType>;

/// How the values of one type are made.
struct Row {
    Identifiers::Identifier identifier;
    std::size_t wireSize;
    SimplePtr (*empty)();
    SimplePtr (*fromValue)(KLV::Value&);
    SimplePtr (*fromText)(std::u16string_view);
};

template <class T>
constexpr Row row() {
    return {T::typeIdentifier, T::wireSize, [] { return SimplePtr(new T()); },
            [](KLV::Value& value) { return SimplePtr(new T(value)); },
            [](std::u16string_view text) { return SimplePtr(new T(T::fromText(text))); }};
}

/// One row for each simple type, in the order of the identifiers.
constexpr Row rows[] = {
    row<Types::Int8>(),
    row<Types::Int16>(),
    row<Types::Int32>(),
    row<Types::Int64>(),
    row<Types::UInt8>(),
    row<Types::UInt16>(),
    row<Types::UInt32>(),
    row<Types::UInt64>(),
    row<Types::Boolean>(),
    row<Types::ISO7String>(),
    row<Types::UTF16String>(),
    row<Types::Rational>(),
    row<Types::Timestamp>(),
    row<Types::Position>(),
    row<Types::Length>(),
    row<Types::ProductVersion>(),
    row<Types::VersionType>(),
    row<Types::UUID>(),
    row<Types::UMID32>(),
    row<Types::UMID64>(),
    row<Types::UniversalLabel>(),
    row<Types::LocalTag>(),
    row<Types::StrongReference>(),
    row<Types::WeakReference>(),
    row<Types::RGBALayout>(),
    row<Types::Orientation>(),
    row<Types::SignalStandard>(),
    row<Types::DataStream>(),
    row<Types::DataValue>(),
    row<Types::Unknown>(),
    row<Types::J2KCodingStyleDefault>(),
    row<Types::J2KPictureComponent>(),
    row<Types::J2KQuantisationDefault>(),
};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < std::size(rows); ++i)
        if (rows[i].identifier != i)
            return false;
    return std::size(rows) == Identifiers::Array;
}
static_assert(inOrder());

Row const& rowFor(Identifiers::Identifier type) {
    if (type >= std::size(rows))
        throw Exceptions::InvalidType("A simple value cannot be of type " +
                                      std::string(Identifiers::toText(type)));
    return rows[type];
}

void requireCollection(Identifiers::Identifier type) {
    if (!Identifiers::isCollection(type))
        throw Exceptions::InvalidType("A collection cannot be of type " +
                                      std::string(Identifiers::toText(type)));
}

} // namespace

BaseTypeFactory& BaseTypeFactory::instance() {
    static BaseTypeFactory factory;
    return factory;
}

Templates::auto_ptr<SimpleDataType> BaseTypeFactory::create(Identifiers::Identifier type) const {
    return rowFor(type).empty();
}

Templates::auto_ptr<SimpleDataType> BaseTypeFactory::create(Identifiers::Identifier type,
                                                            KLV::Value& value) const {
    return rowFor(type).fromValue(value);
}

Templates::auto_ptr<SimpleDataType> BaseTypeFactory::create(Identifiers::Identifier type,
                                                            std::u16string_view text) const {
    return rowFor(type).fromText(text);
}

Templates::auto_ptr<Collection> BaseTypeFactory::createCollection(Identifiers::Identifier type,
                                                                  Identifiers::Identifier subType) const {
    requireCollection(type);
    if (type == Identifiers::Array)
        return Templates::auto_ptr<Collection>(new Array(subType));
    return Templates::auto_ptr<Collection>(new Batch(subType));
}

Templates::auto_ptr<Collection> BaseTypeFactory::createCollection(Identifiers::Identifier type,
                                                                  Identifiers::Identifier subType,
                                                                  KLV::Value& value) const {
    auto collection = createCollection(type, subType);
    collection->load(value);
    return collection;
}

std::size_t BaseTypeFactory::wireSize(Identifiers::Identifier type) { return rowFor(type).wireSize; }

} // namespace MXF::Zelm::Types::Factories
