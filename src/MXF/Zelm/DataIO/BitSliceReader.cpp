#include "MXF/Zelm/DataIO/BitSliceReader.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>
#include <utility>

namespace MXF::Zelm::DataIO {

BitSliceReader::BitSliceReader(Chain chain) : bytes_(std::move(chain)) {}

void BitSliceReader::requireBits(std::uint64_t bits) const {
    if (bits > remaining())
        throw Exceptions::at(bytes_.absoluteOffset(),
                             Exceptions::InvalidLength(std::to_string(bits) + " bits wanted, " +
                                                       std::to_string(remaining()) + " left"));
}

/// At borders between slices, and at the end.
std::uint64_t BitSliceReader::readSlowly(unsigned bits) {
    std::uint64_t const value = peek(bits);
    skip(bits);
    return value;
}

std::uint64_t BitSliceReader::peek(unsigned bits) const {
    if (bits > largestRead)
        throw Exceptions::InvalidValue(std::to_string(bits) + " bits in one number, at most " +
                                       std::to_string(largestRead));
    if (bits == 0)
        return 0;
    if (auto const* const bytes = bytes_.adjacent(8); bytes != nullptr && bit_ + bits <= largestRead)
        return ByteCoders::decodeInteger<std::uint64_t>(bytes) << bit_ >> (largestRead - bits);
    unsigned char bytes[9] = {}; // 64 bits touch as many
    bytes_.peek(bytes, (bit_ + bits + 7) / 8);
    auto value = ByteCoders::decodeInteger<std::uint64_t>(bytes);
    if (bit_ != 0)
        value = value << bit_ | bytes[8] >> (8 - bit_);
    return value >> (largestRead - bits);
}

void BitSliceReader::skip(std::uint64_t bits) {
    requireBits(bits);
    pass(bits);
}

void BitSliceReader::align() {
    if (!aligned())
        skip(8 - bit_);
}

} // namespace MXF::Zelm::DataIO
