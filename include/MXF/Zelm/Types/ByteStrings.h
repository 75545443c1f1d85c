/// Values that are bytes without further structure. Their text is "0x" and the bytes in hexadecimal.
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

/// Bytes as hexadecimal text, and back. Reading throws Exceptions::InvalidFormat with the name of the type.
MXFZELM_EXPORT std::u16string bytesToText(std::vector<unsigned char> const& bytes);
MXFZELM_EXPORT std::vector<unsigned char> bytesFromText(std::u16string_view text, std::string_view typeName);

template <class Derived, Identifiers::Identifier Id>
class MXFZELM_EXPORT_TEMPLATE ByteStringType : public VariableSizeType<Derived, Id> {
public:
    using VariableSizeType<Derived, Id>::VariableSizeType;
    ByteStringType() = default;

    std::u16string toString() const override { return bytesToText(this->bytes_); }
    static Derived fromText(std::u16string_view text) {
        return Derived(bytesFromText(text, Identifiers::toText(Id)));
    }
};

/// Bytes whose meaning the property's standard gives.
class MXFZELM_EXPORT DataValue final : public ByteStringType<DataValue, Identifiers::DataValue> {
public:
    using ByteStringType::ByteStringType;
};

/// A stream carried in a property.
class MXFZELM_EXPORT DataStream final : public ByteStringType<DataStream, Identifiers::DataStream> {
public:
    using ByteStringType::ByteStringType;
};

/// Bytes of a value that the library does not understand.
class MXFZELM_EXPORT Unknown final : public ByteStringType<Unknown, Identifiers::Unknown> {
public:
    using ByteStringType::ByteStringType;
};

} // namespace MXF::Zelm::Types
