#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"

#include "MXF/Zelm/Templates/SafeCast.h"

namespace MXF::Zelm::DataIO::Memory {

MemoryDataSink::MemoryDataSink() = default;

MemoryDataSink::MemoryDataSink(std::uint64_t capacity) {
    bytes_.reserve(Templates::safeCast<std::uint32_t>(capacity));
}

MemoryDataSink::~MemoryDataSink() = default;

void MemoryDataSink::write(const unsigned char* buffer, std::uint64_t size) {
    auto const count = Templates::safeCast<std::uint32_t>(size);
    Templates::safeCast<std::uint32_t>(std::uint64_t{bytes_.size()} + count);
    bytes_.insert(bytes_.end(), buffer, buffer + count);
}

std::uint64_t MemoryDataSink::absoluteOffset() const { return bytes_.size(); }

std::uint64_t MemoryDataSink::serializedSize() const { return bytes_.size(); }

const unsigned char* MemoryDataSink::rawBuffer() const { return bytes_.data(); }

} // namespace MXF::Zelm::DataIO::Memory
