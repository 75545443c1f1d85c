/// What the updater asks of the system's files when it writes: every step that could be the last one before
/// the machine stops. A host passes its own to hear of the steps or to have one fail; the updater reads
/// through DataIO::File::FileDataSource.
#pragma once

#include "MXF/Zelm/DataIO/File/FileDataSink.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <cstdint>
#include <string>

namespace MXF::Zelm::MXFIO {

/// A file that is open for writing. Closed when destroyed; what the system refuses then goes unnoticed.
class MXFZELM_EXPORT WritableFile : public Platform::Allocated {
public:
    virtual ~WritableFile();

    /// Writes `size` bytes at `position`, which is at most the file's size. Throws Exceptions::SystemError.
    virtual void writeAt(std::uint64_t position, const unsigned char* bytes, std::uint64_t size) = 0;

    /// Cuts the file to `size` bytes. Throws Exceptions::SystemError.
    virtual void truncate(std::uint64_t size) = 0;

    /// Has the system bring all written bytes to the device. Throws Exceptions::SystemError.
    virtual void synchronize() = 0;

    /// Hands all bytes to the system and closes. Throws Exceptions::SystemError.
    virtual void close() = 0;
};

/// Works on the system's files. Names are UTF-8; all functions throw Exceptions::SystemError with the file's
/// name and the system's text.
class MXFZELM_EXPORT FileOperations : public Platform::Allocated {
public:
    using Mode = DataIO::File::FileDataSink::Mode;

    virtual ~FileOperations();

    virtual Templates::auto_ptr<WritableFile> open(std::string const& name, Mode mode);

    /// Gives a file another name in one step. A file that has that name already is replaced if `replace`,
    /// else it is an error.
    virtual void rename(std::string const& from, std::string const& to, bool replace);

    virtual void remove(std::string const& name);

    /// Has the system bring the folder's entry of a file to the device: after it was made, renamed or
    /// removed. Does nothing where the system offers no such thing.
    virtual void synchronizeEntry(std::string const& name);
};

} // namespace MXF::Zelm::MXFIO
