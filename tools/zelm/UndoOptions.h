/// What commands that write into a file offer for an edit that was cut off.
#pragma once

#include "Command.h"

#include <string>

namespace Zelm {

class UndoOptions {
public:
    /// `--restore` and `--discard-undo`.
    void declare(CLI::App& parser);

    bool isAsked() const { return restore_ || discard_; }

    /// Restores or discards the undo record of a file, and says so. Throws Exceptions::InvalidChange when
    /// there is none.
    ExitStatus run(std::string const& file) const;

    /// Throws Exceptions::InvalidChange when the file has an undo record.
    static void requireNone(std::string const& file);

private:
    bool restore_ = false;
    bool discard_ = false;
};

} // namespace Zelm
