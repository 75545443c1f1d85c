/// Reads a file that `zelm wrap` has written, and compares it with what went in.
#pragma once

#include "WrapPlan.h"

namespace Zelm {

/// What differs, one line each; none when each edit unit of each track is found by the file's index and has
/// the bytes that its analyzer gave. `rate` is that of content packages. Throws what reading throws.
std::vector<std::string> verify(WrapFile const& file, SharedDictionary const& dictionary,
                                EditRate const& rate);

} // namespace Zelm
