#include "MXF/Zelm/KLV/Reader.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <cstring>

namespace MXF::Zelm::KLV {

namespace {

using ByteCoders::toHexadecimal;

/// The bytes that tell a key: 06 0E 2B 34 and the category.
constexpr std::size_t scanSize = 5;

void readExactly(DataIO::DataSource& source, unsigned char* buffer, std::size_t count) {
    if (source.read(buffer, count) != count)
        throw Exceptions::at(source.absoluteOffset(), Exceptions::BaseException("Not enough data"));
}

/// Category 04 (labels) and above never starts a packet.
bool startsKey(const unsigned char* scan) {
    return std::memcmp(scan, groupKeyPattern, 4) == 0 && scan[4] < 4;
}

[[noreturn]] void failSearch(std::uint64_t position, std::uint64_t skipped) {
    std::uint64_t const start = position - scanSize - skipped;
    throw Exceptions::at(start,
                         Exceptions::BaseException(
                             "Exceeded maximum bytes to skip before finding a key. Started to search at 0x" +
                             toHexadecimal(start) + " Skipped 0x" + toHexadecimal(skipped) +
                             " current position: 0x" + toHexadecimal(position)));
}

/// The size of the length field that begins with `first`, at `offset`.
unsigned char lengthFieldSize(unsigned char first, std::uint64_t offset) {
    try {
        unsigned char const size = ByteCoders::decodeBERSize(first);
        if (size <= ByteCoders::maximumBERSize)
            return size;
    } catch (Exceptions::BaseException& failure) {
        failure.offset(offset);
        throw;
    }
    throw Exceptions::at(offset, Exceptions::BaseException("Invalid BER size: 0x" + toHexadecimal(first)));
}

} // namespace

Reader::Reader(DataIO::DataSource& source) : source_(&source) {}

bool Reader::keyIsRemembered() const { return key_.has_value() && source_->absoluteOffset() == afterKey_; }

void Reader::searchKey(std::uint64_t& skipped, std::uint64_t maximumToSkip) {
    skipped = 0;
    key_.reset();
    unsigned char bytes[Key::length];
    readExactly(*source_, bytes, scanSize);
    while (!startsKey(bytes)) {
        std::memmove(bytes, bytes + 1, scanSize - 1);
        readExactly(*source_, bytes + scanSize - 1, 1);
        if (++skipped > maximumToSkip)
            failSearch(source_->absoluteOffset(), skipped);
    }
    readExactly(*source_, bytes + scanSize, sizeof bytes - scanSize);
    key_.emplace(bytes);
    afterKey_ = source_->absoluteOffset();
}

Key Reader::peekNextKey(std::uint64_t& skipped, std::uint64_t maximumToSkip) {
    skipped = 0;
    if (!keyIsRemembered())
        searchKey(skipped, maximumToSkip);
    return *key_;
}

Templates::auto_ptr<Packet> Reader::nextKLV(std::uint64_t& skipped, std::uint64_t maximumToSkip) {
    skipped = 0;
    if (!keyIsRemembered())
        searchKey(skipped, maximumToSkip);
    Key const key = *key_;
    std::uint64_t const afterKey = afterKey_;
    key_.reset();

    unsigned char field[ByteCoders::maximumBERSize];
    readExactly(*source_, field, 1);
    unsigned char const size = lengthFieldSize(field[0], afterKey);
    readExactly(*source_, field + 1, size - 1u);
    return Templates::auto_ptr<Packet>(
        new Packet(key, size, ByteCoders::decodeBER(field, size), *source_, afterKey - Key::size()));
}

} // namespace MXF::Zelm::KLV
