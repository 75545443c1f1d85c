/// Draws bytes per edit unit over time.
#pragma once

#include "IndexSurvey.h"

namespace Zelm {

/// Draws all tables into the SVG file `name`. Throws Exceptions::InvalidValue when that file is there and
/// `replace` is false, or is the input itself; Exceptions::SystemError.
void plotIndex(Input& input, IndexSurvey const& survey, std::string const& name, bool replace);

} // namespace Zelm
