/// Writes a new MXF file, or several at a time of which each is whole or not: under its name with ".part"
/// until it is whole, or to standard output.
///
///     NewMxfFile file("clip.mxf", {.inputs = {"clip.m2v"}});
///     auto const creator = builder.creator(file.sink());
///     file.write(*creator);      // progress, interruption, errors
#pragma once

#include "OutputFile.h"
#include "Progress.h"
#include "WriteBehind.h"

#include <MXF/Zelm/MXFIO/Creator.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Zelm {

constexpr const char* syncHelp =
    "Have the file on the device before it gets its name, as one that replaces another is";

struct NewFileOptions {
    bool force = false;                   ///< a file that has the name is replaced
    bool discard = false;                 ///< an interruption leaves no file
    bool sync = false;                    ///< it is on the device before it gets its name
    std::vector<std::string> inputs = {}; ///< never written over

    /// What `done` counts up to, for the progress; 0 for not known.
    std::uint64_t total = 0;

    /// How far the work is; the bytes of the file when empty.
    std::function<std::uint64_t()> done = {};
};

/// The name cannot be written to: the message begins with it.
struct CannotWrite : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class NewMxfFile {
public:
    /// Opens "NAME.part", or standard output for "-". Throws CannotWrite when the file is there and may not
    /// be replaced, is an input or no file at all; Exceptions::SystemError.
    NewMxfFile(std::string const& name, NewFileOptions options);
    ~NewMxfFile();
    NewMxfFile(NewMxfFile const&) = delete;
    NewMxfFile& operator=(NewMxfFile const&) = delete;

    std::string const& name() const { return output_.name(); }
    bool isStandardOutput() const { return output_.name() == OutputFile::standardOutput; }

    /// For the creator.
    MXF::Zelm::DataIO::DataSink& sink();

    /// Writes all that the creator has. After SIGINT or SIGTERM the file ends with what was written so far
    /// and is closed, or is removed if that is wanted. Exceptions of sources and sink come out; what was
    /// written stays as the part file. A file that replaces another is on the device before it gets its name,
    /// so that not even a power cut leaves half a file for a whole one.
    void write(MXF::Zelm::MXFIO::Creator& creator);

    /// Has an interruption cut the file short?
    bool wasInterrupted() const { return wasInterrupted_; }

    /// Was the file removed for that?
    bool wasDiscarded() const { return wasDiscarded_; }

    /// Has its header metadata outgrown its place, so that the header partition stays open?
    bool hasOpenHeader() const { return hasOpenHeader_; }
    static constexpr const char* openHeaderNote =
        "the header metadata has outgrown its place: the header partition stays open, the footer has what is "
        "final (--reserve makes room)";

    /// Gives the file its name. Not when it was discarded.
    void complete();

    /// Of the file, when it is whole.
    std::uint64_t bytes() const { return bytes_; }
    double seconds() const { return seconds_; }

    /// The name that what was written stays under when writing fails; empty when there is none.
    std::string partName() const { return isStandardOutput() ? "" : output_.partName(); }

    /// Keeps what was written under the part name.
    void abandon();

    /// Removes it.
    void discard();

private:
    void run(MXF::Zelm::MXFIO::Creator& creator);

    NewFileOptions options_;
    OutputFile output_;
    std::unique_ptr<WriteBehind> behind_; // null for standard output
    std::chrono::steady_clock::time_point start_;
    double seconds_ = 0;
    std::uint64_t bytes_ = 0;
    bool wasInterrupted_ = false, wasDiscarded_ = false, hasOpenHeader_ = false;
};

/// Throws CannotWrite when a new file cannot have that name, as above.
void checkNewName(std::string const& name, NewFileOptions const& options);

} // namespace Zelm
