/// A sink that writes a file, with a buffer for small writes. Chains go to the system from where their slices
/// stand, in one call with what the buffer holds; only a chain of a few KiB is copied into the buffer.
#pragma once

#include "MXF/Zelm/DataIO/SliceSink.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace MXF::Zelm::DataIO::File {

class NativeFile;

class MXFZELM_EXPORT FileDataSink : public RandomAccessDataSink, public SliceSink {
public:
    enum class Mode {
        CreateNew, ///< the file must not exist
        Replace,   ///< an existing file is emptied
        Modify,    ///< the file must exist and keeps its bytes; writing starts at its beginning
    };

    /// Opens a file for writing; its name is UTF-8. Throws Exceptions::SystemError with the file's name and
    /// the system's text.
    explicit FileDataSink(std::string_view fileName, Mode mode = Mode::CreateNew);

    /// The same with a name in UTF-16.
    explicit FileDataSink(std::u16string_view fileName, Mode mode = Mode::CreateNew);

    /// Closes the file. What the system refuses then goes unnoticed: call `close()` to hear of it.
    ~FileDataSink() override;

    /// Throws Exceptions::SystemError when the system cannot write (no space left).
    void write(const unsigned char* buffer, std::uint64_t size) override;

    /// Throws as above; the chain then does not count as written, whatever part of it the file has, and may
    /// be written again.
    void write(Chain const& chain) override;

    /// The position of the next byte.
    std::uint64_t absoluteOffset() const override { return bufferStart_ + buffer_.size(); }

    /// Moves to `position`, at most to the end of the file as written so far.
    std::uint64_t seek(std::uint64_t position) override;

    /// Hands buffered bytes to the system.
    void flush();

    /// Hands buffered bytes to the system and has it bring them to the device.
    void synchronize();

    /// From now on the system is to bring written bytes to the device while more are written, where systems
    /// can be asked for it: `synchronize` then has little left to wait for.
    void synchronizeEarly() { isEarly_ = true; }

    /// Has the system begin to bring `size` bytes at `position`, which it was handed, to the device, where
    /// systems can be asked for it. May be called while another thread writes.
    void beginSynchronizing(std::uint64_t position, std::uint64_t size) noexcept;

    /// Cuts the file at the current position.
    void truncate();

    /// Flushes and closes; nothing may be written afterwards.
    void close();

    /// The size of the file in bytes, buffered bytes counted.
    std::uint64_t size() const;

    /// The file's name in UTF-8.
    std::string const& fileName() const;

private:
    explicit FileDataSink(std::unique_ptr<NativeFile> file);
    void advance(std::uint64_t bytes);

    std::unique_ptr<NativeFile> file_;
    std::uint64_t size_ = 0;
    std::vector<unsigned char> buffer_;
    std::uint64_t bufferStart_ = 0;
    bool isEarly_ = false;
    std::uint64_t onTheWay_ = 0; // before it, bytes are on their way to the device
};

} // namespace MXF::Zelm::DataIO::File
