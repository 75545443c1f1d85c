/// One KLV packet as the reader finds it: key and length, and its value as a view on the source.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

namespace MXF::Zelm::KLV {

/// Must not outlive the source that it was read from.
class MXFZELM_EXPORT Packet : public Platform::Allocated {
public:
    /// `berLength` (1 to 9) is the number of bytes of the length field, `length` that of the value,
    /// `keyAbsoluteOffset` where the key's first byte stands. `source` stands at the first byte of the value.
    Packet(Key const& key, unsigned char berLength, std::uint64_t length, DataIO::DataSource& source,
           std::uint64_t keyAbsoluteOffset);

    Key const& key() const { return key_; }
    void key(Key const& key) { key_ = key; }

    Value const& value() const { return value_; }
    Value& value() { return value_; }

    /// Bytes of the value.
    std::uint64_t length() const { return value_.totalLength(); }

    /// Bytes of the length field.
    unsigned char berLength() const { return berLength_; }

    /// Bytes of key, length field and value; the largest number there is when a lying length makes them more.
    std::uint64_t klvLength() const;

    std::uint64_t keyAbsoluteOffset() const { return keyAbsoluteOffset_; }

    /// Where the value's first byte stands.
    std::uint64_t valueAbsoluteOffset() const { return keyAbsoluteOffset_ + Key::size() + berLength_; }

private:
    Key key_;
    unsigned char berLength_;
    std::uint64_t keyAbsoluteOffset_;
    Value value_;
};

} // namespace MXF::Zelm::KLV
