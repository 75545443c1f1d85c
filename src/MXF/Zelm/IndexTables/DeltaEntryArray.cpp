#include "MXF/Zelm/IndexTables/DeltaEntryArray.h"

#include "MXF/Zelm/IndexTables/EntryBytes.h"

namespace MXF::Zelm::IndexTables {

DeltaEntryArray::DeltaEntryArray() : EntryArray(DeltaEntry::wireSize) {}

DeltaEntryArray::DeltaEntryArray(KLV::Value& value) : DeltaEntryArray() {
    std::uint64_t const offset = value.absoluteOffset();
    try {
        read(value);
        requireElementSize(DeltaEntry::wireSize);
    } catch (Exceptions::BaseException& failure) {
        failure.offset(offset);
        throw;
    }
}

DeltaEntryArray::~DeltaEntryArray() = default;

DeltaEntry const DeltaEntryArray::at(std::size_t index) const {
    if (index >= size())
        throw Exceptions::BaseException("Trying to access a element beyond the end of data");
    return DeltaEntry(bytesAt(index));
}

void DeltaEntryArray::set(std::size_t index, DeltaEntry const& entry) {
    at(index);
    if (!entry.isValid())
        failInvalidInsert();
    replaceBytes(index, entryBytes(entry));
}

void DeltaEntryArray::append(DeltaEntry const& entry) {
    if (!entry.isValid())
        throw Exceptions::BaseException("Trying to append an invalid entry.");
    insertBytes(size(), entryBytes(entry));
}

void DeltaEntryArray::insertAt(std::size_t index, DeltaEntry const& entry) {
    requireInsertPosition(index, size());
    if (!entry.isValid())
        failInvalidInsert();
    insertBytes(index, entryBytes(entry));
}

} // namespace MXF::Zelm::IndexTables
