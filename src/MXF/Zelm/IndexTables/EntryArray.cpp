#include "MXF/Zelm/IndexTables/EntryArray.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::IndexTables {

namespace {

constexpr std::uint64_t headerSize = 8; // number and size of the entries

} // namespace

EntryArray::~EntryArray() = default;

void EntryArray::read(KLV::Value& value) {
    std::uint64_t const offset = value.absoluteOffset();
    if (value.remaining() < headerSize)
        throw Exceptions::at(
            offset, Exceptions::InvalidLength("Invalid data size in the Index Table collection. Not enough "
                                              "data to read element entry size",
                                              value.readRemaining()));
    unsigned char header[headerSize];
    value.readValue(header, headerSize);
    std::uint64_t const count = ByteCoders::decodeInteger<std::uint32_t>(header);
    std::uint64_t const entrySize = ByteCoders::decodeInteger<std::uint32_t>(header + 4);
    if (count * entrySize > value.remaining())
        throw Exceptions::at(
            offset, Exceptions::InvalidLength("Number of expected values differ from the size of the local "
                                              "KLV value field. Index Table Segment",
                                              {std::begin(header), std::end(header)}));
    if (count != 0 && entrySize == 0)
        throw Exceptions::at(offset, Exceptions::InvalidLength("Invalid data size in Value to create an "
                                                               "element in the Index Table collections."));
    bytes_ = KLV::Value(value, count * entrySize).readRemaining();
    if (count != 0)
        elementSize_ = static_cast<std::uint32_t>(entrySize);
}

void EntryArray::requireElementSize(std::uint32_t expected) {
    if (!bytes_.empty() && elementSize_ != expected)
        throw Exceptions::InvalidLength(
            "Invalid data size in Value to create an element in the Index Table collections.",
            {bytes_.begin(), bytes_.begin() + elementSize_});
    elementSize_ = expected;
}

void EntryArray::remove(std::size_t index) {
    if (index >= size())
        throw Exceptions::BaseException("Trying to remove an element beyond the end of the data");
    auto const first = bytes_.begin() + static_cast<std::ptrdiff_t>(index * elementSize_);
    bytes_.erase(first, first + elementSize_);
}

void EntryArray::insertBytes(std::size_t index, DataIO::Memory::MemoryDataSink const& entry) {
    bytes_.insert(bytes_.begin() + static_cast<std::ptrdiff_t>(index * elementSize_), entry.rawBuffer(),
                  entry.rawBuffer() + elementSize_);
}

void EntryArray::replaceBytes(std::size_t index, DataIO::Memory::MemoryDataSink const& entry) {
    std::copy_n(entry.rawBuffer(), elementSize_, bytes_.data() + index * elementSize_);
}

void EntryArray::serialize(DataIO::DataSink& sink) const {
    unsigned char header[headerSize];
    ByteCoders::codeInteger(Templates::safeCast<std::uint32_t>(size()), header);
    ByteCoders::codeInteger(elementSize_, header + 4);
    sink.write(header, headerSize);
    sink.write(bytes_.data(), bytes_.size());
}

std::uint64_t EntryArray::serializedSize() const { return headerSize + bytes_.size(); }

} // namespace MXF::Zelm::IndexTables
