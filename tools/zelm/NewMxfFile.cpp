#include "NewMxfFile.h"

#include "Interruption.h"

#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <filesystem>

namespace Zelm {

using namespace MXF::Zelm;
using DataIO::File::exists;

namespace {

OutputOptions checked(std::string const& name, NewFileOptions const& options) {
    checkNewName(name, options);
    return {.force = options.force};
}

} // namespace

void checkNewName(std::string const& name, NewFileOptions const& options) {
    if (name == OutputFile::standardOutput)
        return;
    std::error_code unknown;
    if (std::filesystem::is_other(std::u8string(name.begin(), name.end()), unknown))
        throw CannotWrite(name + ": is a device or a pipe, and no file (-o - is standard output)");
    std::string const part = name + ".part";
    for (auto const& input : options.inputs)
        if (DataIO::File::sameFile(input, name) || DataIO::File::sameFile(input, part))
            throw CannotWrite(name + ": is an input, which is never written over");
    for (auto const& taken : {name, part})
        if (!options.force && exists(taken))
            throw CannotWrite(taken + ": is there already (--force replaces it)");
}

NewMxfFile::NewMxfFile(std::string const& name, NewFileOptions options)
    : options_(std::move(options)),
      output_(name, checked(name, options_)),
      start_(std::chrono::steady_clock::now()) {
    if (auto* const file = dynamic_cast<DataIO::File::FileDataSink*>(&output_.sink()))
        behind_ = std::make_unique<WriteBehind>(*file, options_.sync || exists(name));
}

NewMxfFile::~NewMxfFile() = default;

DataIO::DataSink& NewMxfFile::sink() { return behind_ ? *behind_ : output_.sink(); }

void NewMxfFile::run(MXFIO::Creator& creator) {
    Progress progress("writing " + name(), options_.total, true);
    do {
        progress.update(options_.done ? options_.done() : creator.progress().fileOffset());
        if (!wasInterrupted_ && InterruptionGuard::wasInterrupted()) {
            wasInterrupted_ = true;
            if (options_.discard)
                return;
            creator.finish();
        }
    } while (creator.write());
}

void NewMxfFile::write(MXFIO::Creator& creator) {
    InterruptionGuard const guard;
    run(creator);
    wasDiscarded_ = wasInterrupted_ && options_.discard;
    bytes_ = creator.progress().fileOffset();
    hasOpenHeader_ = behind_ && !wasDiscarded_ && !creator.progress().isHeaderClosed();
    if (behind_ && !wasDiscarded_)
        behind_->finish();
    std::chrono::duration<double> const spent = std::chrono::steady_clock::now() - start_;
    seconds_ = spent.count();
    if (wasDiscarded_)
        discard();
}

void NewMxfFile::discard() {
    abandon();
    if (!isStandardOutput())
        DataIO::File::remove(partName());
}

void NewMxfFile::complete() {
    behind_.reset();
    if (!wasDiscarded_)
        output_.complete();
}

void NewMxfFile::abandon() {
    behind_.reset();
    try {
        output_.abandon();
    } catch (Exceptions::SystemError const&) {
        // The system has failed already, which was reported.
    }
}

} // namespace Zelm
