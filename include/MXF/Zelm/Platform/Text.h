/// Conversion between UTF-8 (messages, file names) and UTF-16 (the library's strings).
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <string>
#include <string_view>

namespace MXF::Zelm::Platform {

/// UTF-16 to UTF-8. A surrogate without its partner becomes U+FFFD; nothing is refused.
MXFZELM_EXPORT std::string toUtf8(std::u16string_view text);

/// UTF-8 to UTF-16. Each byte that does not belong to a well-formed sequence becomes U+FFFD; nothing is
/// refused.
MXFZELM_EXPORT std::u16string toUtf16(std::string_view text);

} // namespace MXF::Zelm::Platform
