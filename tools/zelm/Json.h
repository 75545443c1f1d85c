/// How values look in the program's JSON: labels as "urn:smpte:ul:…", rationals as "30000/1001", bytes as
/// hexadecimal.
#pragma once

#include "Faults.h"

#include <MXF/Zelm/KLV/Key.h>
#include <MXF/Zelm/Types/BaseType.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace Zelm {

/// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

/// The version of the fields that docs/json.md describes; the first member of every object that is printed.
inline constexpr int jsonSchemaVersion = 1;

/// An object to be printed, with its schema version.
Json jsonReport();

/// Prints an object, indented, and a line feed.
void print(Json const& report);

/// The text of a value on one line. What is not UTF-8, as a file's name may be, becomes U+FFFD.
std::string dump(Json const& value);

Json toJson(MXF::Zelm::KLV::Key const& key);

/// A number, Boolean or text; an array for a collection. Null for no value.
Json toJson(MXF::Zelm::Types::BaseType const* value);

/// `message` and `offset`; null for no fault.
Json toJson(std::optional<Fault> const& fault);

/// The value, or null.
template <class T>
Json orNull(std::optional<T> const& value) {
    return value ? Json(*value) : Json(nullptr);
}

} // namespace Zelm
