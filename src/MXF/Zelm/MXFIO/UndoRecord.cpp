#include "MXF/Zelm/MXFIO/UndoRecord.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/DataIO/File/FileFunctions.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/SystemOperations.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using ByteCoders::decodeInteger;

namespace {

constexpr unsigned char magic[] = {'Z', 'E', 'L', 'M', 'U', 'N', 'D', 'O'};
constexpr std::uint32_t plainVersion = 1, appendingVersion = 2;
constexpr std::size_t versionAt = 8, fileSizeAt = 12, countAt = 20, piecesAt = 24;
constexpr std::size_t pieceHeaderSize = 12, checksumSize = 8;

std::uint64_t fnv1a(const unsigned char* bytes, std::size_t size) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (std::size_t i = 0; i < size; ++i)
        hash = (hash ^ bytes[i]) * 0x100000001B3;
    return hash;
}

template <class Integer>
void append(std::vector<unsigned char>& bytes, Integer number) {
    std::size_t const at = bytes.size();
    bytes.resize(at + sizeof number);
    ByteCoders::codeInteger(number, bytes.data() + at);
}

std::vector<unsigned char> wholeFile(std::string const& name) {
    DataIO::File::FileDataSource source(name);
    std::vector<unsigned char> bytes(Templates::safeCast<std::size_t>(source.size()));
    bytes.resize(static_cast<std::size_t>(source.read(bytes.data(), bytes.size())));
    return bytes;
}

} // namespace

std::string UndoRecord::nameFor(std::string_view fileName) {
    return DataIO::File::followLink(fileName) + ".zelm-undo";
}

bool UndoRecord::exists(std::string_view fileName) { return DataIO::File::exists(nameFor(fileName)); }
bool UndoRecord::exists(std::u16string_view fileName) { return exists(Platform::toUtf8(fileName)); }

UndoRecord::UndoRecord(std::string_view fileName, FileOperations* operations)
    : fileName_(fileName), operations_(orSystem(operations)) {
    read();
}

UndoRecord::UndoRecord(std::u16string_view fileName, FileOperations* operations)
    : UndoRecord(Platform::toUtf8(fileName), operations) {}

UndoRecord::UndoRecord(std::string_view fileName, std::uint64_t fileSize, std::vector<Piece> pieces,
                       FileOperations* operations, Growth growth)
    : fileName_(fileName),
      operations_(orSystem(operations)),
      fileSize_(fileSize),
      pieces_(std::move(pieces)),
      growth_(growth),
      complete_(true) {}

UndoRecord::~UndoRecord() = default;

void UndoRecord::read() {
    complete_ = parse(wholeFile(recordName()));
    if (!complete_) {
        fileSize_ = 0;
        pieces_.clear();
    }
}

/// False when the bytes are not a whole record.
bool UndoRecord::parse(std::vector<unsigned char> const& bytes) {
    if (bytes.size() < piecesAt + checksumSize || !std::equal(magic, magic + sizeof magic, bytes.data()))
        return false;
    std::size_t const end = bytes.size() - checksumSize;
    if (fnv1a(bytes.data(), end) != decodeInteger<std::uint64_t>(bytes.data() + end))
        return false;
    auto const version = decodeInteger<std::uint32_t>(bytes.data() + versionAt);
    if (version != plainVersion && version != appendingVersion)
        throw Exceptions::InvalidFormat(recordName() + ": an undo record of version " +
                                        std::to_string(version) + ", which is not known here");
    growth_ = version == appendingVersion ? Growth::Appends : Growth::None;
    fileSize_ = decodeInteger<std::uint64_t>(bytes.data() + fileSizeAt);
    std::size_t at = piecesAt;
    for (auto left = decodeInteger<std::uint32_t>(bytes.data() + countAt); left > 0; --left) {
        if (end - at < pieceHeaderSize)
            return false;
        auto const position = decodeInteger<std::uint64_t>(bytes.data() + at);
        auto const length = decodeInteger<std::uint32_t>(bytes.data() + at + 8);
        at += pieceHeaderSize;
        if (length > end - at || length > fileSize_ || position > fileSize_ - length)
            return false;
        pieces_.push_back({position, {bytes.data() + at, bytes.data() + at + length}});
        at += length;
    }
    return at == end;
}

std::vector<unsigned char> UndoRecord::serialized() const {
    std::vector<unsigned char> bytes(magic, magic + sizeof magic);
    append(bytes, growth_ == Growth::Appends ? appendingVersion : plainVersion);
    append(bytes, fileSize_);
    append(bytes, Templates::safeCast<std::uint32_t>(pieces_.size()));
    for (auto const& piece : pieces_) {
        append(bytes, piece.position);
        append(bytes, Templates::safeCast<std::uint32_t>(piece.bytes.size()));
        bytes.insert(bytes.end(), piece.bytes.begin(), piece.bytes.end());
    }
    append(bytes, fnv1a(bytes.data(), bytes.size()));
    return bytes;
}

std::string UndoRecord::describe() const {
    if (!complete_)
        return "an edit was begun, but the file was not touched: the undo record can be discarded";
    std::uint64_t total = 0;
    for (auto const& piece : pieces_)
        total += piece.bytes.size();
    return "an edit was cut off: the undo record holds " + std::to_string(total) + " old bytes of " +
           std::to_string(pieces_.size()) + (pieces_.size() == 1 ? " place" : " places") +
           (growth_ == Growth::Appends ? ", and where the file ended" : "");
}

void UndoRecord::write() const {
    auto const bytes = serialized();
    auto const file = operations_->open(recordName(), FileOperations::Mode::CreateNew);
    try {
        file->writeAt(0, bytes.data(), bytes.size());
        file->synchronize();
        file->close();
        operations_->synchronizeEntry(recordName());
    } catch (...) {
        removeQuietly(*operations_, recordName());
        throw;
    }
}

void UndoRecord::restore() {
    if (complete_) {
        std::uint64_t const size = DataIO::File::FileDataSource(fileName_).size();
        if (growth_ == Growth::Appends ? size < fileSize_ : size != fileSize_)
            throw Exceptions::InvalidStructure(fileName_ +
                                               ": the undo record is not of this file: it is of one of " +
                                               std::to_string(fileSize_) + " bytes");
        auto const file = operations_->open(fileName_, FileOperations::Mode::Modify);
        for (auto const& piece : pieces_)
            file->writeAt(piece.position, piece.bytes.data(), piece.bytes.size());
        if (size > fileSize_)
            file->truncate(fileSize_);
        file->synchronize();
        file->close();
    }
    discard();
}

void UndoRecord::discard() {
    operations_->remove(recordName());
    operations_->synchronizeEntry(recordName());
}

} // namespace MXF::Zelm::MXFIO
