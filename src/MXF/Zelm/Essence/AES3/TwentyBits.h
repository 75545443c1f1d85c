/// What sources of AES3 say to samples that do not fill whole bytes.
#pragma once

namespace MXF::Zelm::Essence::AES3 {

/// Throws Exceptions::InvalidFormat.
[[noreturn]] void refuseTwentyBits();

} // namespace MXF::Zelm::Essence::AES3
