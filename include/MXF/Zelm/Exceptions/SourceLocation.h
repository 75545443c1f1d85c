/// Where in the library's source an exception was thrown.
#pragma once

#include <string>

namespace MXF::Zelm::Exceptions {

/// Source file and line, taken at the place where a function that has it as default argument is called.
/// (std::source_location does not work with every compiler that builds the library.)
struct SourceLocation {
    const char* file = "";
    unsigned line = 0;

    static constexpr SourceLocation current(const char* sourceFile = __builtin_FILE(),
                                            unsigned sourceLine = __builtin_LINE()) {
        return SourceLocation{sourceFile, sourceLine};
    }
};

} // namespace MXF::Zelm::Exceptions
