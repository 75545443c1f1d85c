/// The writing of the files of `zelm wrap`.
#pragma once

#include "NewMxfFile.h"
#include "WrapPlan.h"

namespace Zelm {

struct WrapResult {
    std::string file;
    std::string pattern; ///< as --pattern names it
    std::uint64_t bytes = 0;
    double seconds = 0;  ///< that writing took
    StartTimecode start; ///< of what plays first
    std::vector<WrapTrack*> tracks;
    std::vector<std::string> md5;         ///< of the tracks, if it was wanted
    std::vector<std::string> notes;       ///< what a person should know
    std::vector<std::string> differences; ///< that the verification found
    bool verified = false;
    bool interrupted = false, discarded = false;
};

/// What the files of a plan have in common.
struct WrapTask {
    Layout const& layout;
    WrapOptions const& options;
    WrapPlan& plan;
    SharedDictionary dictionary;
    NewFileOptions newFile;
};

/// Writes all files; `results` gets one as each is done. After an interruption no further one is begun.
/// Throws CannotWrap, CannotWrite, what the library throws, and WritingFailed.
void writeFiles(WrapTask const& task, std::vector<WrapResult>& results);

/// Writing failed; the message says why.
struct WritingFailed : std::runtime_error {
    WritingFailed(std::string const& name, std::string const& partName, std::string const& why, bool isSystem)
        : std::runtime_error(why), file(name), part(partName), bySystem(isSystem) {}

    std::string file; ///< that is at fault
    std::string part; ///< what was written of it stays under this name; empty for nothing
    bool bySystem;    ///< not the essence is at fault
};

} // namespace Zelm
