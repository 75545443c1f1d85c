#include "MXF/Zelm/MXFIO/FileOperations.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/DataIO/File/FileFunctions.h"
#include "MXF/Zelm/DataIO/File/NativeFile.h"
#include "MXF/Zelm/MXFIO/SystemOperations.h"
#include "MXF/Zelm/Platform/Random.h"
#include "MXF/Zelm/Templates/SafeCast.h"

namespace MXF::Zelm::MXFIO {

namespace {

using DataIO::File::NativeFile;

NativeFile::Access accessFor(FileOperations::Mode mode) {
    switch (mode) {
    case FileOperations::Mode::Replace:
        return NativeFile::Access::Replace;
    case FileOperations::Mode::Modify:
        return NativeFile::Access::Modify;
    case FileOperations::Mode::CreateNew:
        break;
    }
    return NativeFile::Access::CreateNew;
}

/// Without a buffer: what `writeAt` was not told of an error of is with the system.
class SystemFile : public WritableFile {
public:
    SystemFile(std::string const& name, FileOperations::Mode mode)
        : file_(NativeFile::open(name, accessFor(mode))) {}

    void writeAt(std::uint64_t position, const unsigned char* bytes, std::uint64_t size) override {
        file_->writeAt(position, bytes, Templates::safeCast<std::size_t>(size));
    }
    void truncate(std::uint64_t size) override { file_->truncate(size); }
    void synchronize() override { file_->synchronize(); }
    void close() override { file_->close(); }

private:
    std::unique_ptr<NativeFile> file_;
};

} // namespace

WritableFile::~WritableFile() = default;
FileOperations::~FileOperations() = default;

Templates::auto_ptr<WritableFile> FileOperations::open(std::string const& name, Mode mode) {
    return std::make_unique<SystemFile>(name, mode);
}

void FileOperations::rename(std::string const& from, std::string const& to, bool replace) {
    DataIO::File::rename(from, to, replace);
}

void FileOperations::remove(std::string const& name) { DataIO::File::remove(name); }

void FileOperations::synchronizeEntry(std::string const& name) { DataIO::File::synchronizeEntry(name); }

FileOperations* orSystem(FileOperations* operations) {
    static FileOperations system; // has no state
    return operations != nullptr ? operations : &system;
}

std::string temporaryNameFor(std::string const& name) {
    unsigned char bytes[4];
    Platform::randomBytes(bytes, sizeof bytes);
    return name + ".zelm-" + ByteCoders::toHexadecimal(bytes, sizeof bytes);
}

void removeQuietly(FileOperations& operations, std::string const& name) noexcept {
    try {
        operations.remove(name);
    } catch (...) {
        // Nothing more can be done.
    }
}

} // namespace MXF::Zelm::MXFIO
