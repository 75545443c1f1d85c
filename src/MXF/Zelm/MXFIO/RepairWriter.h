/// Writes a repaired file: over the old one under an undo record, or as a new one.
#pragma once

#include "MXF/Zelm/MXFIO/PatchedSource.h"
#include "MXF/Zelm/MXFIO/Repairer.h"

namespace MXF::Zelm::MXFIO {

class RepairWriter {
public:
    /// `repaired` is made of the file `name`, of `fileSize` bytes, which is open as `source`.
    RepairWriter(std::string name, DataIO::RandomAccessDataSource& source, std::uint64_t fileSize,
                 PatchedSource& repaired, FileOperations& operations);

    RepairReport writeInPlace();
    RepairReport writeToFile(std::string const& name, NewFileOptions const& options);

private:
    RepairReport report(std::uint64_t fileSize) const;
    void requireFileAsLoaded(std::vector<UndoRecord::Piece> const& pieces) const;
    void writeOver(WritableFile& file, UndoRecord& record) const;
    void requireFreeName(std::string const& name, NewFileOptions const& options) const;
    void copy(WritableFile& file, NewFileOptions const& options);

    std::string name_;
    DataIO::RandomAccessDataSource& source_;
    std::uint64_t fileSize_;
    PatchedSource& repaired_;
    FileOperations& operations_;
};

} // namespace MXF::Zelm::MXFIO
