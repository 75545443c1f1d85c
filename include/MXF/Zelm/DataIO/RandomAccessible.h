/// Something with a position that can be moved.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstdint>

namespace MXF::Zelm::DataIO {

class MXFZELM_EXPORT RandomAccessible {
public:
    virtual ~RandomAccessible();

    /// Moves to `position`, at most to the end, and returns the position reached.
    virtual std::uint64_t seek(std::uint64_t position) = 0;
};

} // namespace MXF::Zelm::DataIO
