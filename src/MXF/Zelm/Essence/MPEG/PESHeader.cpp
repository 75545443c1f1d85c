#include "MXF/Zelm/Essence/MPEG/PESHeader.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::size_t fixedSize = 6, fixedSizeMPEG2 = 9, timestampSize = 5, mostStuffing = 16;

/// Streams whose payload follows the length.
constexpr std::uint8_t withoutHeader[] = {
    ProgramStreamMap, PaddingStream, PrivateStream2, 0xF0, 0xF1, 0xF2, 0xF8, 0xFF};

/// The upper 15 of 16 bits.
std::uint64_t upper15(const unsigned char* bytes) {
    return std::uint64_t{ByteCoders::decodeInteger<std::uint16_t>(bytes)} >> 1;
}

/// 33 bits in 5 bytes, each part with a marker bit behind it.
std::uint64_t timestamp(const unsigned char* bytes) {
    return std::uint64_t{bytes[0] >> 1 & 7u} << 30 | upper15(bytes + 1) << 15 | upper15(bytes + 3);
}

/// The header behind the length; `size` bytes are there.
bool readMPEG2(const unsigned char* bytes, std::size_t size, PESHeader& header) {
    if (size < fixedSizeMPEG2)
        return false;
    header.size = fixedSizeMPEG2 + bytes[8];
    header.isScrambled = (bytes[6] & 0x30u) != 0;
    header.isAligned = (bytes[6] & 0x04u) != 0;
    unsigned const flags = bytes[7] >> 6;
    std::size_t const needed = flags == 3 ? 2 * timestampSize : flags == 2 ? timestampSize : 0;
    if (needed > bytes[8])
        throw Exceptions::InvalidFormat("A PES header has no room for its time stamps");
    if (size < header.size)
        return false;
    if (flags >= 2)
        header.timestamps.presentation = timestamp(bytes + fixedSizeMPEG2);
    if (flags == 3)
        header.timestamps.decoding = timestamp(bytes + fixedSizeMPEG2 + timestampSize);
    return true;
}

bool readMPEG1(const unsigned char* bytes, std::size_t size, PESHeader& header) {
    std::size_t at = fixedSize;
    while (at < size && at < fixedSize + mostStuffing && bytes[at] == 0xFF)
        ++at;
    if (at < size && bytes[at] >> 6 == 1)
        at += 2; // buffer size
    if (at >= size)
        return false;
    unsigned const kind = bytes[at] >> 4;
    std::size_t const length = kind == 3 ? 2 * timestampSize : kind == 2 ? timestampSize : 1;
    if (length == 1 && bytes[at] != 0x0F)
        throw Exceptions::InvalidFormat("A PES header goes on with " +
                                        ByteCoders::toHexadecimal(bytes + at, 1));
    if (size - at < length)
        return false;
    if (kind == 2 || kind == 3)
        header.timestamps.presentation = timestamp(bytes + at);
    if (kind == 3)
        header.timestamps.decoding = timestamp(bytes + at + timestampSize);
    header.size = at + length;
    return true;
}

bool readBehindLength(const unsigned char* bytes, std::size_t size, PESHeader& header) {
    header.size = fixedSize;
    if (std::find(std::begin(withoutHeader), std::end(withoutHeader), header.streamId) !=
        std::end(withoutHeader))
        return true;
    if (size == fixedSize)
        return false;
    return bytes[fixedSize] >> 6 == 2 ? readMPEG2(bytes, size, header) : readMPEG1(bytes, size, header);
}

} // namespace

std::optional<std::size_t> PESHeader::payloadSize() const {
    if (packetLength == 0)
        return std::nullopt;
    return fixedSize + packetLength - size;
}

std::optional<PESHeader> PESHeader::read(const unsigned char* bytes, std::size_t size) {
    if (size < fixedSize)
        return std::nullopt;
    if (bytes[0] != 0 || bytes[1] != 0 || bytes[2] != 1 || bytes[3] < ProgramStreamMap)
        throw Exceptions::InvalidFormat("A PES packet begins with " + ByteCoders::toHexadecimal(bytes, 4));
    PESHeader header;
    header.streamId = bytes[3];
    header.packetLength = ByteCoders::decodeInteger<std::uint16_t>(bytes + 4);
    if (!readBehindLength(bytes, size, header))
        return std::nullopt;
    if (header.packetLength != 0 && header.size > fixedSize + header.packetLength)
        throw Exceptions::InvalidFormat("A PES header is longer than its packet of " +
                                        std::to_string(fixedSize + header.packetLength) + " bytes");
    return header;
}

} // namespace MXF::Zelm::Essence::MPEG
