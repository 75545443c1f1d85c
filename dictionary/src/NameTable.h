/// The names of labels, essence elements, packs and set classes: names.zdict, which is compiled in. Its lines
/// are sorted, so that a search goes through the text itself and nothing is built up at the start.
#pragma once

#include "MXF/Zelm/KLV/Key.h"

#include <functional>
#include <string_view>

namespace MXF::ZelmDictionary {

/// The name of a label or key; one with another version (byte 7) serves when the exact one has none. Empty
/// when unknown.
std::string_view findName(Zelm::KLV::Key const& key);

/// Calls `visit` for each key and its name, in the order of the table.
void forEachName(std::function<void(Zelm::KLV::Key const&, std::string_view)> const& visit);

} // namespace MXF::ZelmDictionary
