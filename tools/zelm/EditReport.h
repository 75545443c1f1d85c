/// What `zelm edit` shows: the paths of a file, or what an edit changes and writes.
#pragma once

#include "SetPaths.h"

#include <MXF/Zelm/MXFIO/Updater.h>

#include <optional>
#include <string>
#include <vector>

namespace Zelm {

struct EditReport {
    std::string file;
    std::string output; ///< the new file; empty for none
    bool inPlace = false;
    bool written = false;
    std::vector<MXF::Zelm::MXFIO::MetadataChange> changes;
    std::optional<MXF::Zelm::MXFIO::UpdatePlan> placePlan; ///< of writing into the file
    std::optional<MXF::Zelm::MXFIO::UpdatePlan> filePlan;  ///< of writing a new one
    std::uint64_t bytesWritten = 0;
    std::uint64_t essenceBytesProven = 0;
};

/// `paths` are those of the metadata as changed.
void printEditText(EditReport const& report, SetPaths const& paths);
void printEditJson(EditReport const& report, SetPaths const& paths);

/// Every property that can be set, with its value.
void printPathsText(SetPaths const& paths);
void printPathsJson(std::string const& file, SetPaths const& paths);

} // namespace Zelm
