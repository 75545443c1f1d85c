#include "HelpFormatter.h"

#include <algorithm>
#include <sstream>

namespace Zelm {

namespace {

constexpr std::size_t lineWidth = 100; // as wide as the texts below the options

} // namespace

/// A positional that may be any text is named well enough.
std::string HelpFormatter::make_option_opts(CLI::Option const* option) const {
    static std::string const anything = " TEXT";
    auto text = CLI::Formatter::make_option_opts(option);
    return option->nonpositional() || text.rfind(anything, 0) != 0 ? text : text.substr(anything.size());
}

std::string HelpFormatter::make_option_desc(CLI::Option const* option) const {
    return broken(CLI::Formatter::make_option_desc(option));
}

std::string HelpFormatter::make_subcommand(CLI::App const* command) const {
    std::ostringstream text;
    CLI::detail::format_help(text, command->get_display_name(), broken(command->get_description()),
                             get_column_width());
    return text.str();
}

std::string HelpFormatter::broken(std::string const& text) const {
    std::size_t const width = lineWidth - std::min(get_column_width(), lineWidth / 2);
    std::istringstream words(text);
    std::string lines;
    std::size_t length = 0; // of the last line
    for (std::string word; words >> word; length += word.size()) {
        if (length != 0 && length + 1 + word.size() > width) {
            lines += "\n";
            length = 0;
        } else if (length != 0) {
            lines += " ";
            ++length;
        }
        lines += word;
    }
    return lines;
}

} // namespace Zelm
