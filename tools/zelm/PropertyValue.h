/// Values of properties out of the text that a user gives.
///
///     text                 strings, as they are
///     42, -1               integers, positions, lengths; an enumerated one by its name too
///     true, false          also yes and no
///     25, 30000/1001       rationals
///     2026-03-01T12:00Z    dates (UTC); also now
///     urn:…, hexadecimal   labels, UUIDs, UMIDs; labels also by their names
///     0x0102               bytes
///     a, b or ["a", "b"]   arrays and batches; members with commas need the second form (JSON)
#pragma once

#include <MXF/Zelm/MetaMetadata/MetaElement.h>

#include <string>

namespace Zelm {

/// Throws Exceptions::InvalidValue that says what is expected.
MXF::Zelm::Templates::auto_ptr<MXF::Zelm::Types::BaseType>
parseValue(MXF::Zelm::MetaMetadata::MetaElement const& element, std::string const& text);

/// One member of a collection.
MXF::Zelm::Templates::auto_ptr<MXF::Zelm::Types::SimpleDataType>
parseMember(MXF::Zelm::MetaMetadata::MetaElement const& element, std::string const& text);

/// The text that `parseValue` makes the same value of.
std::string parseableText(MXF::Zelm::Types::BaseType const& value);

} // namespace Zelm
