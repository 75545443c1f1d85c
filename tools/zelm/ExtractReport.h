/// What `zelm extract` prints.
#pragma once

#include "Extraction.h"

#include <string>

namespace Zelm {

struct ExtractReport {
    std::string file; ///< that was read
    ExtractResult const& result;
    std::vector<ExtractedFile> const& files; ///< that were written, if their MD5 was wanted
    bool listOnly = false;
};

void printExtractText(ExtractReport const& report);
void printExtractJson(ExtractReport const& report);

} // namespace Zelm
