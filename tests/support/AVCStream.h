/// A small stream of AVC: 640 x 360, high profile, 25 frames a second; the heads of I, P and B pictures as an
/// encoder makes them.
#pragma once

#include "support/Bytes.h"

#include <utility>
#include <vector>

namespace MXF::Zelm::Test {

inline Bytes avcParameters() {
    return hex(R"(
    00 00 00 01  67 64 00 1E AC D9 40 A0 2F F9 70 11 00 00 03 00 01 00 00 03 00 32 0F 16 2D 96
    00 00 00 01  68 EA E3 CB 22 C0
)");
}

inline Bytes avcFirstPicture() {
    return avcParameters() + hex(R"(
    00 00 01  06 06 01 C4 80                 # recovery point, 0 frames, exact
    00 00 01  65 88 84 01 7F D4 57 6D 7D DA 78 15
)");
}

/// And where each is shown.
inline std::vector<std::pair<Bytes, std::int64_t>> avcPictures() {
    return {{avcFirstPicture(), 0},
            {hex("00 00 00 01 41 9A 22 6C 49 FF BA F6 B3 5A 01 9F"), 4},
            {hex("00 00 00 01 01 9E 41 79 0B 7F F1 10 5A 8F 37 E7"), 2},
            {hex("00 00 00 01 41 9A 44 18 24 FF EB 85 96 25 D1 C0"), 8},
            {hex("00 00 00 01 01 9E 63 44 2D FF B6 B5 3E 96 4A 63"), 6}};
}

} // namespace MXF::Zelm::Test
