#include "MXF/Zelm/MXFIO/RepairWriter.h"

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/DataIO/File/FileFunctions.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/SystemOperations.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

/// Bytes that are copied in one go, and between two calls of the progress callback.
constexpr std::uint64_t blockSize = 4 * 1024 * 1024;

} // namespace

RepairWriter::RepairWriter(std::string name, DataIO::RandomAccessDataSource& source, std::uint64_t fileSize,
                           PatchedSource& repaired, FileOperations& operations)
    : name_(std::move(name)),
      source_(source),
      fileSize_(fileSize),
      repaired_(repaired),
      operations_(operations) {}

RepairReport RepairWriter::report(std::uint64_t fileSize) const {
    RepairReport report{0, repaired_.tail().size(), fileSize};
    for (auto const& [offset, bytes] : repaired_.patches())
        report.bytesChanged += bytes.size();
    return report;
}

// In place.

RepairReport RepairWriter::writeInPlace() {
    if (UndoRecord::exists(name_))
        throw Exceptions::InvalidChange(
            name_ + ": somebody else is editing the file: " + UndoRecord::nameFor(name_) + " is there");
    std::vector<UndoRecord::Piece> pieces;
    for (auto const& [offset, bytes] : repaired_.patches())
        pieces.push_back({offset, readBytes(source_, offset, bytes.size())});
    std::uint64_t const over =
        std::min<std::uint64_t>(fileSize_ - repaired_.length(), repaired_.tail().size());
    if (over != 0)
        pieces.push_back({repaired_.length(), readBytes(source_, repaired_.length(), over)});
    auto const file = operations_.open(name_, FileOperations::Mode::Modify);
    requireFileAsLoaded(pieces);
    UndoRecord record(name_, fileSize_, std::move(pieces), &operations_, UndoRecord::Growth::Appends);
    record.write();
    writeOver(*file, record);
    file->close();
    record.discard();
    return report(repaired_.size());
}

void RepairWriter::requireFileAsLoaded(std::vector<UndoRecord::Piece> const& pieces) const {
    DataIO::File::FileDataSource now(name_);
    bool same = now.size() == fileSize_;
    for (auto const& piece : pieces)
        same = same && readBytes(now, piece.position, piece.bytes.size()) == piece.bytes;
    if (!same)
        throw Exceptions::InvalidChange(name_ + ": somebody has changed the file since it was opened");
}

/// Writes while the record stands: the new end, then what leads there. When the system refuses, puts the old
/// bytes back.
void RepairWriter::writeOver(WritableFile& file, UndoRecord& record) const {
    try {
        if (!repaired_.tail().empty())
            file.writeAt(repaired_.length(), repaired_.tail().data(), repaired_.tail().size());
        file.synchronize();
        for (auto const& [offset, bytes] : repaired_.patches())
            file.writeAt(offset, bytes.data(), bytes.size());
        file.synchronize();
    } catch (Exceptions::SystemError const& failure) {
        try {
            record.restore();
        } catch (Exceptions::BaseException const&) {
            throw Exceptions::SystemError(
                name_, "cannot write, nor put the old bytes back, which " + record.recordName() + " holds",
                failure.code());
        }
        throw;
    }
}

// As a new file.

void RepairWriter::requireFreeName(std::string const& name, NewFileOptions const& options) const {
    if (DataIO::File::sameFile(name_, name))
        throw Exceptions::InvalidChange(name + ": the file to be written is the one that is read");
    if (UndoRecord::exists(name))
        throw Exceptions::InvalidChange(name + ": an edit of this file was cut off; its undo record " +
                                        UndoRecord::nameFor(name) + " is there");
    if (options.existing == NewFileOptions::Existing::Refuse && DataIO::File::exists(name))
        throw Exceptions::InvalidChange(name + ": there is a file of this name already");
}

RepairReport RepairWriter::writeToFile(std::string const& name, NewFileOptions const& options) {
    requireFreeName(name, options);
    std::string const temporary = temporaryNameFor(name);
    auto file = operations_.open(temporary, FileOperations::Mode::CreateNew);
    try {
        copy(*file, options);
        file->synchronize();
        file->close();
        operations_.rename(temporary, name, options.existing == NewFileOptions::Existing::Replace);
    } catch (...) {
        file.reset();
        removeQuietly(operations_, temporary);
        throw;
    }
    operations_.synchronizeEntry(name);
    return report(repaired_.size());
}

void RepairWriter::copy(WritableFile& file, NewFileOptions const& options) {
    std::uint64_t const size = repaired_.size();
    for (std::uint64_t at = 0; at < size;) {
        auto const block = readBytes(repaired_, at, std::min(blockSize, size - at));
        file.writeAt(at, block.data(), block.size());
        at += block.size();
        if (options.progress && !options.progress(at, size))
            throw UpdateCancelled("The writing of the new file was ended before it was done");
    }
}

} // namespace MXF::Zelm::MXFIO
