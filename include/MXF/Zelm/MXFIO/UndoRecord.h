/// The undo record of an edit in place: what stood in a file before, in a small file of its own beside it.
///
///     magic         8    "ZELMUNDO"
///     version       4    1; 2 when bytes are put behind the file's end
///     file size     8    of the edited file, before the edit
///     count         4    number of pieces
///     pieces             each: position (8), length (4), the bytes that stood there
///     checksum      8    FNV-1a, 64 bits, of everything before it
///
/// All numbers are big-endian. The record is written and brought to the device before the first byte of the
/// file is changed, and removed after the last one was brought to the device. So a record that is cut off or
/// does not agree with its checksum was never complete, and its file was not touched.
#pragma once

#include "MXF/Zelm/MXFIO/FileOperations.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace MXF::Zelm::MXFIO {

/// Bytes of a file.
struct ByteRange {
    std::uint64_t offset = 0; ///< from the start of the file, run-in included
    std::uint64_t length = 0;

    friend bool operator==(ByteRange const&, ByteRange const&) = default;
};

class MXFZELM_EXPORT UndoRecord : public Platform::Allocated {
public:
    /// What stood at a place of the file.
    struct Piece {
        std::uint64_t position = 0;
        std::vector<unsigned char> bytes;
    };

    /// The name of a file's record: ".zelm-undo" is appended. It stands beside the file itself, also when
    /// `fileName` is a symbolic link. UTF-8.
    static std::string nameFor(std::string_view fileName);

    /// True when an edit of the file was begun and not ended: its record is there.
    static bool exists(std::string_view fileName);
    static bool exists(std::u16string_view fileName);

    /// Reads the record of a file, whose name it takes. `operations` (not owned, null for the system's files)
    /// serve `restore` and `discard` and must outlive the record. A damaged record is no error: see
    /// `isComplete`. Throws Exceptions::SystemError when there is no record or it cannot be read.
    explicit UndoRecord(std::string_view fileName, FileOperations* operations = nullptr);
    explicit UndoRecord(std::u16string_view fileName, FileOperations* operations = nullptr);
    ~UndoRecord();

    /// What the edit does to the file's size.
    enum class Growth {
        None,
        Appends, ///< bytes come behind the file's end: to restore it, it is cut there
    };

    /// A new record, in memory until `write`.
    UndoRecord(std::string_view fileName, std::uint64_t fileSize, std::vector<Piece> pieces,
               FileOperations* operations = nullptr, Growth growth = Growth::None);

    UndoRecord(UndoRecord const&) = delete;
    UndoRecord& operator=(UndoRecord const&) = delete;

    /// The name of the edited file and of the record, in UTF-8.
    std::string const& fileName() const { return fileName_; }
    std::string recordName() const { return nameFor(fileName_); }

    /// False when the writing of the record itself was cut off: the file was not touched, and discarding the
    /// record is all there is to do.
    bool isComplete() const { return complete_; }

    /// Bytes of the edited file before the edit; 0 for a record that is not complete.
    std::uint64_t fileSize() const { return fileSize_; }

    /// What would be put back; empty for a record that is not complete.
    std::vector<Piece> const& pieces() const { return pieces_; }

    /// One sentence for people: how many bytes at how many places, or that the file was not touched.
    std::string describe() const;

    /// Puts the old bytes back, brings them to the device and removes the record: the file is as it was
    /// before the edit. Cut off at any point, it can be done again. A record that is not complete is just
    /// removed. Throws Exceptions::InvalidStructure when the file has another size than the record says, or
    /// less where the edit appends (it is another file by now), Exceptions::SystemError when the system
    /// refuses; then the record stays.
    void restore();

    /// Removes the record and leaves the file as it is. When the record is complete the file may hold a
    /// mixture of old and new bytes, which nothing can restore afterwards. Throws Exceptions::SystemError.
    void discard();

    /// Writes the record and brings it to the device. Throws Exceptions::SystemError, also when the file has
    /// a record already; then nothing of it stays.
    void write() const;

private:
    void read();
    bool parse(std::vector<unsigned char> const& bytes);
    std::vector<unsigned char> serialized() const;

    std::string fileName_;
    FileOperations* operations_;
    std::uint64_t fileSize_ = 0;
    std::vector<Piece> pieces_;
    Growth growth_ = Growth::None;
    bool complete_ = false;
};

} // namespace MXF::Zelm::MXFIO
