#include "MXF/Zelm/IndexTables/IndexEntry.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::IndexTables {

using ByteCoders::codeInteger;
using ByteCoders::decodeInteger;

namespace {

std::vector<unsigned char> readBytes(KLV::Value& value, std::uint32_t size) {
    std::vector<unsigned char> bytes(size);
    value.readValue(bytes.data(), size);
    return bytes;
}

/// The place of `index` in `items`, which has to be below `end`.
std::ptrdiff_t place(std::size_t index, std::size_t end) {
    if (index >= end)
        throw Exceptions::BaseException("Trying to access a element beyond the end of data.");
    return static_cast<std::ptrdiff_t>(index);
}

} // namespace

IndexEntry::IndexEntry(std::int8_t temporalOffset, std::int8_t keyFrameOffset, bool randomAccess,
                       bool sequenceHeader, bool forwardPrediction, bool backwardPrediction,
                       std::uint64_t streamOffset)
    : temporalOffset_(temporalOffset), keyFrameOffset_(keyFrameOffset), streamOffset_(streamOffset) {
    this->randomAccess(randomAccess);
    this->sequenceHeader(sequenceHeader);
    this->forwardPrediction(forwardPrediction);
    this->backwardPrediction(backwardPrediction);
}

IndexEntry::IndexEntry(std::uint64_t streamOffset) : streamOffset_(streamOffset) {}

IndexEntry::IndexEntry(KLV::Value& value, std::uint8_t sliceCount, std::uint8_t posTableCount)
    : IndexEntry(readBytes(value, wireSize(sliceCount, posTableCount)).data(), sliceCount, posTableCount) {}

IndexEntry::IndexEntry(const unsigned char* bytes, std::uint8_t sliceCount, std::uint8_t posTableCount)
    : temporalOffset_(decodeInteger<std::int8_t>(bytes)),
      keyFrameOffset_(decodeInteger<std::int8_t>(bytes + 1)),
      flags_(bytes[2]),
      streamOffset_(decodeInteger<std::uint64_t>(bytes + 3)),
      sliceOffsets_(sliceCount),
      posTable_(posTableCount) {
    bytes += fixedSize;
    for (auto& offset : sliceOffsets_) {
        offset = decodeInteger<std::uint32_t>(bytes);
        bytes += 4;
    }
    for (auto& offset : posTable_) {
        offset = {decodeInteger<std::int32_t>(bytes), decodeInteger<std::int32_t>(bytes + 4)};
        bytes += 8;
    }
}

IndexEntry::~IndexEntry() = default;

std::uint32_t IndexEntry::sliceOffset(std::size_t index) const {
    place(index, sliceOffsets_.size());
    return sliceOffsets_[index];
}
void IndexEntry::addSliceOffset(std::size_t index, std::uint32_t offset) {
    sliceOffsets_.insert(sliceOffsets_.begin() + place(index, sliceOffsets_.size() + 1), offset);
}
void IndexEntry::removeSliceOffset(std::size_t index) {
    sliceOffsets_.erase(sliceOffsets_.begin() + place(index, sliceOffsets_.size()));
}

Templates::Rational<int> IndexEntry::posTable(std::size_t index) const {
    place(index, posTable_.size());
    return posTable_[index];
}
void IndexEntry::addPosTable(std::size_t index, Templates::Rational<int> const& offset) {
    posTable_.insert(posTable_.begin() + place(index, posTable_.size() + 1), offset);
}
void IndexEntry::removePosTable(std::size_t index) {
    posTable_.erase(posTable_.begin() + place(index, posTable_.size()));
}

void IndexEntry::serialize(DataIO::DataSink& sink) const {
    unsigned char bytes[fixedSize] = {static_cast<unsigned char>(temporalOffset_),
                                      static_cast<unsigned char>(keyFrameOffset_), flags_};
    codeInteger(streamOffset_, bytes + 3);
    sink.write(bytes, sizeof bytes);
    for (auto const offset : sliceOffsets_) {
        codeInteger(offset, bytes);
        sink.write(bytes, 4);
    }
    for (auto const& offset : posTable_) {
        codeInteger(std::int32_t{offset.numerator}, bytes);
        codeInteger(std::int32_t{offset.denominator}, bytes + 4);
        sink.write(bytes, 8);
    }
}

std::uint64_t IndexEntry::serializedSize() const {
    return fixedSize + 4 * std::uint64_t{sliceOffsets_.size()} + 8 * std::uint64_t{posTable_.size()};
}

} // namespace MXF::Zelm::IndexTables
