/// Values of properties as people read them: labels and enumerated values with their names, bytes cut short.
#pragma once

#include "Json.h"

#include <MXF/Zelm/Metadata/Element.h>

#include <string>

namespace Zelm {

/// The value of an element in words. Collections of more than a few members are given as their number and the
/// first.
std::string valueText(MXF::Zelm::Metadata::Element const& element);

/// What the value is called: the name of its label or enumerated value; empty when it has none.
std::string valueName(MXF::Zelm::Metadata::Element const& element);

/// The content of a value that carries its own type (byte order, type, bytes), null when it has no type that
/// is known.
Json indirectValue(MXF::Zelm::Metadata::Element const& element);

/// Why an element is an invalid one; empty for a valid one.
std::string invalidReason(MXF::Zelm::Metadata::Element const& element);

/// "0x" and the bytes in hexadecimal, all of them or the first `most` and how many there are.
std::string bytesText(const unsigned char* bytes, std::size_t size, std::size_t most);

} // namespace Zelm
