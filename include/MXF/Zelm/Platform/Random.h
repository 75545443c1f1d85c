/// Random bytes from the system's generator, good enough for identifiers that must never meet twice.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstddef>

namespace MXF::Zelm::Platform {

/// Fills `size` bytes at `buffer`. May be called from several threads at once.
MXFZELM_EXPORT void randomBytes(unsigned char* buffer, std::size_t size);

} // namespace MXF::Zelm::Platform
