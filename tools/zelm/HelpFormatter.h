/// The help of the program and its commands, in lines that fit a terminal.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace Zelm {

/// Breaks descriptions into lines beside the names that they describe.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(CLI::Option const* option) const override;
    std::string make_option_desc(CLI::Option const* option) const override;
    std::string make_subcommand(CLI::App const* command) const override;

private:
    std::string broken(std::string const& text) const;
};

} // namespace Zelm
