/// What every command of `zelm` has in common.
#pragma once

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <vector>

namespace Zelm {

/// The program's exit status.
enum ExitStatus : int {
    Done = 0,
    FoundSomething = 1, ///< a check or a comparison found something
    WrongUse = 2,
    NotMXF = 3,       ///< the input cannot be read as MXF, or not to its end
    SystemFailed = 4, ///< no such file, no space, …
};

/// One command of the program: declares its options, then runs.
class Command {
public:
    virtual ~Command() = default;

    /// Declares the command's options on its own parser; the values go to members.
    virtual void declare(CLI::App& parser) = 0;

    /// Does the work. Results go to standard output; faults of a file are reported with `reportFault`, one
    /// line each. Exceptions of the library that get here become such a line.
    virtual ExitStatus run() = 0;
};

std::unique_ptr<Command> makeInfoCommand();
std::unique_ptr<Command> makePartitionsCommand();
std::unique_ptr<Command> makeKlvCommand();
std::unique_ptr<Command> makeDumpCommand();
std::unique_ptr<Command> makeDiffCommand();
std::unique_ptr<Command> makeIndexCommand();
std::unique_ptr<Command> makeFramesCommand();
std::unique_ptr<Command> makeExtractCommand();
std::unique_ptr<Command> makeAncillaryCommand();
std::unique_ptr<Command> makeAudioCommand();
std::unique_ptr<Command> makeEditCommand();
std::unique_ptr<Command> makeRepairCommand();
std::unique_ptr<Command> makeWrapCommand();
std::unique_ptr<Command> makeRewrapCommand();
std::unique_ptr<Command> makeJoinCommand();

/// The options that all reporting commands share.
struct ReportOptions {
    bool json = false;
    std::vector<std::string> dictionaries; ///< files with further definitions

    void declare(CLI::App& parser);
};

} // namespace Zelm
