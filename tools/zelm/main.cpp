/// The program `zelm`: finds the command, runs it, and turns what goes wrong into one line and an exit
/// status.
#include "Command.h"
#include "Faults.h"
#include "HelpFormatter.h"

#include <MXF/Zelm/Platform/Text.h>

#include <iostream>
#include <map>

namespace Zelm {

namespace {

using Maker = std::unique_ptr<Command> (*)();

struct CommandRow {
    const char* name;
    const char* summary;
    Maker make;
};

constexpr CommandRow commandRows[] = {
    {"info", "Show what a file is: pattern, codecs, tracks, durations, timecode, and anything odd",
     makeInfoCommand},
    {"partitions", "List the partitions and the random index pack, disagreements marked",
     makePartitionsCommand},
    {"klv", "List the KLV packets of a file, or count them by key", makeKlvCommand},
    {"dump", "Show the header metadata as a tree, every property decoded", makeDumpCommand},
    {"index", "Show the index tables: coverage, gaps, disagreements, and where edit units lie",
     makeIndexCommand},
    {"frames", "List the edit units: order, timecode, key frames, sizes, where they lie", makeFramesCommand},
    {"extract", "Write the essence of every track into a file of its own", makeExtractCommand},
    {"ancillary", "Show VBI and ancillary data: kinds of packets, lines, captions, faults",
     makeAncillaryCommand},
    {"audio", "Show the sound of MXF, Wave and AVI files: channels, labels, peaks, silence, what disagrees",
     makeAudioCommand},
    {"wrap", "Make an MXF file of essence: video, sound, data, or tracks of other MXF files",
     makeWrapCommand},
    {"diff", "Compare two files: partitions, metadata by role, index tables, essence", makeDiffCommand},
    {"edit", "Change properties of the header metadata, in place or into a new file", makeEditCommand},
    {"repair", "Make a file whole that was cut off: footer, index tables, durations", makeRepairCommand},
    {"rewrap", "Write the essence of a file into another one, laid out in another way", makeRewrapCommand},
    {"join", "Write the essence of several files into one, one after the other", makeJoinCommand},
};

/// Runs a command; the exceptions that a command does not report itself end here.
ExitStatus runReporting(Command& command) {
    try {
        return command.run();
    } catch (MXF::Zelm::Exceptions::SystemError const& failure) {
        std::cerr << "zelm: " << failure.message() << "\n";
        return SystemFailed;
    } catch (MXF::Zelm::Exceptions::InvalidFormat const& failure) {
        std::cerr << "zelm: " << failure.message() << "\n"; // a dictionary: the message names file and line
        return WrongUse;
    } catch (std::bad_alloc const&) {
        std::cerr << "zelm: not enough memory\n";
        return SystemFailed;
    } catch (std::exception const& failure) {
        std::cerr << "zelm: " << failure.what() << "\n";
        return NotMXF;
    }
}

/// The help of a command, or of the program when no command is named. Throws CLI::ParseError for an unknown
/// one.
void printHelp(CLI::App const& program, std::string const& topic) {
    if (topic.empty()) {
        std::cout << program.help();
        return;
    }
    for (CLI::App const* const parser : program.get_subcommands({}))
        if (parser->get_name() == topic) {
            std::cout << parser->help(program.get_name());
            return;
        }
    throw CLI::ValidationError("help", "there is no command " + topic);
}

int runProgram(int count, char** arguments) {
    CLI::App program("Reads, checks and shows MXF files (SMPTE 377M).", "zelm");
    program.formatter(std::make_shared<HelpFormatter>()); // that of the commands too
    program.set_version_flag("--version", "zelm " MXFZELM_VERSION);
    program.require_subcommand(1);
    program.footer(
        "\nExit status: 0 done, 1 a check found something, 2 wrong use, 3 the input cannot be read as MXF,\n"
        "4 the system failed. \"zelm help COMMAND\" tells more of a command.");

    std::map<CLI::App*, std::unique_ptr<Command>> commands;
    for (auto const& row : commandRows) {
        CLI::App* const parser = program.add_subcommand(row.name, row.summary);
        auto command = row.make();
        command->declare(*parser);
        commands.emplace(parser, std::move(command));
    }
    std::string helpTopic;
    CLI::App* const help = program.add_subcommand("help", "Tell more of a command");
    help->add_option("COMMAND", helpTopic, "The command");

    try {
        program.parse(count, arguments);
        if (help->parsed()) {
            printHelp(program, helpTopic);
            return Done;
        }
    } catch (CLI::ParseError const& refusal) {
        if (refusal.get_exit_code() == 0) // help or version was asked for
            return program.exit(refusal);
        std::cerr << "zelm: " << refusal.what() << " (zelm --help tells more)\n";
        return WrongUse;
    }
    ExitStatus const status = runReporting(*commands.at(program.get_subcommands().front()));
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "zelm: cannot write to standard output\n";
        return SystemFailed;
    }
    return status;
}

} // namespace

void ReportOptions::declare(CLI::App& parser) {
    parser.add_flag("--json", json, "Print one JSON object instead of text");
    parser
        .add_option("--dictionary", dictionaries,
                    "A file with further definitions of set classes; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false); // one after each option, which may come again
}

} // namespace Zelm

#if defined(_WIN32)
/// Windows gives the arguments in UTF-16; everything here takes UTF-8.
int wmain(int count, wchar_t** wideArguments) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::wstring_view const wide(wideArguments[i]);
        texts.push_back(MXF::Zelm::Platform::toUtf8(std::u16string(wide.begin(), wide.end())));
    }
    std::vector<char*> arguments;
    for (auto& text : texts)
        arguments.push_back(text.data());
    return Zelm::runProgram(count, arguments.data());
}
#else
int main(int count, char** arguments) {
    std::ios::sync_with_stdio(false);
    return Zelm::runProgram(count, arguments);
}
#endif
