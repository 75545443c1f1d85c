#include "MXF/Zelm/MXFIO/PackHead.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

/// Where fields stand in the pack's value.
constexpr std::size_t operationalPatternAt = 64, essenceContainersAt = 80;

} // namespace

PackHead::PackHead(DataIO::RandomAccessDataSource& source, Partition const& partition)
    : offset_(partition.partitionAbsoluteOffset()),
      oldSize_(partition.partitionPack().serializedSize()),
      berSize_(partition.partitionPack().berLength()),
      valueLength_(partition.partitionPackLength() - KLV::Key::size() - berSize_),
      bytes_(readBytes(source, offset_, oldSize_)) {}

void PackHead::put(std::size_t field, std::uint64_t value) {
    ByteCoders::codeInteger(value, bytes_.data() + KLV::Key::size() + berSize_ + field);
}

void PackHead::operationalPattern(Types::UniversalLabel const& label) {
    std::copy_n(label.rawBuffer(), KLV::Key::size(),
                bytes_.data() + KLV::Key::size() + berSize_ + operationalPatternAt);
}

void PackHead::essenceContainers(Types::Batch const& labels) {
    DataIO::Memory::MemoryDataSink sink;
    labels.serialize(sink);
    std::size_t const batchAt = KLV::Key::size() + berSize_ + essenceContainersAt;
    std::uint64_t const length = valueLength_ - (bytes_.size() - batchAt) + sink.serializedSize();
    if (ByteCoders::calculateBERSize(length) > berSize_)
        throw Exceptions::at(offset_, Exceptions::InvalidChange(
                                          "The essence containers do not fit in the partition pack's length "
                                          "field"));
    ByteCoders::codeBER(length, static_cast<unsigned char>(berSize_), bytes_.data() + KLV::Key::size());
    bytes_.resize(batchAt);
    bytes_.insert(bytes_.end(), sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    valueLength_ = length;
}

} // namespace MXF::Zelm::MXFIO
