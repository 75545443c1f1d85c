/// What the packs share in reading and writing their fields.
#pragma once

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/KLV/Value.h"

namespace MXF::Zelm::Packs {

template <class Integer>
Integer readInteger(KLV::Value& value) {
    unsigned char bytes[sizeof(Integer)];
    value.readValue(bytes, sizeof bytes);
    return ByteCoders::decodeInteger<Integer>(bytes);
}

template <class Integer>
void writeInteger(Integer number, DataIO::DataSink& sink) {
    unsigned char bytes[sizeof(Integer)];
    ByteCoders::codeInteger(number, bytes);
    sink.write(bytes, sizeof bytes);
}

/// Writes a key and the length of the value that follows, in `berLength` bytes.
inline void writeHeader(KLV::Key const& key, unsigned char berLength, std::uint64_t length,
                        DataIO::DataSink& sink) {
    unsigned char field[ByteCoders::maximumBERSize];
    ByteCoders::codeBER(length, berLength, field);
    sink.write(key.rawBuffer(), KLV::Key::size());
    sink.write(field, berLength);
}

/// Length field of a new pack: one marker byte and three bytes of length.
constexpr unsigned char defaultBerLength = 4;

} // namespace MXF::Zelm::Packs
