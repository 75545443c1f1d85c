/// The names of the value types.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <optional>
#include <string_view>

namespace MXF::Zelm::Types::Identifiers {

enum Identifier : unsigned char {
    Int8,
    Int16,
    Int32,
    Int64,
    UInt8,
    UInt16,
    UInt32,
    UInt64,
    Boolean,
    ISO7String,
    UTF16String,
    Rational,
    Timestamp,
    Position,
    Length,
    ProductVersion,
    VersionType,
    UUID,
    UMID32,
    UMID64,
    UniversalLabel,
    LocalTag,
    StrongReference,
    WeakReference,
    RGBALayout,
    Orientation,
    SignalStandard,
    DataStream,
    DataValue,
    Unknown,
    J2KCodingStyleDefault,
    J2KPictureComponent,
    J2KQuantisationDefault,
    Array,
    Batch,
};

/// The type's name, as it is written above.
MXFZELM_EXPORT std::string_view toText(Identifier identifier);

/// The type with that name, if there is one.
MXFZELM_EXPORT std::optional<Identifier> fromText(std::string_view name);

constexpr bool isCollection(Identifier identifier) { return identifier == Array || identifier == Batch; }
constexpr bool isReference(Identifier identifier) {
    return identifier == StrongReference || identifier == WeakReference;
}

/// Every type but the collections and the references.
constexpr bool isSimpleValue(Identifier identifier) {
    return !isCollection(identifier) && !isReference(identifier);
}

} // namespace MXF::Zelm::Types::Identifiers
