/// Bytes in tests: commented hexadecimal text, comparison with the first difference, what an object writes,
/// and the messages of exceptions.
#pragma once

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/KLV/Reader.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

namespace MXF::Zelm::Test {

using Bytes = std::vector<unsigned char>;

/// The bytes of hexadecimal digits; blanks, dots and comments (from # to the line's end) are passed over.
Bytes hex(std::string_view text);

/// An integer, big-endian.
template <class Integer>
Bytes number(Integer value) {
    Bytes bytes(sizeof value);
    ByteCoders::codeInteger(value, bytes.data());
    return bytes;
}

Bytes operator+(Bytes a, Bytes const& b);

/// `count` times the same byte.
inline Bytes repeated(std::size_t count, unsigned char byte) { return Bytes(count, byte); }

/// A packet with a length field of `berLength` bytes.
Bytes klv(KLV::Key const& key, Bytes const& value, unsigned char berLength = 4);

/// A fill item of `size` bytes in all, at least 20.
Bytes fill(std::size_t size);

/// Equal, or a dump of both from the first difference on.
testing::AssertionResult sameBytes(Bytes const& found, Bytes const& expected);

inline Bytes writtenTo(DataIO::Memory::MemoryDataSink const& sink) {
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

/// What `object.serialize(sink, arguments…)` writes.
template <class T, class... Arguments>
Bytes written(T& object, Arguments const&... arguments) {
    DataIO::Memory::MemoryDataSink sink;
    object.serialize(sink, arguments...);
    return writtenTo(sink);
}

/// The message of the `Exception` that `action` throws; a failure of the test when it throws none.
template <class Exception = Exceptions::BaseException, class Action>
std::string thrownBy(Action action) {
    try {
        action();
    } catch (Exception const& failure) {
        return failure.message();
    } catch (std::exception const& failure) {
        ADD_FAILURE() << "an exception of class " << typeid(failure).name() << ": " << failure.what();
        return failure.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// The first packet of some bytes, with its source.
struct OnePacket {
    explicit OnePacket(Bytes bytes) : source(std::move(bytes)), reader(source) {
        std::uint64_t skipped = 0;
        packet = reader.nextKLV(skipped, 0);
    }
    KLV::Packet& operator*() { return *packet; }

    DataIO::Memory::MemoryDataSource source;
    KLV::Reader reader;
    Templates::auto_ptr<KLV::Packet> packet;
};

/// Runs `parse` over every prefix of `bytes`, and over `bytes` with each single byte set to 00, 7F, 80 and
/// FF. Only exceptions of the library may come out.
void survivesEveryFault(Bytes const& bytes, std::function<void(Bytes const&)> const& parse);

} // namespace MXF::Zelm::Test
