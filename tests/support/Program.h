/// Runs a program and captures what it prints and how it ends.
#pragma once

#include <string>
#include <vector>

namespace MXF::Zelm::Test {

struct ProgramRun {
    std::string output;
    std::string errors;
    int status = -1; ///< exit status; -1 when a signal ended the program
    int signal = 0;  ///< the signal that ended the program, 0 for none
};

/// `program` is a path, `arguments` are passed on as they are; all in UTF-8.
ProgramRun runProgram(std::string const& program, std::vector<std::string> const& arguments);

/// The program zelm of this build.
inline ProgramRun runZelm(std::vector<std::string> const& arguments) {
    return runProgram(MXFZELM_ZELM_PROGRAM, arguments);
}

} // namespace MXF::Zelm::Test
