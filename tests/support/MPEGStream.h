/// Small streams of MPEG-2 video: true headers, slices without content.
#pragma once

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

/// 720 x 32 interlaced, 4:2:0, main profile at main level, 25 frames a second, 4:3: four rows of macroblocks.
inline Bytes mpegSequence() {
    return hex(R"(
        00 00 01 B3  2D 00 20 23 05 DC 23 80    # 720 x 32, 4:3, 25, 2.4 Mb/s
        00 00 01 B5  14 82 00 01 00 00          # main at main, interlaced, 4:2:0
    )");
}

inline Bytes mpegGroup(bool closed) {
    return closed ? hex("00 00 01 B8 00 08 00 40") : hex("00 00 01 B8 00 08 00 00");
}

/// A picture: `type` is I, P or B, `structure` 1 top field, 2 bottom field, 3 frame.
inline Bytes mpegPicture(char type, unsigned reference, unsigned structure = 3, std::size_t sliceSize = 40) {
    unsigned const code = type == 'I' ? 1 : type == 'P' ? 2 : 3;
    Bytes bytes = hex("00 00 01 00") +
                  Bytes{static_cast<unsigned char>(reference >> 2),
                        static_cast<unsigned char>((reference & 3) << 6 | code << 3 | 7), 0xFF, 0xF8} +
                  hex("00 00 01 B5 8F FF") + Bytes{static_cast<unsigned char>(0xF0 | structure), 0x98, 0x00};
    for (unsigned char row = 1; row <= (structure == 3 ? 2 : 1); ++row)
        bytes = bytes + hex("00 00 01") + Bytes{row} + repeated(sliceSize, 0x5A);
    return bytes;
}

/// Pictures as text: "S" sequence header, "C" closed group, "O" open group, then "I2", "P5", "B0" with their
/// temporal references. One string an edit unit.
inline Bytes mpegUnit(std::string_view text) {
    Bytes bytes;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (text[at] == 'S')
            bytes = bytes + mpegSequence();
        else if (text[at] == 'C' || text[at] == 'O')
            bytes = bytes + mpegGroup(text[at] == 'C');
        else
            return bytes +
                   mpegPicture(text[at], static_cast<unsigned>(std::stoul(std::string(text.substr(at + 1)))));
    return bytes;
}

inline std::vector<Bytes> mpegUnits(std::vector<std::string_view> const& texts) {
    std::vector<Bytes> units;
    for (auto const text : texts)
        units.push_back(mpegUnit(text));
    return units;
}

inline Bytes concatenated(std::vector<Bytes> const& parts) {
    Bytes all;
    for (auto const& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace MXF::Zelm::Test
