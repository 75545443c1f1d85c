#include "MXF/Zelm/IndexTables/IndexEntryArray.h"

#include "MXF/Zelm/IndexTables/EntryBytes.h"

#include <utility>

namespace MXF::Zelm::IndexTables {

namespace {

void requireBelow(std::size_t index, std::size_t size) {
    if (index >= size)
        throw Exceptions::BaseException("Trying to access an element beyond the end of the data");
}

} // namespace

IndexEntryArray::IndexEntryArray(std::uint8_t sliceCount, std::uint8_t posTableCount)
    : EntryArray(IndexEntry::wireSize(sliceCount, posTableCount)),
      sliceCount_(sliceCount),
      posTableCount_(posTableCount) {}

IndexEntryArray::IndexEntryArray(KLV::Value& value) : IndexEntryArray(0, 0) { read(value); }

IndexEntryArray::IndexEntryArray(KLV::Value& value, std::uint8_t sliceCount, std::uint8_t posTableCount)
    : IndexEntryArray(0, 0) {
    std::uint64_t const offset = value.absoluteOffset();
    try {
        read(value);
        settle(sliceCount, posTableCount);
    } catch (Exceptions::BaseException& failure) {
        failure.offset(offset);
        throw;
    }
}

IndexEntryArray::~IndexEntryArray() = default;

void IndexEntryArray::settle(std::uint8_t sliceCount, std::uint8_t posTableCount) {
    requireElementSize(IndexEntry::wireSize(sliceCount, posTableCount));
    sliceCount_ = sliceCount;
    posTableCount_ = posTableCount;
}

void IndexEntryArray::failAccess() {
    throw Exceptions::BaseException("IndexEntryArray::at() IndexOutOfBonds");
}

IndexEntry const IndexEntryArray::at(std::size_t index) {
    requireBelow(index, size());
    return std::as_const(*this).at(index);
}

IndexEntry const IndexEntryArray::at(std::size_t index) const {
    if (index >= size())
        failAccess();
    return IndexEntry(bytesAt(index), sliceCount_, posTableCount_);
}

void IndexEntryArray::set(std::size_t index, IndexEntry const& entry) {
    requireBelow(index, size());
    if (!accepts(entry))
        failInvalidInsert();
    replaceBytes(index, entryBytes(entry));
}

void IndexEntryArray::append(IndexEntry const& entry) {
    if (!accepts(entry))
        throw Exceptions::BaseException("Trying to append an invalid element");
    insertBytes(size(), entryBytes(entry));
}

void IndexEntryArray::insertAt(std::size_t index, IndexEntry const& entry) {
    requireInsertPosition(index, size());
    if (!accepts(entry))
        failInvalidInsert();
    insertBytes(index, entryBytes(entry));
}

bool IndexEntryArray::accepts(IndexEntry const& entry) const {
    return entry.sliceOffsetCount() == sliceCount_ && entry.posTableCount() == posTableCount_;
}

std::uint32_t IndexEntryArray::sliceOffset(std::size_t index, std::uint8_t slice) const {
    if (slice == 0 || slice > sliceCount_)
        failAccess();
    return field<std::uint32_t>(index, IndexEntry::fixedSize + 4u * (slice - 1u));
}

} // namespace MXF::Zelm::IndexTables
