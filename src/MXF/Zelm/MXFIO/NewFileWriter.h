/// Writes a file that was laid out anew: under a temporary name, compared with the old file, and renamed.
#pragma once

#include "MXF/Zelm/MXFIO/NewFileLayout.h"

namespace MXF::Zelm::MXFIO {

class NewFileWriter {
public:
    NewFileWriter(UpdateContent const& content, NewFileLayout const& layout, NewFileOptions const& options,
                  FileOperations& operations);

    /// Throws as Updater::writeToFile does.
    UpdateReport write(std::string const& name);

private:
    void requireFreeName(std::string const& name) const;
    void writePieces(WritableFile& file);
    void copy(Piece const& piece, WritableFile& file, std::uint64_t position);
    void compare(std::string const& writtenName);
    void compareEssence(Piece const& piece, DataIO::RandomAccessDataSource& written, std::uint64_t position);
    void advance(std::uint64_t bytes);
    std::uint64_t essenceBytes() const;

    UpdateContent const& content_;
    NewFileLayout const& layout_;
    NewFileOptions const& options_;
    FileOperations& operations_;
    std::uint64_t done_ = 0;
    std::uint64_t total_;
};

} // namespace MXF::Zelm::MXFIO
