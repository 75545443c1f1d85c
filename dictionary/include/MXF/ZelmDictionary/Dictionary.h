/// Fills a `MetaMetadata::Dictionary`: with the standard set classes, which are compiled in, and with those
/// that a text defines, for example the private classes of a station or a maker. docs/dictionary-format.md
/// describes the text.
///
/// Definitions carry these properties:
///   - set classes: "name" (the register's symbol), "parent" (the symbol of the class inherited from),
///   "abstract"
///     ("true" for classes that only serve as parents), "name377" (the name in SMPTE 377M, where it differs);
///   - elements: "name", "type" (the name of the type in the register), "name377".
///
/// The classes that a reference allows are those that the text names and all that inherit from them.
#pragma once

#include "MXF/Zelm/MetaMetadata/Dictionary.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/ZelmDictionary/Export.h"

#include <string_view>

namespace MXF::ZelmDictionary {

using SharedDictionary =
    Zelm::Templates::SharedPtr<Zelm::MetaMetadata::Dictionary, Zelm::Templates::LockedCounter>;

/// Adds the standard dictionary: the local sets of the SMPTE registers with SMPTE 377M's required status and
/// distinguished values. Throws as `load` does when `dictionary` already defines one of them.
MXFZELM_DICTIONARY_EXPORT void loadStandard(Zelm::MetaMetadata::Dictionary& dictionary);

/// A new dictionary that holds the standard definitions. Each call makes one, so that a host can add to it.
MXFZELM_DICTIONARY_EXPORT SharedDictionary standard();

/// Adds what `text` (UTF-8) defines to `dictionary`. The text may inherit from, refer to and extend what the
/// dictionary holds. `sourceName` is what messages call the text, usually the name of its file.
///
/// Throws Zelm::Exceptions::InvalidFormat with source, line and cause ("private.zdict:12: unknown type
/// 'Int33'"); the dictionary is then as it was, since nothing is added before all of the text is understood.
/// The dictionary must not be in use by readers while this runs.
MXFZELM_DICTIONARY_EXPORT void load(Zelm::MetaMetadata::Dictionary& dictionary, std::string_view text,
                                    std::string_view sourceName);

} // namespace MXF::ZelmDictionary
