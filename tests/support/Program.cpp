#include "support/Program.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace MXF::Zelm::Test {

namespace {

/// A file that the program's output goes to, gone with the object.
class CaptureFile {
public:
    CaptureFile()
        : path_(std::filesystem::temp_directory_path() /
                ("zelm-test-" + std::to_string(std::random_device()()) +
                 std::to_string(std::random_device()()))) {}
    ~CaptureFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    CaptureFile(CaptureFile const&) = delete;
    CaptureFile& operator=(CaptureFile const&) = delete;

    std::string name() const { return path_.string(); }
    std::string text() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path path_;
};

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

} // namespace

ProgramRun runProgram(std::string const& program, std::vector<std::string> const& arguments) {
    CaptureFile const output, errors;
    std::string command = quoted(program);
    for (auto const& argument : arguments)
        command += " " + quoted(argument);
    command += " >" + quoted(output.name()) + " 2>" + quoted(errors.name());
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
    run.output = output.text();
    run.errors = errors.text();
    return run;
}

} // namespace MXF::Zelm::Test
