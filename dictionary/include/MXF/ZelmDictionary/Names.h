/// Labels, KLV keys and set classes in words, for messages and reports. The names are those of the SMPTE
/// registers; labels and keys that carry parameters (operational patterns, container labels of the MPEG
/// family, essence elements, partition packs) are put into words from them.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/ZelmDictionary/Export.h"

#include <string>
#include <string_view>
#include <vector>

namespace MXF::ZelmDictionary {

/// The name of a label: "OP1a, internal essence, stream, multi-track". A label that the registers hold with
/// another version (byte 7) is found too. Empty when unknown.
MXFZELM_DICTIONARY_EXPORT std::string labelName(Zelm::Types::UniversalLabel const& label);

/// The labels of a name, the case of ASCII letters left out of account: those that have it or, if none has,
/// those whose names begin with it ("OP1a"), in ascending order.
MXFZELM_DICTIONARY_EXPORT std::vector<Zelm::Types::UniversalLabel> labelsNamed(std::string_view name);

/// What a KLV packet with this key holds: "header partition pack, closed and complete", "MPEG picture element
/// 1 of 1, frame wrapped", "Preface"; "unknown" when the key is not known.
MXFZELM_DICTIONARY_EXPORT std::string keyName(Zelm::KLV::Key const& key);

/// The register's symbol of a standard set class, "Preface"; empty when the key is no set class of the
/// registers. It stays valid for the life of the program. Classes that a host loads have it in their property
/// "name".
MXFZELM_DICTIONARY_EXPORT std::string_view className(Zelm::KLV::Key const& key);

} // namespace MXF::ZelmDictionary
