#include "support/Program.h"

#include "support/Files.h"

#include <cstdlib>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace MXF::Zelm::Test {

namespace {

std::string quoted(std::string const& word) {
#if defined(_WIN32)
    return '"' + word + '"'; // the tests use no quotation marks
#else
    std::string text = "'";
    for (char const c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
#endif
}

std::string textOf(std::string const& file) {
    Bytes const bytes = readFile(file);
    return {bytes.begin(), bytes.end()};
}

} // namespace

ProgramRun runProgram(std::string const& program, std::vector<std::string> const& arguments) {
    TemporaryFolder const folder;
    std::string const output = folder.file("output"), errors = folder.file("errors");
    std::string command = quoted(program);
    for (auto const& argument : arguments)
        command += " " + quoted(argument);
    command += " >" + quoted(output) + " 2>" + quoted(errors);
    ProgramRun run;
#if defined(_WIN32)
    run.status = std::system(("\"" + command + "\"").c_str()); // cmd takes the outer pair away
#else
    // With exec the shell is replaced, so that a signal is not turned into an exit status.
    int const ended = std::system(("exec " + command).c_str());
    if (WIFEXITED(ended))
        run.status = WEXITSTATUS(ended);
    if (WIFSIGNALED(ended))
        run.signal = WTERMSIG(ended);
#endif
    run.output = textOf(output);
    run.errors = textOf(errors);
    return run;
}

} // namespace MXF::Zelm::Test
