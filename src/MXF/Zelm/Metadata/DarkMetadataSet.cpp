#include "MXF/Zelm/Metadata/DarkMetadataSet.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::Metadata {

DarkMetadataSet::DarkMetadataSet(KLV::Packet& packet)
    : DarkMetadataSet(packet.key(), packet.berLength(), packet.value()) {
    offset_ = packet.keyAbsoluteOffset();
}

DarkMetadataSet::DarkMetadataSet(KLV::Key const& key, unsigned char berLength, KLV::Value& value)
    : key_(key), berLength_(berLength), value_(new Types::Unknown(value)) {}

void DarkMetadataSet::value(Templates::auto_ptr<Types::Unknown> value) {
    if (!value)
        throw Exceptions::InvalidValue("A dark metadata set needs a value");
    value_ = std::move(value);
}

void DarkMetadataSet::serialize(DataIO::DataSink& sink) const {
    unsigned char const berLength = std::max(berLength_, ByteCoders::calculateBERSize(value_->size()));
    unsigned char field[ByteCoders::maximumBERSize];
    ByteCoders::codeBER(value_->size(), berLength, field);
    sink.write(key_.rawBuffer(), KLV::Key::size());
    sink.write(field, berLength);
    value_->serialize(sink);
}

std::uint64_t DarkMetadataSet::serializedSize() const {
    return KLV::Key::size() + std::max(berLength_, ByteCoders::calculateBERSize(value_->size())) +
           value_->size();
}

} // namespace MXF::Zelm::Metadata
