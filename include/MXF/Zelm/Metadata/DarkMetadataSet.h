/// A set that could not be made into a metadata set, kept whole and written back byte for byte.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/ByteStrings.h"

#include <optional>
#include <string>

namespace MXF::Zelm::Metadata {

class MXFZELM_EXPORT DarkMetadataSet : public Platform::Allocated {
public:
    /// Reads the whole value. Throws Exceptions::InvalidLength when the source ends before it.
    explicit DarkMetadataSet(KLV::Packet& packet);

    /// The same with a key, the bytes of the length field and the value.
    DarkMetadataSet(KLV::Key const& key, unsigned char berLength, KLV::Value& value);

    KLV::Key const& key() const { return key_; }
    unsigned char berLength() const { return berLength_; }

    /// The set's value.
    Types::Unknown const& value() const { return *value_; }

    /// Replaces the value, which is taken over.
    void value(Templates::auto_ptr<Types::Unknown> value);

    /// Why the set is dark: what is wrong with it; empty when the dictionary just does not define its class.
    std::string const& reason() const { return reason_; }
    void reason(std::string text) { reason_ = std::move(text); }

    /// Where the key stood in the source that the set was read from; absent for one made in memory.
    std::optional<std::uint64_t> absoluteOffset() const { return offset_; }

    void serialize(DataIO::DataSink& sink) const;
    std::uint64_t serializedSize() const;

private:
    KLV::Key key_;
    unsigned char berLength_;
    Templates::auto_ptr<Types::Unknown> value_;
    std::string reason_;
    std::optional<std::uint64_t> offset_;
};

} // namespace MXF::Zelm::Metadata
