/// What is known and cannot be wrapped, so that `zelm wrap` can say so.
#pragma once

#include "WrapKinds.h"

namespace Zelm {

bool isHevc(InputHead const& head);
bool isMpeg4Video(InputHead const& head);

/// Why an input that may look like one of the kinds is none of them; null when nothing is known against it.
const char* refusalOf(InputHead const& head);

/// The same of an input that is of no kind.
const char* refusalOfUnknown(InputHead const& head);

} // namespace Zelm
