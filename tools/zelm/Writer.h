/// What this program calls itself in the files that it writes.
#pragma once

#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Platform/Text.h>

namespace Zelm {

inline MXF::Zelm::Metadata::Structural::Product thisProduct() {
    constexpr unsigned char uid[16] = {0x5D, 0x0B, 0x6E, 0x2C, 0x91, 0x57, 0x4A, 0x38,
                                       0x8F, 0x1E, 0xC4, 0x63, 0x27, 0xDA, 0x90, 0x15};
    return {u"MXF::Zelm", u"zelm", MXF::Zelm::Platform::toUtf16(MXFZELM_VERSION),
            MXF::Zelm::Types::UUID(uid)};
}

} // namespace Zelm
