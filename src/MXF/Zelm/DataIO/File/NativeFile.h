/// The one private interface over the system's files. `PosixFile.cpp` and `Win32File.cpp` implement it; each
/// compiles to nothing on the other's system. All positions are absolute, so that no state but the handle is
/// kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace MXF::Zelm::DataIO::File {

class NativeFile {
public:
    enum class Access { Read, CreateNew, Replace, Modify };

    /// Opens a file; its name is UTF-8. Throws Exceptions::SystemError.
    static std::unique_ptr<NativeFile> open(std::string_view name, Access access);

    virtual ~NativeFile() = default;

    /// The size in bytes.
    virtual std::uint64_t size() const = 0;

    /// Reads up to `count` bytes at `position`; fewer only at the end of the file.
    virtual std::size_t readAt(std::uint64_t position, unsigned char* buffer, std::size_t count) = 0;

    /// Writes all `count` bytes at `position`.
    virtual void writeAt(std::uint64_t position, const unsigned char* buffer, std::size_t count) = 0;

    /// Bytes somewhere in memory.
    struct Piece {
        const unsigned char* bytes;
        std::size_t size;
    };

    /// Writes all bytes of the pieces, one behind the other, at `position`: in few calls where the system
    /// can.
    virtual void gatherAt(std::uint64_t position, std::span<Piece const> pieces) = 0;

    /// Cuts or extends the file.
    virtual void truncate(std::uint64_t size) = 0;

    /// Has the system bring all written bytes to the device.
    virtual void synchronize() = 0;

    /// Has it begin to do so with `count` bytes at `position`, where systems can be asked; never fails.
    virtual void beginSynchronizing(std::uint64_t position, std::uint64_t count) noexcept = 0;

    /// Closes the file; a failure that the system only reports now is thrown.
    virtual void close() = 0;

    /// The name in UTF-8, as it was given.
    std::string const& name() const { return name_; }

protected:
    explicit NativeFile(std::string_view name) : name_(name) {}

private:
    std::string name_;
};

} // namespace MXF::Zelm::DataIO::File
