/// The option that lets a command replace a file.
#pragma once

#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <CLI/CLI.hpp>

#include <string>

namespace Zelm {

/// `--force`, and `--replace` as another word for it, which the help leaves out. With `needed` both take
/// that option beside them.
inline void declareForce(CLI::App& parser, bool& force, std::string const& help,
                         CLI::Option* needed = nullptr) {
    for (auto* const option :
         {parser.add_flag("--force", force, help), parser.add_flag("--replace", force)->group("")})
        if (needed != nullptr)
            option->needs(needed);
}

/// Throws Exceptions::InvalidChange for a file that is there, unless `force`.
inline void requireFree(std::string const& name, bool force) {
    if (!force && MXF::Zelm::DataIO::File::exists(name))
        throw MXF::Zelm::Exceptions::InvalidChange(name + ": is there already (--force replaces it)");
}

} // namespace Zelm
