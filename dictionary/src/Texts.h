/// The texts of this folder that are compiled in (EmbedText.cmake).
#pragma once

#include <string_view>

namespace MXF::ZelmDictionary {

/// standard.zdict.
std::string_view standardText();

/// names.zdict.
std::string_view namesText();

} // namespace MXF::ZelmDictionary
