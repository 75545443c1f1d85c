/// Key and length of a KLV packet in memory (SMPTE 336M).
#pragma once

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/BlockWindow.h"
#include "MXF/Zelm/MXFIO/BodyStream.h"

#include <cstring>

namespace MXF::Zelm::MXFIO {

/// Most bytes of a key and a length.
inline constexpr std::size_t mostHeadBytes = KLV::Key::size() + ByteCoders::maximumBERSize;
static_assert(mostHeadBytes <= BlockWindow::mostPeeked);

/// Reads the key and the length at `head.fileOffset`, of at most `size` bytes; false when there are fewer
/// than they have. Throws as `BodyStream::peekPacket` does.
inline bool parseHead(BlockWindow& window, std::uint64_t size, PacketHead& head) {
    constexpr unsigned char smpte[4] = {0x06, 0x0E, 0x2B, 0x34};
    std::size_t const there = window.available(
        head.fileOffset, size < mostHeadBytes ? static_cast<std::size_t>(size) : mostHeadBytes);
    if (there < KLV::Key::size())
        return false;
    const unsigned char* const bytes = window.data(head.fileOffset);
    if (std::memcmp(bytes, smpte, sizeof smpte) != 0)
        throw Exceptions::at(head.fileOffset,
                             Exceptions::InvalidKey("No KLV packet begins here: the key would be " +
                                                    ByteCoders::toHexadecimal(bytes, KLV::Key::size())));
    std::memcpy(head.key.rawBuffer(), bytes, KLV::Key::size());
    if (there == KLV::Key::size())
        return false;
    unsigned char const first = bytes[KLV::Key::size()];
    unsigned char const berSize = first < 0x80 ? std::uint8_t{1} : ByteCoders::decodeBERSize(first);
    if (berSize > ByteCoders::maximumBERSize)
        throw Exceptions::at(
            head.fileOffset,
            Exceptions::BaseException("Invalid BER size: 0x" + ByteCoders::toHexadecimal(&first, 1)));
    if (there < KLV::Key::size() + berSize)
        return false;
    head.headLength = static_cast<std::uint32_t>(KLV::Key::size() + berSize);
    head.length = ByteCoders::decodeBER(bytes + KLV::Key::size(), berSize);
    return true;
}

} // namespace MXF::Zelm::MXFIO
