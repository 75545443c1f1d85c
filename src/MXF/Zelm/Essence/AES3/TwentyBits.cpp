#include "MXF/Zelm/Essence/AES3/TwentyBits.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::Essence::AES3 {

void refuseTwentyBits() {
    throw Exceptions::InvalidFormat(
        "AES3 source still does not support 20 bit per sample. Contact the maintainers of MXF::Zelm.");
}

} // namespace MXF::Zelm::Essence::AES3
