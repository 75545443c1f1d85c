/// Slices of a file.
#pragma once

#include "MXF/Zelm/DataIO/RandomAccessible.h"
#include "MXF/Zelm/DataIO/SliceSource.h"

#include <memory>
#include <string>
#include <string_view>

namespace MXF::Zelm::DataIO::File {

class NativeFile;

/// Reads a file in large blocks and gives slices of them; several slices may share a block. Reads are
/// positional. The block grows to 1 MiB while reading goes on in sequence, ending at whole pages of the file,
/// and falls back to a small one after a jump. The file may grow while it is open: at its end the source
/// looks how far it reaches now.
///
///     file      |   |page|page|page|page|page|page|page|
///     blocks     (jump) [ small  |  larger  |  . . .
///     slices             [a][ b ][  c         ]              c: one slice of each block
class MXFZELM_EXPORT FileSliceSource : public SliceSource, public virtual RandomAccessible {
public:
    static constexpr std::size_t smallestBlock = std::size_t{16} << 10;
    static constexpr std::size_t largestBlock = std::size_t{256} << 10;

    /// Opens a file for reading; its name is UTF-8. Blocks come from `factory`, if null from a pool of its
    /// own. Throws Exceptions::SystemError with the file's name and the system's text when it cannot be
    /// opened, is a folder or cannot seek.
    explicit FileSliceSource(std::string_view fileName, Templates::SharedPtr<BlockFactory> factory = nullptr);

    /// The same with a name in UTF-16.
    explicit FileSliceSource(std::u16string_view fileName,
                             Templates::SharedPtr<BlockFactory> factory = nullptr);
    ~FileSliceSource() override;

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override;

    /// Throws Exceptions::SystemError when the system cannot read.
    std::uint64_t read(std::uint64_t size, Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

    /// Moves to `position`, at most to the end of the file.
    std::uint64_t seek(std::uint64_t position) override;

    /// The size of the file in bytes, as the system has it now.
    std::uint64_t size() const;

    /// The file's name in UTF-8.
    std::string const& fileName() const;

private:
    FileSliceSource(std::unique_ptr<NativeFile> file, Templates::SharedPtr<BlockFactory> factory);
    std::uint64_t remaining(std::uint64_t wanted);
    bool fillWindow(std::uint64_t wanted);
    std::size_t nextWindow(std::uint64_t wanted);

    std::unique_ptr<NativeFile> file_;
    Templates::SharedPtr<BlockFactory> factory_;
    std::uint64_t size_; // as the system had it last
    std::uint64_t position_ = 0;
    Slice window_; // what was read into the current block
    std::uint64_t windowStart_ = 0;
    std::size_t blockSize_ = 0;
};

} // namespace MXF::Zelm::DataIO::File
