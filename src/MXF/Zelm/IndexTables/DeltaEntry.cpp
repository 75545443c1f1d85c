#include "MXF/Zelm/IndexTables/DeltaEntry.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

#include <array>

namespace MXF::Zelm::IndexTables {

using ByteCoders::decodeInteger;

namespace {

std::array<unsigned char, DeltaEntry::wireSize> readBytes(KLV::Value& value) {
    std::array<unsigned char, DeltaEntry::wireSize> bytes;
    value.readValue(bytes.data(), bytes.size());
    return bytes;
}

} // namespace

DeltaEntry::DeltaEntry(std::int8_t posTableIndex, std::uint8_t slice, std::uint32_t elementDelta)
    : posTableIndex_(posTableIndex), slice_(slice), elementDelta_(elementDelta) {}

DeltaEntry::DeltaEntry(KLV::Value& value) : DeltaEntry(readBytes(value).data()) {}

DeltaEntry::DeltaEntry(const unsigned char* bytes)
    : posTableIndex_(decodeInteger<std::int8_t>(bytes)),
      slice_(bytes[1]),
      elementDelta_(decodeInteger<std::uint32_t>(bytes + 2)) {}

DeltaEntry::~DeltaEntry() = default;

void DeltaEntry::serialize(DataIO::DataSink& sink) const {
    unsigned char bytes[wireSize] = {static_cast<unsigned char>(posTableIndex_), slice_};
    ByteCoders::codeInteger(elementDelta_, bytes + 2);
    sink.write(bytes, sizeof bytes);
}

std::uint64_t DeltaEntry::serializedSize() const { return wireSize; }

} // namespace MXF::Zelm::IndexTables
