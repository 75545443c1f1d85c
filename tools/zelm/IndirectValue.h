/// Values that carry their own type, as extended object models write them:
///
///      1    byte order of what follows: 'L' little-endian, 'B' big-endian
///     16    type, as a structure of one 4-byte, two 2-byte and eight single-byte fields in that order; the
///           label's bytes 8 to 15 stand in the first three fields, its bytes 0 to 7 in the last
///           value in that order
#pragma once

#include "Json.h"

#include <vector>

namespace Zelm {

/// The content of an indirect value; null when it is too short or of a type that is not known here.
Json decodeIndirect(std::vector<unsigned char> const& bytes);

} // namespace Zelm
