#include "MXF/Zelm/MXFIO/NewFileWriter.h"

#include "MXF/Zelm/DataIO/File/FileFunctions.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/SystemOperations.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

/// Bytes that are copied or compared in one go, and between two calls of the progress callback.
constexpr std::uint64_t blockSize = 4 * 1024 * 1024;

/// Calls `action(offset in the piece, bytes)` block by block.
template <class Action>
void forEachBlock(Piece const& piece, Action action) {
    for (std::uint64_t at = 0; at < piece.length;) {
        std::uint64_t const size = std::min(blockSize, piece.length - at);
        action(at, size);
        at += size;
    }
}

} // namespace

NewFileWriter::NewFileWriter(UpdateContent const& content, NewFileLayout const& layout,
                             NewFileOptions const& options, FileOperations& operations)
    : content_(content),
      layout_(layout),
      options_(options),
      operations_(operations),
      total_(layout.plan().newFileSize + (options.compareEssence ? essenceBytes() : 0)) {}

std::uint64_t NewFileWriter::essenceBytes() const {
    std::uint64_t bytes = 0;
    for (auto const& piece : layout_.pieces())
        bytes += piece.isEssence ? piece.length : 0;
    return bytes;
}

void NewFileWriter::requireFreeName(std::string const& name) const {
    if (DataIO::File::sameFile(content_.file().name(), name))
        throw Exceptions::InvalidChange(name + ": the file to be written is the one that is read");
    if (UndoRecord::exists(name))
        throw Exceptions::InvalidChange(name + ": an edit of this file was cut off; its undo record " +
                                        UndoRecord::nameFor(name) + " is there");
    if (options_.existing == NewFileOptions::Existing::Refuse && DataIO::File::exists(name))
        throw Exceptions::InvalidChange(name + ": there is a file of this name already");
}

UpdateReport NewFileWriter::write(std::string const& name) {
    requireFreeName(name);
    std::string const temporary = temporaryNameFor(name);
    auto file = operations_.open(temporary, FileOperations::Mode::CreateNew);
    try {
        writePieces(*file);
        file->synchronize();
        file->close();
        if (options_.compareEssence)
            compare(temporary);
        operations_.rename(temporary, name, options_.existing == NewFileOptions::Existing::Replace);
    } catch (...) {
        file.reset();
        removeQuietly(operations_, temporary);
        throw;
    }
    operations_.synchronizeEntry(name);
    return {layout_.plan(), content_.changes(), layout_.plan().newFileSize,
            options_.compareEssence ? essenceBytes() : 0};
}

void NewFileWriter::writePieces(WritableFile& file) {
    std::uint64_t position = 0;
    for (auto const& piece : layout_.pieces()) {
        copy(piece, file, position);
        position += piece.length;
    }
}

void NewFileWriter::copy(Piece const& piece, WritableFile& file, std::uint64_t position) {
    if (!piece.bytes.empty()) {
        file.writeAt(position, piece.bytes.data(), piece.length);
        advance(piece.length);
        return;
    }
    forEachBlock(piece, [&](std::uint64_t at, std::uint64_t size) {
        auto const block = piece.oldOffset ? readBytes(content_.file().source(), *piece.oldOffset + at, size)
                                           : Bytes(static_cast<std::size_t>(size));
        file.writeAt(position + at, block.data(), size);
        advance(size);
    });
}

void NewFileWriter::compare(std::string const& writtenName) {
    DataIO::File::FileDataSource written(writtenName);
    std::uint64_t position = 0;
    for (auto const& piece : layout_.pieces()) {
        if (piece.isEssence)
            compareEssence(piece, written, position);
        position += piece.length;
    }
}

void NewFileWriter::compareEssence(Piece const& piece, DataIO::RandomAccessDataSource& written,
                                   std::uint64_t position) {
    forEachBlock(piece, [&](std::uint64_t at, std::uint64_t size) {
        if (readBytes(content_.file().source(), *piece.oldOffset + at, size) !=
            readBytes(written, position + at, size))
            throw Exceptions::at(
                *piece.oldOffset + at,
                Exceptions::InvalidStructure("The essence of the new file is not that of the old one"));
        advance(size);
    });
}

void NewFileWriter::advance(std::uint64_t bytes) {
    done_ += bytes;
    if (options_.progress && !options_.progress(done_, total_))
        throw UpdateCancelled("The writing of the new file was ended before it was done");
}

} // namespace MXF::Zelm::MXFIO
