#include "MXF/Zelm/Types/Identifiers.h"

#include <iterator>

namespace MXF::Zelm::Types::Identifiers {

namespace {

/// In the order of the enumeration.
constexpr std::string_view names[] = {
    "Int8",
    "Int16",
    "Int32",
    "Int64",
    "UInt8",
    "UInt16",
    "UInt32",
    "UInt64",
    "Boolean",
    "ISO7String",
    "UTF16String",
    "Rational",
    "Timestamp",
    "Position",
    "Length",
    "ProductVersion",
    "VersionType",
    "UUID",
    "UMID32",
    "UMID64",
    "UniversalLabel",
    "LocalTag",
    "StrongReference",
    "WeakReference",
    "RGBALayout",
    "Orientation",
    "SignalStandard",
    "DataStream",
    "DataValue",
    "Unknown",
    "J2KCodingStyleDefault",
    "J2KPictureComponent",
    "J2KQuantisationDefault",
    "Array",
    "Batch",
};
static_assert(std::size(names) == Batch + 1);

} // namespace

std::string_view toText(Identifier identifier) {
    return identifier < std::size(names) ? names[identifier] : std::string_view("<invalid>");
}

std::optional<Identifier> fromText(std::string_view name) {
    for (std::size_t i = 0; i < std::size(names); ++i)
        if (names[i] == name)
            return static_cast<Identifier>(i);
    return std::nullopt;
}

} // namespace MXF::Zelm::Types::Identifiers
