/// The text forms of keys, labels, UUIDs and UMIDs.
#pragma once

namespace MXF::Zelm::Types {

enum class StringRepresentationEncodingType {
    PlainHexadecimal,     ///< 0x060E2B34…
    SeparatedHexadecimal, ///< 06.0E.2B.34.…; read with any separators that are not hexadecimal digits
    OID,                  ///< 1.3.52.4.1.1.…: labels that begin with 06 0E 2B 34 only
    URN,                  ///< urn:smpte:ul:060e2b34.…, urn:uuid:…, urn:smpte:umid:…
};

} // namespace MXF::Zelm::Types
