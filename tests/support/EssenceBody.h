/// Bodies of frame-wrapped essence whose edit units can be told apart.
#pragma once

#include "MXF/Zelm/GenericContainer/ContentPackage.h"

#include "support/MxfFile.h"

namespace MXF::Zelm::Test {

inline KLV::Key elementKey(std::uint32_t trackNumber) {
    auto key = "060E2B34.01020101.0D010301.00000000"_key;
    ByteCoders::codeInteger(trackNumber, key.rawBuffer() + 12);
    return key;
}

inline constexpr KLV::Key systemKey = "060E2B34.02050101.0D010301.04010100"_key;
inline constexpr std::uint32_t pictureTrack = 0x15010500;
inline constexpr std::uint32_t soundTracks[2] = {0x16020300, 0x16020301};

/// The value of an element of edit unit `unit`.
inline Bytes elementValue(std::size_t unit, std::uint32_t trackNumber) {
    Bytes bytes = number(static_cast<std::uint32_t>(unit)) + number(trackNumber);
    return bytes + repeated(trackNumber == pictureTrack ? unit * 37 % 211 : 24, 0xEE);
}

/// A system item, a picture of a size of its own, two sounds, a fill item.
inline Bytes contentPackage(std::size_t unit) {
    Bytes bytes = klv(systemKey, number(static_cast<std::uint32_t>(unit)) + repeated(8, 1));
    for (std::uint32_t const track : {pictureTrack, soundTracks[0], soundTracks[1]})
        bytes = bytes + klv(elementKey(track), elementValue(unit, track));
    return bytes + fill(30);
}

inline Bytes joined(DataIO::Chain const& chain) {
    Bytes bytes;
    for (auto const& slice : chain)
        bytes.insert(bytes.end(), slice.begin(), slice.end());
    return bytes;
}

} // namespace MXF::Zelm::Test
