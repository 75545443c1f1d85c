#include "UndoOptions.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/UndoRecord.h>

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

void UndoOptions::declare(CLI::App& parser) {
    auto* const restore =
        parser.add_flag("--restore", restore_, "Put back what an edit that was cut off had changed");
    parser
        .add_flag("--discard-undo", discard_,
                  "Keep the file as an edit that was cut off left it, and forget what stood there before")
        ->excludes(restore);
}

ExitStatus UndoOptions::run(std::string const& file) const {
    if (!MXFIO::UndoRecord::exists(file))
        throw Exceptions::InvalidChange("there is no undo record: no edit of this file was cut off");
    MXFIO::UndoRecord record{std::string_view(file)};
    std::string const description = record.describe();
    restore_ ? record.restore() : record.discard();
    std::cout << file << ": " << (restore_ ? "restored" : "undo record discarded") << " (" << description
              << ")\n";
    return Done;
}

void UndoOptions::requireNone(std::string const& file) {
    if (MXFIO::UndoRecord::exists(file))
        throw Exceptions::InvalidChange(
            "an edit of this file was cut off: --restore puts the old bytes back, "
            "--discard-undo keeps the file as it is");
}

} // namespace Zelm
