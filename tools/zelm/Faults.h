/// How faults reach the user: one line on standard error, "zelm: FILE: what is wrong at 0xOFFSET".
#pragma once

#include "Command.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace Zelm {

/// What is wrong at a place of a file.
struct Fault {
    std::string message;
    std::uint64_t offset = 0; ///< in the file, run-in included
};

/// "what is wrong at 0xOFFSET", without the offset when it is not known.
std::string faultText(std::string_view message, std::optional<std::uint64_t> offset);

/// Writes the line. What was printed to standard output before is flushed first, so that the two keep their
/// order.
void reportFault(std::string_view file, std::string_view message,
                 std::optional<std::uint64_t> offset = std::nullopt);

/// Writes the line for an exception and says which exit status it calls for.
ExitStatus reportFault(std::string_view file, MXF::Zelm::Exceptions::BaseException const& fault);

/// A refusal of the library, whose message begins with the name of one of `files`; one that does not is about
/// the first.
void reportRefusal(std::initializer_list<std::string_view> files, std::string_view message);

} // namespace Zelm
