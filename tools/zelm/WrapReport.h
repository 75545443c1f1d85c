/// What `zelm wrap` prints.
#pragma once

#include "WrapFiles.h"

namespace Zelm {

/// A few lines for people.
void printWrapText(std::ostream& out, std::vector<WrapResult> const& results);
void printWrapJson(std::vector<WrapResult> const& results);

} // namespace Zelm
