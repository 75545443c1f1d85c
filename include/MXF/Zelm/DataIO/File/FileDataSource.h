/// A source over a file that can seek.
///
/// Reads are positional and go through one window of the file. The window doubles while reading goes on in
/// sequence and falls back to a small one after a jump, so that a walk over the KLV packets of a 100 GB file
/// reads next to nothing of their values, and a copy runs at the disk's speed.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace MXF::Zelm::DataIO::File {

class NativeFile;

class MXFZELM_EXPORT FileDataSource : public RandomAccessDataSource {
public:
    /// Opens a file for reading; its name is UTF-8. Throws Exceptions::SystemError with the file's name and
    /// the system's text when it cannot be opened, is a folder or cannot seek.
    explicit FileDataSource(std::string_view fileName);

    /// The same with a name in UTF-16.
    explicit FileDataSource(std::u16string_view fileName);

    ~FileDataSource() override;

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return remaining() == 0; }

    /// Short only at the end of the file, also when the file was cut while it was open. Throws
    /// Exceptions::SystemError when the system cannot read.
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override;
    std::uint64_t remaining() const override { return position_ < size_ ? size_ - position_ : 0; }
    void discard() override;
    std::uint64_t seek(std::uint64_t position) override;

    /// The size of the file in bytes as it was when the file was opened or last refreshed.
    std::uint64_t size() const { return size_; }

    /// Asks the system for the file's size anew (a file that is still being written) and returns it.
    std::uint64_t refreshSize();

    /// The file's name in UTF-8.
    std::string const& fileName() const;

private:
    explicit FileDataSource(std::unique_ptr<NativeFile> file);
    bool fillWindow();
    std::uint64_t readDirectly(unsigned char* buffer, std::uint64_t size);

    std::unique_ptr<NativeFile> file_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
    std::uint64_t lastReadEnd_ = 0;
    std::uint64_t runStart_ = 0; // where the last jump ended
    std::vector<unsigned char> window_;
    std::uint64_t windowStart_ = 0;
    std::size_t windowFilled_ = 0;
    std::size_t nextWindow_;
};

} // namespace MXF::Zelm::DataIO::File
